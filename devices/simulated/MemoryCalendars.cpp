// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/MemoryCalendars.h"

#include <algorithm>
#include <stdexcept>

namespace hushmode::devices {

using platform::Date;
using platform::EKCalendar;
using platform::EKEventDetails;
using platform::EKEventStatus;
using platform::EKSource;

std::size_t MemoryCalendars::indexOf(std::string_view calendar) const {
  const auto found = std::find_if(calendars_.begin(), calendars_.end(),
                                  [&](const CalendarInfo& each) { return each.identifier == calendar; });
  return static_cast<std::size_t>(found - calendars_.begin());
}

void MemoryCalendars::place(CalendarInfo calendar) {
  calendar.calendar = std::make_shared<EKCalendar>(calendar.identifier, calendar.title, calendar.writable,
                                                   std::make_shared<EKSource>(calendar.accountTitle));
  const std::size_t known = indexOf(calendar.identifier);
  if (known < calendars_.size()) {
    calendars_[known] = std::move(calendar);
    return;
  }
  const auto after = std::find_if(calendars_.begin(), calendars_.end(),
                                  [&](const CalendarInfo& each) { return each.identifier > calendar.identifier; });
  calendars_.insert(after, std::move(calendar));
}

void MemoryCalendars::addCalendar(std::string identifier, std::string title, std::string account, bool writable) {
  const std::string name = identifier;
  place({std::move(identifier), std::move(title), std::move(account), writable, nullptr});
  for (Stored& stored : events_) {
    if (stored.event.calendar == name) renew(stored);
  }
  tellChanged({{"step", "calendar added"}, {"calendar", name}});
}

void MemoryCalendars::removeCalendar(std::string_view identifier) {
  std::erase_if(events_, [&](const Stored& stored) { return stored.event.calendar == identifier; });
  std::erase_if(calendars_, [&](const CalendarInfo& each) { return each.identifier == identifier; });
  tellChanged({{"step", "calendar removed"}, {"calendar", identifier}});
}

void MemoryCalendars::renew(Stored& stored) const {
  const SimulatedEvent& event = stored.event;
  auto details = std::make_shared<EKEventDetails>();
  details->title = event.title;
  details->UUID = event.uid;
  details->eventIdentifier = event.calendar + ":" + event.uid;
  details->uniqueId = event.uid;
  details->status = event.status;
  details->allDay = event.allDay;
  details->calendar = calendars_[indexOf(event.calendar)].calendar;
  stored.details = std::move(details);
}

void MemoryCalendars::add(SimulatedEvent event) {
  if (event.end < event.start) throw std::invalid_argument("event " + event.uid + " ends before it starts");
  if (indexOf(event.calendar) == calendars_.size()) place({event.calendar, event.calendar, "Local", true, nullptr});
  Stored stored{std::move(event), nullptr};
  renew(stored);
  events_.push_back(std::move(stored));
  const SimulatedEvent& added = events_.back().event;
  tellChanged({{"step", "event added"},
               {"uid", added.uid},
               {"calendar", added.calendar},
               {"start", added.start},
               {"end", added.end}});
}

template <class Change>
void MemoryCalendars::change(std::string_view uid, const platform::Dictionary& step, Change edit) {
  bool found = false;
  for (Stored& stored : events_) {
    if (stored.event.uid != uid) continue;
    found = true;
    edit(stored.event);
    renew(stored);
  }
  if (!found) throw std::out_of_range("the calendars hold no event " + std::string(uid));
  tellChanged(step);
}

void MemoryCalendars::move(std::string_view uid, Date start, Date end) {
  if (end < start) throw std::invalid_argument("event " + std::string(uid) + " would end before it starts");
  change(uid, {{"step", "event moved"}, {"uid", uid}, {"start", start}, {"end", end}}, [&](SimulatedEvent& event) {
    event.start = start;
    event.end = end;
  });
}

void MemoryCalendars::setStatus(std::string_view uid, EKEventStatus status) {
  change(uid, {{"step", "event status"}, {"uid", uid}, {"status", static_cast<int>(status)}},
         [&](SimulatedEvent& event) { event.status = status; });
}

void MemoryCalendars::setTitle(std::string_view uid, std::optional<std::string> title) {
  change(uid, {{"step", "event renamed"}, {"uid", uid}, {"title", title.value_or("")}},
         [&](SimulatedEvent& event) { event.title = title; });
}

void MemoryCalendars::remove(std::string_view uid) {
  if (std::erase_if(events_, [&](const Stored& stored) { return stored.event.uid == uid; }) == 0) {
    throw std::out_of_range("the calendars hold no event " + std::string(uid));
  }
  tellChanged({{"step", "event removed"}, {"uid", uid}});
}

CalendarOccurrence MemoryCalendars::occurrence(const Stored& stored) const {
  return {stored.event.start, stored.event.end, stored.details, indexOf(stored.event.calendar)};
}

std::vector<CalendarOccurrence> MemoryCalendars::occurrences(Date from, Date to, const TimeZone&) const {
  std::vector<CalendarOccurrence> overlapping;
  for (const Stored& stored : events_) {
    const auto& [start, end] = std::pair(stored.event.start, stored.event.end);
    const bool isInstant = start == end;
    if (start <= to && (end > from || (isInstant && start >= from))) overlapping.push_back(occurrence(stored));
  }
  return overlapping;
}

template <class Test>
std::optional<CalendarOccurrence> MemoryCalendars::first(Test test) const {
  const Stored* earliest = nullptr;
  for (const Stored& stored : events_) {
    if (test(stored) && (!earliest || stored.event.start < earliest->event.start)) earliest = &stored;
  }
  return earliest ? std::optional(occurrence(*earliest)) : std::nullopt;
}

std::optional<CalendarOccurrence> MemoryCalendars::withIdentifier(std::string_view eventIdentifier,
                                                                  const TimeZone&) const {
  return first([&](const Stored& stored) { return stored.details->eventIdentifier == eventIdentifier; });
}

std::optional<CalendarOccurrence> MemoryCalendars::withUUID(std::string_view uuid, const TimeZone&) const {
  return first([&](const Stored& stored) { return stored.details->UUID == uuid; });
}

std::optional<CalendarOccurrence> MemoryCalendars::withUniqueId(std::string_view uniqueId, const TimeZone&) const {
  return first([&](const Stored& stored) { return stored.details->uniqueId == uniqueId; });
}

std::optional<CalendarOccurrence> MemoryCalendars::withUniqueId(std::string_view uniqueId, Date start,
                                                                const TimeZone&) const {
  return first(
      [&](const Stored& stored) { return stored.details->uniqueId == uniqueId && stored.event.start == start; });
}

}  // namespace hushmode::devices
