// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/daemon/PhoneLists.h"

#include "calendar/HMEventManager.h"
#include "wifi/HMWiFiManager.h"

namespace hushmode::daemon {

using platform::Date;

namespace {

template <class T>
Glib::VariantBase variant(const T& value) {
  return Glib::Variant<T>::create(value);
}

Glib::VariantBase text(const std::string& value) { return variant(Glib::ustring(value)); }

bus::Dictionary busForm(const platform::EKEvent& event) {
  bus::Dictionary form{
      {"calendar", text(event.calendar()->calendarIdentifier())}, {"uid", text(event.uniqueId())},
      {"start", variant(event.startDate().secondsSince1970())},   {"end", variant(event.endDate().secondsSince1970())},
      {"status", variant(static_cast<gint64>(event.status()))},   {"allDay", variant(event.isAllDay())}};
  if (event.title()) form.emplace("title", text(*event.title()));
  return form;
}

}  // namespace

bus::Dictionaries listedCalendars() {
  bus::Dictionaries list;
  for (const auto& each : HMEventManager::sharedManager()->calendars()) {
    list.push_back({{"identifier", text(each->calendarIdentifier())},
                    {"title", text(each->title())},
                    {"account", text(each->source()->title())},
                    {"writable", variant(each->allowsContentModifications())}});
  }
  return list;
}

bus::Dictionaries listedNetworks(const host::Host& host) {
  bus::Dictionaries list;
  const auto joined = host.joinedNetwork();
  for (const auto& each : HMWiFiManager::sharedManager()->knownNetworks()) {
    const auto name = networkName(each);
    if (!name) continue;
    list.push_back({{"name", text(*name)}, {"joined", variant(name == joined)}});
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
