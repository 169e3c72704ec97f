// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/daemon/PhoneLists.h"

#include "calendar/HMEventManager.h"
#include "devices/linux/base/Variants.h"
#include "wifi/HMWiFiManager.h"

namespace hushmode::daemon {

using devices::variantOf;
using platform::Date;

namespace {

bus::Dictionary busForm(const platform::EKEvent& event) {
  bus::Dictionary form{{"calendar", variantOf(event.calendar()->calendarIdentifier())},
                       {"uid", variantOf(event.uniqueId())},
                       {"start", variantOf(event.startDate().secondsSince1970())},
                       {"end", variantOf(event.endDate().secondsSince1970())},
                       {"status", variantOf(static_cast<gint64>(event.status()))},
                       {"allDay", variantOf(event.isAllDay())}};
  if (event.title()) form.emplace("title", variantOf(*event.title()));
  return form;
}

}  // namespace

bus::Dictionaries listedCalendars() {
  bus::Dictionaries list;
  for (const auto& each : HMEventManager::sharedManager()->calendars()) {
    list.push_back({{"identifier", variantOf(each->calendarIdentifier())},
                    {"title", variantOf(each->title())},
                    {"account", variantOf(each->source()->title())},
                    {"writable", variantOf(each->allowsContentModifications())}});
  }
  return list;
}

bus::Dictionaries listedNetworks(const host::Host& host) {
  bus::Dictionaries list;
  const auto joined = host.joinedNetwork();
  for (const auto& each : HMWiFiManager::sharedManager()->knownNetworks()) {
    const auto name = networkName(each);
    if (!name) continue;
    list.push_back({{"name", variantOf(*name)}, {"joined", variantOf(name == joined)}});
  }
  return list;
}

bus::Dictionaries listedEvents(double from, double to) {
  constexpr double longest = mostDays * 86400.0;
  // Written so that what is no number is refused, too.
  if (!(from <= to && to - from <= longest)) {
    throw host::EditError(host::EditError::Kind::InvalidArgument,
                          host::Message("expected a span of at most {0} days", mostDays));
  }
  const auto manager = HMEventManager::sharedManager();
  const auto store = manager->eventStore();
  bus::Dictionaries list;
  if (!store) return list;
  const auto predicate = store->predicateForEventsWithStartDate(Date(from), Date(to), manager->calendars());
  for (const auto& each : store->eventsMatchingPredicate(predicate)) list.push_back(busForm(*each));
  return list;
}

}  // namespace hushmode::daemon
