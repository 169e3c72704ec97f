// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Profiles tied to networks: applied and reverted by presence and window, before any calendar is asked.

#include "model/DayHelpers.h"
#include "scheduler/SwitchDecision.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"
#include "util/Now.h"
#include "wifi/HMWiFiManager.h"

namespace hushmode {

using platform::Date;
using platform::Dictionary;
using Profile = HMProfilesManager::Profile;

namespace {

constexpr const char* method = "shceduleWiFiDetected:completion:";

/// The effects that a plan brings in line when the profile has no network or is on one of its own, found by the names
/// of their methods.
struct RefreshedEffect {
  std::string_view profileKey, selector;
  void (HMProfile::*perform)();
};
constexpr RefreshedEffect refreshedEffects[] = {
    {"dnDEnabled", "updateDNDStatus", &HMProfile::updateDNDStatus},
    {"showOnStatusBar", "updateShowStatuBarState", &HMProfile::updateShowStatuBarState},
};

void refreshEffects(const Profile& profile) {
  for (const RefreshedEffect& effect : refreshedEffects) {
    if (profile->respondsTo(effect.selector)) ((*profile).*effect.perform)();
  }
}

/// Arms the wake-up for the profile's next bound, `date`; one that is not ahead is only warned of.
void wakeAt(HMProfilesManager& manager, const Profile& profile, Date date) {
  const Date instant = now();
  if (instant - date < 0) {
    logInformation(method, "Scheduling power wakeup for 'WiFi' at: %@ for applying profile %@.", date,
                   profile->title());
    manager.registerForPowerNotifications(date, profile);
  } else {
    logWarning(
        method,
        "SInce the schedule date %@ <= %@  is past unable to schedule power wakeup for 'WiFi' for applying profile "
        "(%@).",
        date, instant, profile->title());
  }
}

Date nextBoundaryOf(const Profile& profile, Date instant) {
  return nextBoundary(profile->startDate(), profile->endDate(), instant);
}

bool isInWindow(const Profile& profile, Date instant) {
  return hm_isBetweenDate(instant, profile->startDate(), profile->endDate());
}

void logChecking(const Profile& profile, Date instant) {
  logInformation(method, "Checking currentDate: %@ is between %@ and %@.", instant, profile->startDate(),
                 profile->endDate());
}

/// The profile is on one of its networks.
void followWindow(HMProfilesManager& manager, const Profile& profile) {
  if (profile->isAllDay()) {
    if (!profile->isApplied()) profile->apply();
    return;
  }
  const Date instant = now();
  logChecking(profile, instant);
  const bool inWindow = isInWindow(profile, instant);
  if (profile->isApplied()) {
    if (inWindow) return;
    logInformation(method,
                   "Reverting profile since the current date (%@) is not with in the Profile's start (%@) & end date "
                   "(%@).",
                   instant, profile->startDate(), profile->endDate());
    profile->revert();
  } else if (inWindow) {
    logInformation(method, "************* applying profile *************");
    profile->apply();
  }
  wakeAt(manager, profile, nextBoundaryOf(profile, instant));
}

}  // namespace

void HMProfilesManager::shceduleWiFiDetected(const Profile& profile, const std::function<void(bool)>& completion) {
  const Profile held = profile;
  const auto complete = [&](bool goOn) {
    if (completion) completion(goOn);
  };
  if (!held) return complete(true);  // No profile is tied to no network.
  if (!held->isWifiEnabled()) {
    refreshEffects(held);
    complete(true);
    return;
  }
  const std::optional<std::string> name = networkName(HMWiFiManager::sharedManager()->currentNetWork());
  logInformation(method, "Checking whether the network *** '%@' *** is in enabled list or not.", name);
  if (held->hasWiFiNetwork(name)) {
    logInformation(method, "*** Profile '%@' has Wifi %@ network enabled.", held->title(), name);
    followWindow(*this, held);
    refreshEffects(held);
    complete(false);
    return;
  }
  if (!completion) return;
  const Date instant = now();
  if (held->isAllDay() || isInWindow(held, instant)) {
    completion(true);
  } else {
    completion(false);
    wakeAt(*this, held, nextBoundaryOf(held, instant));
  }
}

void HMProfilesManager::scheduleProfilesOnWiFiChange() {
  static constexpr const char* changeMethod = "scheduleProfilesOnWiFiChange";
  if (!isHushmodeEnabled()) return;
  // In this order: the last network is told from what the previous check found.
  const std::optional<Dictionary> last = HMWiFiManager::sharedManager()->lastConnectedNetwork();
  const Dictionary current = HMWiFiManager::sharedManager()->currentNetWork();
  const std::optional<std::string> name = networkName(current);
  if (name && last && name == networkName(*last)) {
    logInformation(changeMethod, "Last connected & new WiFi are same, hence returning...");
    return;
  }
  logInformation(changeMethod,
                 "WiFi change detected (last connected (%@) and now connected to (%@), hence refreshing the active "
                 "profiles",
                 last, current);
  for (const Profile& each : activeProfiles()) scheduleEvents(each, each->isWifiEnabled());
}

}  // namespace hushmode
