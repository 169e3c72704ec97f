#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/Date.h"
#include "platform/EventKit.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// A calendar of the folder, as the last scan found it.
struct CalendarInfo {
  std::string identifier;    ///< Its path below the root, with "/": "Personal/meetings", "holidays.ics".
  std::string title;         ///< The `displayname` file, else X-WR-CALNAME, else the name of the folder or file.
  std::string accountTitle;  ///< The name of the folder that the calendar lies in.
  bool writable = false;     ///< Whether its folder (or file) may be written.
  std::shared_ptr<platform::EKCalendar> calendar;  ///< The same as an object; a new one whenever one of these changes.
};

/// One occurrence of a calendar entry.
struct CalendarOccurrence {
  platform::Date start, end;  ///< `start` <= `end`.
  std::shared_ptr<const platform::EKEventDetails> details;
  std::size_t calendar = 0;  ///< Index into `CalendarFolder::calendars()`.
};

/// Calendars kept as iCalendar (RFC 5545) files in a folder, as calendar synchronisers write them.
///
/// Below the root, a folder with `.ics` files is a calendar (one event a file, or many), a folder that holds calendars
/// is an account, and an `.ics` file that lies in the root or in an account is a calendar by itself. Hidden files and
/// other suffixes are ignored.
///
/// Nothing is written. No call throws or hangs because of what the files hold: whatever cannot be read, is not
/// understood or is too costly to expand is left out and named in one line to the diagnostics, once per content of the
/// file. For use from one thread.
class CalendarFolder {
 public:
  using Diagnostics = std::function<void(const std::string& line)>;

  /// Reads nothing yet: call `rescan`. A root that does not exist is a folder without calendars.
  explicit CalendarFolder(std::filesystem::path root, Diagnostics diagnostics = {});
  ~CalendarFolder();
  CalendarFolder(const CalendarFolder&) = delete;
  CalendarFolder& operator=(const CalendarFolder&) = delete;

  /// Looks at the folder again: reads the files whose size, modification time or inode changed, and drops what is gone.
  /// Answers whether anything changed, calendars' names and permissions included.
  bool rescan();

  /// The calendars, ordered by identifier.
  const std::vector<CalendarInfo>& calendars() const;

  /// The occurrences, cancelled ones included, that overlap the span: those that start before `to` and end after
  /// `from`, and those without length at `from` or later and before `to`. Ordered by start, end, calendar, unique
  /// identifier.
  ///
  /// All-day entries last from local midnight to local midnight, floating times are local times. A span of more than
  /// four years is cut to its first four years.
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to, const TimeZone& local) const;
  /// The same, only of the calendars with these identifiers; unknown ones are ignored.
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to, const TimeZone& local,
                                              const std::vector<std::string>& identifiers) const;

  /// The first occurrence of the entry with this key; absent when no calendar has it, or when it never occurs. Of the
  /// entries that share a UUID or unique identifier, that of the first calendar is meant.
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const;
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier, const TimeZone& local) const;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const;
  /// The occurrence that starts at `start`.
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace hushmode::devices
