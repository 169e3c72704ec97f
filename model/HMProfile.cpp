// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "model/HMProfile.h"

#include "util/Localization.h"
#include "util/Log.h"
#include "util/Now.h"

#include <algorithm>

namespace hushmode {

namespace {

/// The filter's labels, by value.
constexpr std::array<std::string_view, 4> eventStatusLabels = {"All", "Accepted", "Tentative", "Declined/Cancelled"};

bool contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

}  // namespace

HMProfile::HMProfile(Private) {}
HMProfile::~HMProfile() = default;

std::shared_ptr<HMProfile> HMProfile::init() {
  auto profile = std::make_shared<HMProfile>(Private());
  profile->identifier_ = static_cast<std::int64_t>(now().secondsSince1970());
  return profile;
}

std::string HMProfile::description() const { return "<HMProfile " + title_.value_or("(null)") + ">"; }

bool HMProfile::isEqual(const std::shared_ptr<platform::Object>& other) {
  const auto profile = std::dynamic_pointer_cast<HMProfile>(other);
  if (!profile) return other.get() == this;
  setIdentifier(profile->identifier());
  return identifier() != 0;
}

bool HMProfile::hasChanged(const std::shared_ptr<HMProfile>& other) {
  if (!isEqual(other) || !other) return false;
  if (startDate() != other->startDate() || endDate() != other->endDate()) return true;
  const std::vector<std::string>& own = calendarIdentifiers();
  // The other's list is read only when there is something to look for: reading an absent list fills it.
  return std::any_of(own.begin(), own.end(), [&](const std::string& identifier) {
    return !contains(other->calendarIdentifiers(), identifier);
  });
}

std::int64_t HMProfile::applyProfileEventStatus() {
  // Compared as unsigned, so that negative values are out of range too.
  if (static_cast<std::uint64_t>(applyProfileEventStatus_) >= eventStatusLabels.size()) applyProfileEventStatus_ = 0;
  return applyProfileEventStatus_;
}

std::string HMProfile::applyProfileEventStatusString() {
  return localized(eventStatusLabels[static_cast<std::size_t>(applyProfileEventStatus())]);
}

std::vector<std::string>& HMProfile::wifiNetworks() {
  if (!wifiNetworks_) wifiNetworks_.emplace();
  return *wifiNetworks_;
}

bool HMProfile::isWifiEnabled() { return !wifiNetworks().empty(); }

void HMProfile::addToWiFiNetwork(const std::string& name) {
  const std::string added = name;  // The argument may be an element of the list itself.
  logInformation({"addToWiFiNetwork:", 587}, "****** Adding '%@' to WiFi list", added);
  wifiNetworks().push_back(added);
  logInformation({"addToWiFiNetwork:", 589}, "****** After adding '%@' to WiFi list, %@", added, wifiNetworks());
}

void HMProfile::removeFromWiFiNetwork(const std::string& name) {
  const std::string removed = name;  // The argument may be an element of the list itself.
  logInformation({"removeFromWiFiNetwork:", 594}, "****** Removing '%@' for WiFi list", removed);
  std::erase(wifiNetworks(), removed);
  logInformation({"removeFromWiFiNetwork:", 604}, "****** After removing '%@' WiFi from list, %@", removed,
                 wifiNetworks());
}

bool HMProfile::hasWiFiNetwork(const std::optional<std::string>& name) {
  return name && isWifiEnabled() && contains(wifiNetworks(), *name);
}

}  // namespace hushmode
