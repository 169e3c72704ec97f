// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarSet.h"
#include "devices/shared/CalendarSource.h"

namespace hushmode::devices {

/// A source whose calendars are kept in a set. Whoever changes the set tells of it afterwards.
class CalendarSetSource : public CalendarSource {
 public:
  const std::vector<CalendarInfo>& calendars() const override { return set().calendars(); }
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to,
                                              const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier,
                                                   const TimeZone& local) const override {
    return set().withIdentifier(eventIdentifier, local);
  }
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const override {
    return set().withUniqueId(uuid, local);
  }
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const override {
    return set().withUniqueId(uniqueId, local);
  }
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const override {
    return set().withUniqueId(uniqueId, start, local);
  }

 private:
  virtual const CalendarSet& set() const = 0;
};

}  // namespace hushmode::devices
