// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarFiles.h"
#include "devices/shared/CalendarSet.h"
#include "devices/shared/TimeZone.h"
#include "platform/Date.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// Calendars kept as iCalendar (RFC 5545) files in a folder, as calendar synchronisers write them.
///
/// Below the root, a folder with `.ics` files is a calendar (one event a file, or many), a folder that holds calendars
/// is an account, and an `.ics` file that lies in the root or in an account is a calendar by itself. Hidden files and
/// other suffixes are ignored.
///
/// A calendar's identifier is its path below the root, with "/" ("Personal/meetings", "holidays.ics"), after the prefix
/// that was asked for. Its title is what its `displayname` file says, else X-WR-CALNAME, else the name of its folder or
/// file; its account the folder that it lies in. It is writable when its folder (or file) is.
///
/// Nothing is written. No call throws or hangs because of what the files hold: whatever cannot be read, is not
/// understood or is too costly to expand is left out and named in one line to the diagnostics, once per content of the
/// file. A file that was read and now cannot be, or is half-written, counts as it was. For use from one thread.
class CalendarFolder {
 public:
  using Diagnostics = CalendarSet::Diagnostics;

  /// Reads nothing yet: call `rescan`. A root that does not exist is a folder without calendars.
  explicit CalendarFolder(std::filesystem::path root, Diagnostics diagnostics = {}, std::string identifierPrefix = {});

  /// Looks at the folder again: reads the files whose size, modification time or inode changed, and drops what is gone.
  /// Answers whether anything changed, calendars' names and permissions included.
  bool rescan();

  /// The calendars, ordered by identifier.
  const std::vector<CalendarInfo>& calendars() const { return set_.calendars(); }
  const CalendarSet& set() const { return set_; }

  /// The occurrences, cancelled ones included, that overlap the span: those that start before `to` and end after
  /// `from`, and those without length at `from` or later and before `to`. Ordered by start, end, calendar, unique
  /// identifier.
  ///
  /// All-day entries last from local midnight to local midnight, floating times are local times. A span of more than
  /// four years is cut to its first four years.
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to, const TimeZone& local) const {
    return set_.occurrences(from, to, local);
  }
  /// The same, only of the calendars with these identifiers; unknown ones are ignored.
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to, const TimeZone& local,
                                              const std::vector<std::string>& identifiers) const;

  /// The first occurrence of the entry with this key; absent when no calendar has it, or when it never occurs. Of the
  /// entries that share a UUID or unique identifier, that of the first calendar is meant.
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const {
    return set_.withUniqueId(uuid, local);
  }
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier, const TimeZone& local) const {
    return set_.withIdentifier(eventIdentifier, local);
  }
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const {
    return set_.withUniqueId(uniqueId, local);
  }
  /// The occurrence that starts at `start`.
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const {
    return set_.withUniqueId(uniqueId, start, local);
  }

 private:
  std::filesystem::path root_;
  std::string identifierPrefix_;
  CalendarSet set_;
  std::map<std::string, CalendarFiles> files_;  ///< By the calendar's identifier.
  std::set<std::string> placeProblems_;         ///< Of the last scan, so as not to repeat them.
};

}  // namespace hushmode::devices
