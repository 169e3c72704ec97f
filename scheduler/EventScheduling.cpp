// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Which calendar event each profile follows next, and whether it is applied now or a wake-up is armed for its start.
// Every trigger ends here.

#include "calendar/EventBinding.h"
#include "calendar/HMEventManager.h"
#include "model/DayHelpers.h"
#include "scheduler/EventChoice.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"
#include "util/Now.h"
#include "util/Numbers.h"

namespace hushmode {

using platform::Date;
using platform::EKEventStatus;
using Event = HMProfilesManager::Event;
using Profile = HMProfilesManager::Profile;

namespace {

/// 0 for none, as for any question to none.
std::int64_t identifierOf(const Profile& profile) { return profile ? profile->identifier() : 0; }

bool isCancelled(const Event& event) { return event->status() == EKEventStatus::Canceled; }

/// Whether the event to come has the same profile and the same times as the applied one that is followed now.
bool isAppliedAtTheSameTimes(const Event& current, const Event& next) {
  return identifierOf(hm_profile(current)) == identifierOf(hm_profile(next)) && hm_isProfileApplied(current) &&
         next->startDate() == current->startDate() && next->endDate() == current->endDate();
}

bool startsInsideApplied(const Event& current, const Event& next) {
  return identifierOf(hm_profile(current)) == identifierOf(hm_profile(next)) && hm_isProfileApplied(current) &&
         hm_isBetweenDate(next->startDate(), current->startDate(), current->endDate());
}

/// The tests that can end a plan before anything changes; true when one of them did. On the way an applied event that
/// is overtaken by one of the same profile is reverted quietly.
bool planEndsWithCurrentEvent(const Event& current, const Event& next, bool shouldProceedAnyCase) {
  static constexpr const char* method = "scheduleEvents:shouldProceedAnyCase:";
  if (!shouldProceedAnyCase && current->UUID() == next->UUID() && isAppliedAtTheSameTimes(current, next)) {
    logInformation(method,
                   "There is no change in the current scheduled event, hence ignoring the 'scheduleEvents:' call.");
    return true;
  }
  const Profile profile = hm_profile(current);
  if (isAppliedAtTheSameTimes(current, next)) {
    if (!profile->hasChanged(hm_profile(next))) {
      logInformation(method,
                     "No changes detected between the current event's profile and to be scheduled event's profile.");
      const Date instant = now(), start = profile->startDate(), end = profile->endDate();
      if (hm_isBetweenDate(instant, start, end)) {
        logInformation(
            method,
            "Current profile is applied, and current time %@ is between start time %@ and end time %@. Hence "
            "ignoring the 'scheduleEvents:' call.",
            instant, start, end);
        profile->refreshSoundSettingsIfRequired();
        return true;
      }
    } else {
      // Both events carry the same profile object as things stand, which never differs from itself.
      logInformation(method, "Seems profiles are changed, hence not ignoring the schedule events call.");
    }
  }
  profile->setSilent(startsInsideApplied(current, next));
  if (profile->isSilent() && hm_isProfileApplied(current)) {
    revertProfile(current, true);
    profile->setSilent(false);
  }
  return false;
}

}  // namespace

void HMProfilesManager::scheduleEvents(const Profile& profile, bool shouldProceedAnyCase) {
  static constexpr const char* method = "scheduleEvents:shouldProceedAnyCase:";
  if (!profile) return;
  const Profile planned = profile;
  if (!planned->isEnabled()) {
    if (planned->isApplied()) planned->revert();
    logInformation(method, "Profile '%@' not enabled. Hence returning from scheduling it...", planned->title());
    return;
  }
  logInformation(method, "**** Trying to schedule events for profile '%@'", planned->title());
  shceduleWiFiDetected(planned, [&](bool goOn) {
    if (!goOn) {
      if (planned->isApplied()) planned->refreshSoundSettingsIfRequired();
      return;
    }
    const Event next = eventToBeScheduled(HMEventManager::sharedManager()->eventsForProfile(planned));
    const Event current = getCurrentScheduledEventFromProfile(planned);
    if (!next) {
      logInformation(method, "No events found to be scheduled for Profile '%@', between %@ & %@", planned->title(),
                     planned->startDate(), planned->endDate());
      if (planned->isApplied()) planned->revert();
      logInformation(method, "Got current event as: %@", current);
      if (current) {
        planned->stopTimers();
        removeEventFromScheduledList(planned, current);
      }
      return;
    }
    if (current && planEndsWithCurrentEvent(current, next, shouldProceedAnyCase)) return;
    scheduledEventsDict().record(planned->identifier(), next);
    schedulePowerEvent(planned, next);
  });
}

Event HMProfilesManager::eventToBeScheduled(const std::optional<Events>& events) {
  static constexpr const char* method = "eventToBeScheduled:";
  if (!events) return nullptr;
  Event chosen;
  for (const Event& event : *events) {
    if (isCancelled(event)) {
      logInformation(method, "**** 3. Event '%@' is cancelled, hence ignoring it.", event->title());
      continue;
    }
    const Profile profile = hm_profile(event);
    if (event->isAllDay()) {
      if (profile && profile->isAllDayEventsIgnored()) continue;
      chosen = event;
      break;
    }
    logBare(method, "***** Checking whether the event start date: %@ and end dates %@ with current time..",
            event->startDate(), event->endDate());
    std::optional<Window> window;
    if (profile && !profile->isAllDay()) window = {profile->startDate(), profile->endDate()};
    if (qualifiesAtOnce(event->startDate(), event->endDate(), window, now())) {
      chosen = event;
      break;
    }
  }
  if (!chosen) {
    const Date instant = now();
    std::optional<Date> bestStart;
    for (const Event& event : *events) {
      if (isCancelled(event)) {
        logInformation(method, "**** 4. Event '%@' is cancelled, hence ignoring it.", event->title());
      } else if (startsNext(event->startDate(), bestStart, instant)) {
        chosen = event;
        bestStart = event->startDate();
      }
    }
  }
  if (!chosen) return nullptr;
  const Profile profile = hm_profile(chosen);
  return isDroppedInTheEnd(chosen->isAllDay(), profile && profile->isAllDayEventsIgnored()) ? nullptr : chosen;
}

Event HMProfilesManager::getCurrentScheduledEventFromProfile(const Profile& profile) {
  const ScheduledEvents::List* list = scheduledEventsDict().find(identifierOf(profile));
  if (!list) {
    logWarning("getCurrentScheduledEventFromProfile:", "No event found for Profile with id %ld", identifierOf(profile));
    return nullptr;
  }
  if (list->empty()) return nullptr;
  const Event event = list->front();
  setHm_profile(event, profile);
  return event;
}

void HMProfilesManager::removeEventFromScheduledList(const Profile& profile, const Event& event) {
  const ScheduledEvents::List* list = scheduledEventsDict().find(identifierOf(profile));
  logInformation("removeEventFromScheduledList:event:", "******** Removing %@ from scheduled list %@", event,
                 list ? std::optional(*list) : std::nullopt);
  scheduledEventsDict().remove(identifierOf(profile), event);
}

void HMProfilesManager::schedulePowerEvent(const std::shared_ptr<platform::PCSimpleTimer>& timer) {
  logInformation("schedulePowerEvent:", "************** schedulePowerEvent: %@ *****************", timer);
  const std::int64_t identifier = timer ? integerMeaning(timer->userInfo().find("ProfileIdentifier")) : 0;
  scheduleEvents(profileByIdentifier(identifier), true);
}

void HMProfilesManager::schedulePowerEvent(const Profile& profile, const Event& withEvent) {
  static constexpr const char* method = "schedulePowerEvent:withEvent:";
  const Profile held = profile;
  const Event event = withEvent ? withEvent : getCurrentScheduledEventFromProfile(held);
  if (!event) {
    logError(method, "****************** Event is nil, hence returning ****************");
    return;
  }
  if (isCancelled(event)) {
    logInformation(method, "**** 5. Event '%@' is cancelled, hence ignoring it.", event->title());
    return;
  }
  if (event->isAllDay()) {
    if (held && held->isAllDayEventsIgnored()) return;
    logInformation(method, "Scheduling event now is: %@", event);
    processScheduledEvent(held);
    return;
  }
  logInformation(method, "******Scheduling power events for %@", event);
  if (!held) return;  // Without a profile there is no window to wait for and nothing to switch.
  const auto bound = [&] { return hm_profile(event); };
  const auto isBoundApplied = [&] { return bound() && bound()->isApplied(); };
  const Date instant = now();

  if (held->isAllDay() || hm_isBetweenDate(instant, held->startDate(), held->endDate())) {
    if (hm_isBetweenDate(instant, event->startDate(), event->endDate())) {
      processScheduledEvent(held);
      return;
    }
    if (event->startDate() < instant) {
      logInformation(method, "********* Event %@ seems to be out dated, hence not scheduling it.", event);
    } else {
      logInformation(method, "******** Scheduling power wakeup at: %@ for applying profile.", event->startDate());
      registerForPowerNotifications(event->startDate(), bound());
    }
    if (isBoundApplied()) revertProfile(event);
    return;
  }

  // The window is not open: it is still to come, or it has closed.
  if (held->startDate() >= now()) {
    logInformation(
        method, "****** Profile's start ime is not crossed, hence scheduling power wakeup at: %@ for applying profile.",
        held->startDate());
    registerForPowerNotifications(held->startDate(), bound());
    if (isBoundApplied()) revertProfile(event);
    return;
  }
  logInformation(method, "******* Event %@ seems to be out dated, hence not scheduling it.", event);
  if (isBoundApplied() && held->endDate() - now() <= 0) {
    logInformation(method, "******** Seems event is running/out, but the profile is still applied hence reverting it.");
    revertProfile(event);
  }
}

}  // namespace hushmode
