// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/JoinedCalendars.h"

#include <algorithm>
#include <utility>

namespace hushmode::devices {

using platform::Date;

void JoinedCalendars::add(std::unique_ptr<CalendarSource> source) {
  source->setChangeHandler([this](const platform::Dictionary& step) {
    arrange();
    tellChanged(step);
  });
  parts_.push_back({std::move(source), {}});
  arrange();
  tellChanged({{"step", "calendars added"}});
}

/// Puts the calendars of all sources in one order.
void JoinedCalendars::arrange() {
  struct Origin {
    const CalendarInfo* info;
    Part* part;
    std::size_t index;
  };
  std::vector<Origin> origins;
  for (Part& part : parts_) {
    const std::vector<CalendarInfo>& own = part.source->calendars();
    part.places.resize(own.size());
    for (std::size_t index = 0; index < own.size(); ++index) origins.push_back({&own[index], &part, index});
  }
  std::stable_sort(origins.begin(), origins.end(),
                   [](const Origin& a, const Origin& b) { return a.info->identifier < b.info->identifier; });
  calendars_.clear();
  for (const auto& [info, part, index] : origins) {
    part->places[index] = calendars_.size();
    calendars_.push_back(*info);
  }
}

std::vector<CalendarOccurrence> JoinedCalendars::occurrences(Date from, Date to, const TimeZone& local) const {
  std::vector<CalendarOccurrence> all;
  for (const Part& part : parts_) {
    for (CalendarOccurrence& occurrence : part.source->occurrences(from, to, local)) {
      occurrence.calendar = part.places[occurrence.calendar];
      all.push_back(std::move(occurrence));
    }
  }
  return all;
}

template <class Look>
std::optional<CalendarOccurrence> JoinedCalendars::first(Look look) const {
  std::optional<CalendarOccurrence> found;
  for (const Part& part : parts_) {
    std::optional<CalendarOccurrence> occurrence = look(*part.source);
    if (!occurrence) continue;
    occurrence->calendar = part.places[occurrence->calendar];
    if (!found || occurrence->calendar < found->calendar) found = std::move(occurrence);
  }
  return found;
}

std::optional<CalendarOccurrence> JoinedCalendars::withIdentifier(std::string_view eventIdentifier,
                                                                  const TimeZone& local) const {
  return first([&](const CalendarSource& source) { return source.withIdentifier(eventIdentifier, local); });
}

std::optional<CalendarOccurrence> JoinedCalendars::withUUID(std::string_view uuid, const TimeZone& local) const {
  return first([&](const CalendarSource& source) { return source.withUUID(uuid, local); });
}

std::optional<CalendarOccurrence> JoinedCalendars::withUniqueId(std::string_view uniqueId,
                                                                const TimeZone& local) const {
  return first([&](const CalendarSource& source) { return source.withUniqueId(uniqueId, local); });
}

std::optional<CalendarOccurrence> JoinedCalendars::withUniqueId(std::string_view uniqueId, Date start,
                                                                const TimeZone& local) const {
  return first([&](const CalendarSource& source) { return source.withUniqueId(uniqueId, start, local); });
}

}  // namespace hushmode::devices
