// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "calendar/HMEventManager.h"

#include "calendar/EventBinding.h"
#include "calendar/EventMatch.h"
#include "model/DayHelpers.h"
#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"
#include "util/Now.h"

#include <algorithm>

namespace hushmode {

using platform::EKCalendar;
using platform::EKEvent;
using platform::EKEventStore;
using Calendars = HMEventManager::Calendars;
using Events = HMEventManager::Events;

HMEventManager::HMEventManager(Private) {}
HMEventManager::~HMEventManager() = default;

std::shared_ptr<HMEventManager> HMEventManager::sharedManager() {
  static constexpr char key = 0;
  return platform::Process::current().singleInstance<HMEventManager>(&key, &HMEventManager::init,
                                                                     [](HMEventManager&) {});
}

std::shared_ptr<HMEventManager> HMEventManager::init() {
  auto manager = std::make_shared<HMEventManager>(Private());
  manager->initialize();
  return manager;
}

void HMEventManager::initialize() {
  setEventStore(platform::device().eventKit().makeEventStore());
  HMProfilesManager* observer = HMProfilesManager::sharedManager().get();
  platform::device().foundation().defaultNotificationCenter().addObserver(
      observer, EKEventStore::changedNotification, eventStore(),
      [observer](const platform::Notification& notification) { observer->eventStoreChanged(notification); });
}

Events HMEventManager::eventsOfToday(const Calendars& calendars) const {
  const platform::Date instant = now();
  return eventStore()->eventsMatchingPredicate(
      eventStore()->predicateForEventsWithStartDate(hm_beginningOfDay(instant), hm_endOfDay(instant), calendars));
}

Events HMEventManager::eventsForToday() const {
  return eventsOfToday(allCalendars(HMProfilesManager::sharedManager()->calendarIdentifiers()));
}

Calendars HMEventManager::allCalendars(const std::vector<std::string>& identifiers) const {
  if (identifiers.empty()) return {};
  Calendars found = calendars();
  std::erase_if(found, [&](const std::shared_ptr<EKCalendar>& calendar) {
    return std::find(identifiers.begin(), identifiers.end(), calendar->calendarIdentifier()) == identifiers.end();
  });
  return found;
}

std::optional<Events> HMEventManager::eventsForProfile(const std::shared_ptr<HMProfile>& profile) const {
  static constexpr const char* method = "eventsForProfile:";
  if (!profile || profile->calendarIdentifiers().empty()) return std::nullopt;
  const Calendars calendars = allCalendars(profile->calendarIdentifiers());
  if (calendars.empty()) return std::nullopt;

  Events events;
  for (std::shared_ptr<EKEvent>& event : eventsOfToday(calendars)) {
    const bool cancelled = event->status() == platform::EKEventStatus::Canceled;
    if (profile->isAllDay()) {
      if (cancelled) {
        logInformation({method, 95}, "**** 1. Event '%@' is cancelled, hence ignoring it.", event->title());
        continue;
      }
      setHm_profile(event, profile);
      events.push_back(event);
    } else {
      if (cancelled) {
        logInformation({method, 104}, "**** 2. Event '%@' is cancelled, hence ignoring it.", event->title());
        continue;
      }
      setHm_profile(event, profile);  // Also those that the window drops.
      if (eventMeetsWindow(event->startDate(), event->endDate(), profile->startDate(), profile->endDate(), now())) {
        events.push_back(event);
      }
    }
  }
  return events;
}

Calendars HMEventManager::calendars() const {
  return eventStore()->calendarsForEntityType(platform::EKEntityType::Event);
}

std::vector<std::pair<std::string, Calendars>> HMEventManager::groupedCalendars() const {
  std::vector<std::pair<std::string, Calendars>> groups;
  for (const auto& calendar : calendars()) {
    if (!calendar->allowsContentModifications()) continue;  // Subscribed calendars and the like, on purpose.
    const std::string& account = calendar->source()->title();
    auto group = std::find_if(groups.begin(), groups.end(), [&](const auto& each) { return each.first == account; });
    if (group == groups.end()) group = groups.insert(groups.end(), {account, {}});
    group->second.push_back(calendar);
  }
  return groups;
}

std::shared_ptr<EKEvent> HMEventManager::eventWithUUID(std::string_view uuid) const {
  return eventStore()->eventWithUUID(uuid);
}
std::shared_ptr<EKEvent> HMEventManager::eventByIdentifier(std::string_view identifier) const {
  return eventStore()->eventWithIdentifier(identifier);
}
std::shared_ptr<EKEvent> HMEventManager::eventWithUniqueId(std::string_view uniqueId) const {
  return eventStore()->eventWithUniqueId(uniqueId);
}
std::shared_ptr<EKEvent> HMEventManager::eventWithUniqueId(std::string_view uniqueId,
                                                           platform::Date occurrenceDate) const {
  return eventStore()->eventWithUniqueId(uniqueId, occurrenceDate);
}

const std::vector<std::string>& HMProfile::calendarIdentifiers() {
  if (!calendarIdentifiers_) {
    calendarIdentifiers_.emplace();
    for (const auto& [account, calendars] : HMEventManager::sharedManager()->groupedCalendars()) {
      for (const auto& calendar : calendars) calendarIdentifiers_->push_back(calendar->calendarIdentifier());
    }
  }
  return *calendarIdentifiers_;
}

}  // namespace hushmode
