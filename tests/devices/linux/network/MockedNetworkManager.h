// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/MockedService.h"

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hushmode {

/// A stand-in for NetworkManager with one radio, and what can happen to it.
class MockedNetworkManager {
 public:
  MockedNetworkManager() { prepare(); }

  MockedService& service() { return service_; }

  struct Connection {
    std::string ssid;  ///< Bytes.
    std::uint64_t timestamp = 0;
    std::optional<bool> autoconnect = std::nullopt;
    std::string type = "802-11-wireless";
    std::string mode = "infrastructure";
  };
  /// Its path.
  std::string add(const Connection& connection) {
    std::string general = "'type': <'" + connection.type + "'>, 'id': <'a network'>";
    if (connection.timestamp != 0) general += ", 'timestamp': <uint64 " + std::to_string(connection.timestamp) + ">";
    // The template joins at once what says "autoconnect: true"; NetworkManager itself leaves that out.
    if (connection.autoconnect) general += std::string(", 'autoconnect': <") + text(*connection.autoconnect) + ">";
    const auto path = service_.call(settings, std::string(manager) + ".Settings", "AddConnection",
                                    "({'connection': {" + general + "}, '" + connection.type + "': {'ssid': <" +
                                        byteArray(connection.ssid) + ">, 'mode': <'" + connection.mode + "'>}},)");
    return stringAt(path);
  }
  /// An active connection in that state (1 activating, 2 activated); its path.
  std::string activate(const std::string& connection, unsigned state = 2) {
    return stringAt(service_.control(root, "AddActiveConnection",
                                     "(['" + std::string(radio) + "'], '" + connection + "', '/', '" +
                                         std::to_string(++activeCount_) + "', uint32 " + std::to_string(state) + ")"));
  }
  void setState(const std::string& active, unsigned state) {
    service_.control(
        active, "UpdateProperties",
        "('" + std::string(manager) + ".Connection.Active', {'State': <uint32 " + std::to_string(state) + ">})");
  }
  void deactivate(const std::string& active) {
    service_.control(root, "RemoveActiveConnection", "('" + std::string(radio) + "', '" + active + "')");
  }
  void setTimestamp(const std::string& connection, std::uint64_t timestamp) {
    service_.call(connection, std::string(manager) + ".Settings.Connection", "Update",
                  "({'connection': {'timestamp': <uint64 " + std::to_string(timestamp) + ">}},)");
  }
  void remove(const std::string& connection) {
    service_.call(connection, std::string(manager) + ".Settings.Connection", "Delete");
  }
  void setStartingUp(bool startingUp) {
    service_.control(root, "UpdateProperties",
                     "('" + std::string(manager) + "', {'Startup': <" + text(startingUp) + ">})");
  }
  /// Dies, and begins anew without connections.
  void restart() {
    service_.kill();
    service_.start();
    prepare();
  }

  static constexpr const char* manager = "org.freedesktop.NetworkManager";
  static constexpr const char* root = "/org/freedesktop/NetworkManager";
  static constexpr const char* settings = "/org/freedesktop/NetworkManager/Settings";
  static constexpr const char* radio = "/org/freedesktop/NetworkManager/Devices/wlan0";

 private:
  static std::string text(bool value) { return value ? "true" : "false"; }
  static std::string byteArray(std::string_view bytes) {
    std::string text = "@ay [";
    for (const char c : bytes) {
      char byte[8];
      std::snprintf(byte, sizeof byte, "0x%02x,", static_cast<unsigned char>(c));
      text += byte;
    }
    if (!bytes.empty()) text.pop_back();
    return text + "]";
  }
  static std::string stringAt(const Glib::VariantContainerBase& reply) {
    Glib::VariantBase child;
    reply.get_child(child, 0);
    return g_variant_get_string(child.gobj(), nullptr);
  }
  void prepare() { service_.control(root, "AddWiFiDevice", "('wlan0', 'wlan0', 30)"); }

  MockedService service_{"system", manager, {"--template", "networkmanager"}};
  int activeCount_ = 0;
};

}  // namespace hushmode
