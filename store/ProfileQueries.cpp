// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Questions about the list of profiles, and the default profile.

#include "model/DayHelpers.h"
#include "store/HMProfilesManager.h"
#include "util/Format.h"
#include "util/Localization.h"
#include "util/Now.h"

#include <algorithm>
#include <set>

namespace hushmode {

using Profile = HMProfilesManager::Profile;

namespace {

template <class Predicate>
std::vector<Profile> matching(const std::vector<Profile>& profiles, Predicate predicate) {
  std::vector<Profile> matches;
  std::copy_if(profiles.begin(), profiles.end(), std::back_inserter(matches), predicate);
  return matches;
}

template <class Predicate>
Profile firstMatching(const std::vector<Profile>& profiles, Predicate predicate) {
  const auto place = std::find_if(profiles.begin(), profiles.end(), predicate);
  return place == profiles.end() ? nullptr : *place;
}

/// An absent title equals nothing, not even another absent one.
bool hasTitle(const Profile& profile, const std::optional<std::string>& title) {
  return title && profile->title() && *profile->title() == *title;
}

}  // namespace

bool HMProfilesManager::isProfileNameAlreadyExists(const std::optional<std::string>& title) const {
  return std::any_of(profiles_.begin(), profiles_.end(), [&](const Profile& each) { return hasTitle(each, title); });
}

std::string HMProfilesManager::defaultProfileTitle() const {
  const std::string base = localized("Profile");
  std::string candidate = base;
  for (int n = 1; isProfileNameAlreadyExists(candidate); ++n) candidate = formatted("%@ - %d", base, n);
  return candidate;
}

std::vector<Profile> HMProfilesManager::activeProfiles() {
  if (profiles_.empty()) loadProfiles();
  return matching(profiles_, [](const Profile& each) { return each->isEnabled() || each->isApplied(); });
}

std::vector<Profile> HMProfilesManager::enabledProfiles() { return activeProfiles(); }

std::vector<Profile> HMProfilesManager::disabledProfiles() {
  if (profiles_.empty()) loadProfiles();
  return matching(profiles_, [](const Profile& each) { return !each->isEnabled(); });
}

Profile HMProfilesManager::activeProfileByName(const std::optional<std::string>& title) {
  if (profiles_.empty()) loadProfiles();
  return firstMatching(profiles_, [&](const Profile& each) { return each->isEnabled() && hasTitle(each, title); });
}

Profile HMProfilesManager::profileByIdentifier(std::int64_t identifier) {
  return profileByIdentifier(identifier, false);
}

Profile HMProfilesManager::profileByIdentifier(std::int64_t identifier, bool shouldReload) {
  if (shouldReload || profiles_.empty()) loadProfiles();
  return firstMatching(profiles_, [&](const Profile& each) { return each->identifier() == identifier; });
}

std::optional<std::vector<Profile>> HMProfilesManager::profilesForCalendarIdentifier(const std::string&) const {
  return std::nullopt;
}

std::vector<Profile> HMProfilesManager::activeWiFiProfiles() {
  return matching(activeProfiles(), [](const Profile& each) { return each->isWifiEnabled(); });
}

std::vector<std::string> HMProfilesManager::calendarIdentifiers() {
  std::set<std::string> identifiers;
  for (const Profile& each : activeProfiles()) {
    const platform::Date instant = now();
    const std::vector<std::string>& own = each->calendarIdentifiers();
    if (own.empty()) continue;
    if (each->isAllDay() || hm_isBetweenDate(instant, each->startDate(), each->endDate())) {
      identifiers.insert(own.begin(), own.end());
    }
  }
  return {identifiers.begin(), identifiers.end()};
}

Profile HMProfile::defaultProfile() {
  const Profile profile = HMProfile::init();
  profile->setTitle(HMProfilesManager::sharedManager()->defaultProfileTitle());
  profile->setEnabled(true);
  profile->setAllDay(true);
  profile->setRingerVolume(0.0625);
  profile->setPlayBackVolume(0);
  profile->setDeviceVolume(0);
  profile->setPlayAlert(true);
  profile->setVibrate(true);
  profile->setVibrateAlert(true);
  profile->setShowOnStatusBar(false);
  profile->setDnDEnabled(false);
  profile->setWakeUpScreen(true);
  profile->setSilent(false);
  profile->setAlertSound(1005);
  profile->setAllDayEventsIgnored(true);
  profile->setStartTime("8:00 AM");
  profile->setEndTime("5:00 PM");
  profile->setAlertToneIdentifier("texttone:Calendar Alert");
  return profile;
}

}  // namespace hushmode
