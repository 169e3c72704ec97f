// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarCache.h"
#include "devices/shared/CalendarFolder.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// A folder of calendars (see CalendarFolder) for programs that ask once and end: what its files hold is remembered in
/// a cache, by which only those that changed are read again.
///
/// The answers, and the lines about what cannot be used, are those of a CalendarFolder that has just read everything.
class CachedCalendarFolder {
 public:
  struct Options {
    std::filesystem::path root, cache;
    std::string identifierPrefix;
    std::string program;  ///< The version of the program: another one's cache is not used.
  };
  struct Calendar {
    std::string identifier, title, accountTitle;
    bool writable = false;
  };
  struct Occurrence {
    platform::Date start{0}, end{0};
    std::size_t calendar = 0;  ///< Index into `calendars`.
    std::string uid;
    std::optional<std::string> title;
    platform::EKEventStatus status = platform::EKEventStatus::None;
    bool allDay = false;
  };
  struct Contents {
    std::vector<Calendar> calendars;      ///< Ordered by identifier.
    std::vector<Occurrence> occurrences;  ///< Ordered by start, end, calendar, uid.
  };

  /// `now` (the wall clock) tells which files are so new that they may change without showing it.
  CachedCalendarFolder(Options options, CalendarFolder::Diagnostics diagnostics, platform::Date now);

  /// What overlaps the span, as `CalendarFolder::occurrences` has it.
  Contents read(platform::Date from, platform::Date to, const TimeZone& local);
  /// How many files the last `read` had to read.
  std::size_t filesRead() const { return filesRead_; }

 private:
  std::string keyFor(const TimeZone& local) const;
  static const CalendarCache::Calendar* remembered(const CalendarCache& cache, const std::string& identifier);
  bool isUpToDate(const CalendarCache& cache, const std::vector<CalendarPlace>& places) const;
  /// `others` are added to what the cache has.
  Contents contentsOf(const CalendarCache& cache, const std::vector<CalendarPlace>& places,
                      std::vector<Occurrence> others, platform::Date from, platform::Date to) const;
  void report(std::string_view lines) const;

  Options options_;
  CalendarFolder::Diagnostics diagnostics_;
  std::int64_t nowSeconds_;
  std::size_t filesRead_ = 0;
};

}  // namespace hushmode::devices
