// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "wifi/HMWiFiManager.h"

#include "platform/Process.h"
#include "util/Log.h"

namespace hushmode {

using platform::Date;
using platform::Dictionary;

namespace {

platform::MobileWiFi& mobileWiFi() { return platform::device().mobileWiFi(); }

Dictionary entryFor(const std::shared_ptr<platform::WiFiNetwork>& network) {
  Dictionary entry;
  entry.append("SSID", mobileWiFi().WiFiNetworkGetSSID(network));
  const Dictionary full = mobileWiFi().WiFiNetworkCopyRecord(network);
  Dictionary record;
  for (const char* key : {"lastAutoJoined", "lastJoined"}) {
    if (const auto* date = full.find(key)) record.append(key, *date);
  }
  entry.append("record", std::move(record));
  return entry;
}

std::optional<Date> dateAt(const Dictionary* record, std::string_view key) {
  const platform::Value* value = record ? record->find(key) : nullptr;
  const Date* date = value ? value->as<Date>() : nullptr;
  return date ? std::optional(*date) : std::nullopt;
}

/// Whether `a` is later; an absent date is earlier than any.
bool isLater(const std::optional<Date>& a, const std::optional<Date>& b) { return a && (!b || *a > *b); }

std::optional<Date> lastJoin(const Dictionary& network) {
  const platform::Value* value = network.find("record");
  const Dictionary* record = value ? value->as<Dictionary>() : nullptr;
  const auto byItself = dateAt(record, "lastAutoJoined"), byUser = dateAt(record, "lastJoined");
  return isLater(byItself, byUser) ? byItself : byUser;
}

}  // namespace

HMWiFiManager::HMWiFiManager(Private) {}
HMWiFiManager::~HMWiFiManager() = default;

std::shared_ptr<HMWiFiManager> HMWiFiManager::sharedManager() {
  static constexpr char key = 0;
  return platform::Process::current().singleInstance<HMWiFiManager>(&key, &HMWiFiManager::init, [](HMWiFiManager&) {});
}

std::shared_ptr<HMWiFiManager> HMWiFiManager::init() {
  auto manager = std::make_shared<HMWiFiManager>(Private());
  manager->initialize();
  return manager;
}

void HMWiFiManager::initialize() {
  setManager(mobileWiFi().WiFiManagerClientCreate(0));
  const auto devices = mobileWiFi().WiFiManagerClientCopyDevices(manager());
  if (devices && !devices->empty()) setClient(devices->front());
}

std::vector<Dictionary> HMWiFiManager::knownNetworks() const {
  std::vector<Dictionary> entries;
  for (const auto& network : mobileWiFi().WiFiManagerClientCopyNetworks(manager()))
    entries.push_back(entryFor(network));
  return entries;
}

Dictionary HMWiFiManager::currentNetWork() {
  const auto network = mobileWiFi().WiFiDeviceClientCopyCurrentNetwork(client());
  setLastConnectedToNetwork(network != nullptr);
  return network ? entryFor(network) : Dictionary();
}

Dictionary HMWiFiManager::netWorkBySSID(std::string_view name) const {
  for (const Dictionary& entry : knownNetworks()) {
    if (networkName(entry) == name) return entry;
  }
  return {};
}

std::optional<Dictionary> HMWiFiManager::lastConnectedNetwork() {
  if (!isLastConnectedToNetwork()) {
    logInformation({"lastConnectedNetwork", 102}, "Seems last time its not connected to a network..");
    return Dictionary();
  }
  const std::vector<Dictionary> known = knownNetworks();
  const auto best = lastJoinedIndex(known);
  return best ? std::optional(known[*best]) : std::nullopt;
}

std::optional<std::string> networkName(const Dictionary& network) {
  const platform::Value* name = network.find("SSID");
  const std::string* text = name ? name->as<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::size_t> lastJoinedIndex(const std::vector<Dictionary>& known) {
  std::optional<std::size_t> best;
  std::optional<Date> bestDate;
  for (std::size_t i = 0; i < known.size(); ++i) {
    const std::optional<Date> date = lastJoin(known[i]);
    // While the best has no date, whatever comes next replaces it.
    if (!bestDate || isLater(date, bestDate)) {
      best = i;
      bestDate = date;
    }
  }
  return best;
}

}  // namespace hushmode
