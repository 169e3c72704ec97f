// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Turning a profile on or off when its moment has come, and planning all of them anew.

#include "calendar/EventBinding.h"
#include "scheduler/SwitchDecision.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"
#include "util/Now.h"
#include "wifi/HMWiFiManager.h"

namespace hushmode {

using platform::Date;
using Event = HMProfilesManager::Event;
using Profile = HMProfilesManager::Profile;

namespace {

constexpr const char* method = "processScheduledEvent:";

/// 0 for an absent date, as for any question to none.
double secondsFromNow(const std::optional<Date>& date) { return date ? *date - now() : 0; }

std::optional<Date> startOf(const Event& event) { return event ? std::optional(event->startDate()) : std::nullopt; }
std::optional<Date> endOf(const Event& event) { return event ? std::optional(event->endDate()) : std::nullopt; }

/// By the network alone: the profile is on one of its own.
void processOnNetwork(HMProfilesManager& manager, const Profile& profile) {
  if (profile->isAllDay()) {
    profile->apply();
    return;
  }
  const double toStart = secondsFromNow(profile->startDate());
  const std::int64_t wholeToStart = wholeSeconds(toStart);
  logInformation(method, "startTimeDiff: %f & startTimeDiffInt: %ld", toStart, wholeToStart);
  const double toEnd = secondsFromNow(profile->endDate());
  const std::int64_t wholeToEnd = wholeSeconds(toEnd);
  logInformation(method, "endTimeDiff: %f & endTimeDiffInt: %ld", toEnd, wholeToEnd);
  switch (switchOnNetwork(wholeToStart, wholeToEnd, profile->isApplied())) {
    case Switch::On:
      logInformation(method, "********************* TURNING PROFILE ON ******************");
      logInformation(method, "Applying profile: %@", profile);
      profile->apply();
      logInformation(method, "Scheduling power wakeup at: %@ for reverting profile.", profile->endDate());
      manager.registerForPowerNotifications(profile->endDate(), profile);
      break;
    case Switch::Off:
      logInformation(method, "********************* TURNING PROFILE OFF ******************");
      profile->revert();
      logInformation(method, "Scheduling power wakeup for 'WiFi' at: %@ for applying profile.", profile->startDate());
      manager.registerForPowerNotifications(profile->startDate(), profile);
      break;
    case Switch::Leave:
      break;
  }
}

/// Applies first, then arms the wake-up for the revert, also when there was nothing to apply.
void turnOn(HMProfilesManager& manager, const Profile& profile, const Event& current) {
  logInformation(method, "********************* TURNING PROFILE ON ******************");
  applyProfile(current);
  const std::optional<Date> revertAt =
      revertDate(endOf(current), profile->isAllDay() ? std::nullopt : std::optional(profile->endDate()));
  logInformation(method, "************* Scheduling power wakeup at: %@ for reverting profile.", revertAt);
  manager.registerForPowerNotifications(revertAt, profile);
}

/// The filter on event status guards turning on and turning off alike.
bool passesStatusFilter(const Profile& profile, const Event& current) {
  const std::int64_t wanted = profile->applyProfileEventStatus();
  if (wanted <= 0) return true;
  const auto status = static_cast<std::int64_t>(current ? current->status() : platform::EKEventStatus::None);
  if (status == wanted) return true;
  logInformation(method,
                 "********************* UNBALE TO TURN ON PROFILE, Profile Status: %ld & Event Status: %ld "
                 "******************",
                 wanted, status);
  return false;
}

void processTimedEvent(HMProfilesManager& manager, const Profile& profile, const Event& current, bool owesRevert) {
  logInformation(method, "Processing scheduled event: %@", current);
  FollowedEvent followed;
  const double toStart = secondsFromNow(startOf(current));
  followed.secondsToStart = wholeSeconds(toStart);
  logInformation(method, "[currentEvent.startDate timeIntervalSinceNow]: %f & startTimeDiffInt: %ld", toStart,
                 followed.secondsToStart);
  const double toEnd = secondsFromNow(endOf(current));
  followed.secondsToEnd = wholeSeconds(toEnd);
  logInformation(method, "[currentEvent.endDate timeIntervalSinceNow]: %f & endTimeDiffInt: %ld", toEnd,
                 followed.secondsToEnd);
  followed.occurring = hm_isOccuring(current);
  followed.applied = hm_isProfileApplied(current);
  followed.endsWithWindowOrLater = current && current->endDate() - profile->endDate() >= 0;

  switch (switchByEvent(followed)) {
    case Switch::On:
      turnOn(manager, profile, current);
      break;
    case Switch::Off:
      logInformation(method, "********************* TURNING PROFILE OFF ******************");
      revertProfile(current);
      logInformation(method, "Calling schedule evetns from %s", method);
      // Plan first and remove after: what the plan records anew is another object and stays.
      manager.schedulePowerEventsForProfiles();
      manager.removeEventFromScheduledList(profile, current);
      break;
    case Switch::Leave:
      if (owesRevert) {
        profile->revert();
        manager.removeEventFromScheduledList(profile, current);
      }
      break;
  }
}

}  // namespace

void HMProfilesManager::processScheduledEvent(const Profile& profile) {
  const Profile held = profile;
  bool owesRevert = false;
  if (!held) return;
  if (held->isWifiEnabled()) {
    const std::optional<std::string> name = networkName(HMWiFiManager::sharedManager()->currentNetWork());
    logInformation(method, "********* Checking whether the network *** '%@' *** is in enabled list or not.", name);
    if (held->hasWiFiNetwork(name)) return processOnNetwork(*this, held);
    owesRevert = held->isApplied();
  }
  logInformation(method, "**** Calling 'getCurrentScheduledEventFromProfile' *************");
  const Event current = getCurrentScheduledEventFromProfile(held);
  if (current && current->isAllDay()) {
    if (!held->isAllDayEventsIgnored() && !held->isApplied() && passesStatusFilter(held, current)) {
      turnOn(*this, held, current);
    }
    return;
  }
  if (passesStatusFilter(held, current)) processTimedEvent(*this, held, current, owesRevert);
}

void HMProfilesManager::registerForPowerNotifications(const std::optional<Date>& date, const Profile& profile) {
  logInformation("registerForPowerNotifications:profile:", "******** Scheduling timer for %@ ***************", date);
  if (profile) profile->beginTimerForDate(date);
}

void HMProfilesManager::schedulePowerEventsForProfiles(bool reload) {
  if (!isHushmodeEnabled()) return;
  if (reload) loadProfiles();
  for (const Profile& each : activeProfiles()) scheduleEvents(each, reload);
}

void HMProfilesManager::schedulePowerEventsForProfiles() {
  logInformation("schedulePowerEventsForProfiles",
                 "***************** schedulePowerEventsForProfiles is called ********************");
  schedulePowerEventsForProfiles(false);
}

void HMProfilesManager::revertAppliedProfilesIfAny() {
  if (profiles_.empty()) loadProfiles();
  const std::vector<Profile> all = profiles_;  // Reverting puts elements of the list in place anew.
  for (const Profile& each : all) {
    if (each->isApplied()) each->revert(true);
  }
}

void HMProfilesManager::handleHushmodeEnabledOrDisabled() {
  if (isHushmodeEnabled()) return;
  for (const Profile& each : activeProfiles()) {
    if (each->isApplied()) each->revert(false);
  }
}

void HMProfilesManager::eventStoreChanged(const platform::Notification&) {
  if (eventStoreUpdateTimer()) eventStoreUpdateTimer()->invalidate();
  setEventStoreUpdateTimer(nullptr);
  // A burst of changes ends in one plan, this long after the last of them.
  constexpr double debounceSeconds = 2.5;
  const std::weak_ptr<Object> weak = weak_from_this();
  setEventStoreUpdateTimer(platform::device().foundation().timerWithTimeInterval(
      debounceSeconds, [weak](const std::shared_ptr<platform::NSTimer>& timer) {
        if (const auto manager = std::static_pointer_cast<HMProfilesManager>(weak.lock())) {
          manager->handleEventStoreChanges(timer);
        }
      }));
  platform::device().coreFoundation().mainRunLoop().addTimer(eventStoreUpdateTimer());
}

void HMProfilesManager::handleEventStoreChanges(const std::shared_ptr<platform::NSTimer>&) {
  if (eventStoreUpdateTimer()) eventStoreUpdateTimer()->invalidate();
  setEventStoreUpdateTimer(nullptr);
  logInformation("handleEventStoreChanges:", "***************** Handling event store changes ********************");
  schedulePowerEventsForProfiles();
}

}  // namespace hushmode
