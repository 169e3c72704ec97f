// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "platform/MobileWiFi.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// The WiFi of a simulated phone: the networks that it remembers, and the one it is joined to.
class SimulatedWiFi final : public platform::MobileWiFi {
 public:
  SimulatedWiFi(VirtualTime& time, Record& record);

  std::shared_ptr<platform::WiFiManagerClient> WiFiManagerClientCreate(int type) override;
  std::optional<std::vector<std::shared_ptr<platform::WiFiDeviceClient>>> WiFiManagerClientCopyDevices(
      const std::shared_ptr<platform::WiFiManagerClient>& manager) override;
  std::vector<std::shared_ptr<platform::WiFiNetwork>> WiFiManagerClientCopyNetworks(
      const std::shared_ptr<platform::WiFiManagerClient>& manager) override;
  std::shared_ptr<platform::WiFiNetwork> WiFiDeviceClientCopyCurrentNetwork(
      const std::shared_ptr<platform::WiFiDeviceClient>& client) override;
  std::string WiFiNetworkGetSSID(const std::shared_ptr<platform::WiFiNetwork>& network) override;
  platform::Dictionary WiFiNetworkCopyRecord(const std::shared_ptr<platform::WiFiNetwork>& network) override;

  struct Known {
    std::string ssid;
    std::optional<platform::Date> lastJoined;      ///< Last join by the user.
    std::optional<platform::Date> lastAutoJoined;  ///< Last join by the phone itself.
  };
  /// Remembers a network at the end of the list; a known one gets these dates and keeps its place.
  void remember(const Known& network);
  std::vector<Known> known() const;
  /// The name of the network that the phone is joined to.
  std::optional<std::string> joined() const;
  /// Whether the phone has a WiFi interface; true at first. Without one it is joined to nothing.
  void setHasDevice(bool hasDevice);

  enum class Join { ByUser, Automatic };
  /// The phone joins a network, leaving another without a step of its own. An unknown network becomes known; the join
  /// date of that manner becomes now. The host is not told. Throws std::logic_error without a WiFi interface.
  void join(std::string_view ssid, Join manner = Join::ByUser);
  /// The phone leaves the network that it is joined to; nothing happens when there is none.
  void leave();
  /// The phone forgets a network, and leaves it; nothing happens when it is unknown.
  void forget(std::string_view ssid);

 private:
  class Network;
  class Device;
  class Manager;
  std::shared_ptr<Network> find(std::string_view ssid) const;
  std::shared_ptr<Network> findOrAdd(std::string_view ssid);

  VirtualTime& time_;
  Record& record_;
  std::vector<std::shared_ptr<Network>> networks_;
  std::shared_ptr<Network> joined_;
  std::shared_ptr<Device> device_;
};

}  // namespace hushmode::devices
