// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarSource.h"

#include <memory>
#include <vector>

namespace hushmode::devices {

/// The calendars of several sources as those of one. Calendar identifiers must differ between the sources.
class JoinedCalendars final : public CalendarSource {
 public:
  /// Tells of a change. The source must have no change handler of its own.
  void add(std::unique_ptr<CalendarSource> source);

  const std::vector<CalendarInfo>& calendars() const override { return calendars_; }
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to,
                                              const TimeZone& local) const override;
  /// Of the entries in several sources that share a key, that of the first calendar is meant.
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier,
                                                   const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const override;

 private:
  struct Part {
    std::unique_ptr<CalendarSource> source;
    std::vector<std::size_t> places;  ///< Of its calendars, among all of them.
  };

  void arrange();
  template <class Look>
  std::optional<CalendarOccurrence> first(Look look) const;

  std::vector<Part> parts_;
  std::vector<CalendarInfo> calendars_;
};

}  // namespace hushmode::devices
