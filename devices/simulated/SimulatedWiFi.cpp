// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedWiFi.h"

#include <algorithm>
#include <stdexcept>

namespace hushmode::devices {

using platform::Dictionary;
using platform::WiFiDeviceClient;
using platform::WiFiManagerClient;
using platform::WiFiNetwork;

class SimulatedWiFi::Network final : public WiFiNetwork {
 public:
  explicit Network(std::string_view ssid) : known{std::string(ssid), std::nullopt, std::nullopt} {}
  std::string description() const override { return "<WiFiNetwork " + known.ssid + ">"; }

  Known known;
};

class SimulatedWiFi::Device final : public WiFiDeviceClient {};
class SimulatedWiFi::Manager final : public WiFiManagerClient {};

SimulatedWiFi::SimulatedWiFi(VirtualTime& time, Record& record)
    : time_(time), record_(record), device_(std::make_shared<Device>()) {}

std::shared_ptr<WiFiManagerClient> SimulatedWiFi::WiFiManagerClientCreate(int) { return std::make_shared<Manager>(); }

std::optional<std::vector<std::shared_ptr<WiFiDeviceClient>>> SimulatedWiFi::WiFiManagerClientCopyDevices(
    const std::shared_ptr<WiFiManagerClient>& manager) {
  if (!manager || !device_) return std::nullopt;
  return std::vector<std::shared_ptr<WiFiDeviceClient>>{device_};
}

std::vector<std::shared_ptr<WiFiNetwork>> SimulatedWiFi::WiFiManagerClientCopyNetworks(
    const std::shared_ptr<WiFiManagerClient>& manager) {
  if (!manager) return {};
  return {networks_.begin(), networks_.end()};
}

std::shared_ptr<WiFiNetwork> SimulatedWiFi::WiFiDeviceClientCopyCurrentNetwork(
    const std::shared_ptr<WiFiDeviceClient>& client) {
  return client ? joined_ : nullptr;
}

std::string SimulatedWiFi::WiFiNetworkGetSSID(const std::shared_ptr<WiFiNetwork>& network) {
  const auto own = std::dynamic_pointer_cast<Network>(network);
  return own ? own->known.ssid : std::string();
}

Dictionary SimulatedWiFi::WiFiNetworkCopyRecord(const std::shared_ptr<WiFiNetwork>& network) {
  const auto own = std::dynamic_pointer_cast<Network>(network);
  if (!own) return {};
  // As on a real phone there is more in a record than anybody asks for.
  Dictionary record{{"SSID_STR", own->known.ssid}, {"enabled", true}};
  if (own->known.lastAutoJoined) record.append("lastAutoJoined", *own->known.lastAutoJoined);
  if (own->known.lastJoined) record.append("lastJoined", *own->known.lastJoined);
  return record;
}

std::shared_ptr<SimulatedWiFi::Network> SimulatedWiFi::find(std::string_view ssid) const {
  const auto place =
      std::find_if(networks_.begin(), networks_.end(), [&](const auto& each) { return each->known.ssid == ssid; });
  return place == networks_.end() ? nullptr : *place;
}

std::shared_ptr<SimulatedWiFi::Network> SimulatedWiFi::findOrAdd(std::string_view ssid) {
  if (auto network = find(ssid)) return network;
  return networks_.emplace_back(std::make_shared<Network>(ssid));
}

void SimulatedWiFi::remember(const Known& network) { findOrAdd(network.ssid)->known = network; }

std::vector<SimulatedWiFi::Known> SimulatedWiFi::known() const {
  std::vector<Known> list;
  list.reserve(networks_.size());
  for (const auto& network : networks_) list.push_back(network->known);
  return list;
}

std::optional<std::string> SimulatedWiFi::joined() const {
  return joined_ ? std::optional(joined_->known.ssid) : std::nullopt;
}

void SimulatedWiFi::setHasDevice(bool hasDevice) {
  if (hasDevice == (device_ != nullptr)) return;
  device_ = hasDevice ? std::make_shared<Device>() : nullptr;
  joined_.reset();
}

void SimulatedWiFi::join(std::string_view ssid, Join manner) {
  if (!device_) throw std::logic_error("a phone without WiFi cannot join a network");
  joined_ = findOrAdd(ssid);
  const bool automatic = manner == Join::Automatic;
  (automatic ? joined_->known.lastAutoJoined : joined_->known.lastJoined) = time_.now();
  record_.step("network joined", {{"ssid", ssid}, {"automatic", automatic}});
}

void SimulatedWiFi::leave() {
  if (!joined_) return;
  record_.step("network left", {{"ssid", joined_->known.ssid}});
  joined_.reset();
}

void SimulatedWiFi::forget(std::string_view ssid) {
  const auto network = find(ssid);
  if (!network) return;
  record_.step("network forgotten", {{"ssid", ssid}});
  if (joined_ == network) joined_.reset();
  std::erase(networks_, network);
}

}  // namespace hushmode::devices
