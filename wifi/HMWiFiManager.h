// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/MobileWiFi.h"
#include "platform/Object.h"
#include "platform/PropertyList.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace hushmode {

/// Reads the device's WiFi state; never joins, forgets or changes a network.
///
/// A network entry is a dictionary made afresh on each call: {"SSID": name, "record": {"lastAutoJoined": date,
/// "lastJoined": date}}, the dates only where the platform knows them. No network is an empty dictionary. One instance
/// a process; making it is safe from any thread, the rest takes no lock.
class HUSHMODE_API HMWiFiManager final : public platform::Object {
  struct Private {};

 public:
  static std::shared_ptr<HMWiFiManager> sharedManager();
  /// A manager of one's own, initialised.
  static std::shared_ptr<HMWiFiManager> init();
  explicit HMWiFiManager(Private);
  ~HMWiFiManager() override;

  /// Makes the WiFi clients.
  void initialize();

  /// All networks that the device remembers, in the platform's order.
  std::vector<platform::Dictionary> knownNetworks() const;
  /// The joined network. Every call notes whether there was one, which `lastConnectedNetwork` depends on.
  platform::Dictionary currentNetWork();
  /// The first known network of exactly that name.
  platform::Dictionary netWorkBySSID(std::string_view name) const;
  /// The known network that was joined last, by whichever of its two dates is later; the first of equals,
  /// and the last where none has a date. An empty
  /// dictionary when the last call of `currentNetWork` found none, or there was no call yet; none when the device knows
  /// no network.
  std::optional<platform::Dictionary> lastConnectedNetwork();

  const std::shared_ptr<platform::WiFiManagerClient>& manager() const { return manager_; }
  void setManager(std::shared_ptr<platform::WiFiManagerClient> manager) { manager_ = std::move(manager); }
  /// The first WiFi device; null when there is none.
  const std::shared_ptr<platform::WiFiDeviceClient>& client() const { return client_; }
  void setClient(std::shared_ptr<platform::WiFiDeviceClient> client) { client_ = std::move(client); }
  bool isLastConnectedToNetwork() const { return lastConnectedToNetwork_; }
  void setLastConnectedToNetwork(bool connected) { lastConnectedToNetwork_ = connected; }

 private:
  std::shared_ptr<platform::WiFiManagerClient> manager_;
  std::shared_ptr<platform::WiFiDeviceClient> client_;
  bool lastConnectedToNetwork_ = false;
};

/// The "SSID" of a network entry; none for an empty one.
HUSHMODE_API std::optional<std::string> networkName(const platform::Dictionary& network);

/// The place in `known` of the network joined last; none when the list is empty.
std::optional<std::size_t> lastJoinedIndex(const std::vector<platform::Dictionary>& known);

}  // namespace hushmode
