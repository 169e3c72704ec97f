// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarFolder.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What the tests of calendars share.
namespace hushmode::devices::samples {

/// The small calendars beside the tests, one for each behaviour.
inline std::filesystem::path fixtures() {
  return std::filesystem::path(HUSHMODE_SOURCE_FOLDER) / "tests" / "fixtures" / "calendars";
}

inline std::shared_ptr<const TimeZone> zone(const std::string& name) {
  auto found = TimeZone::named(name);
  EXPECT_NE(found, nullptr) << name;
  return found ? found : TimeZone::utc();
}

/// Wall-clock seconds of "2026-03-30" or "2026-03-30 08:15".
inline std::int64_t wall(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;
  EXPECT_GE(std::sscanf(text.c_str(), "%d-%d-%d %d:%d", &year, &month, &day, &hour, &minute), 3) << text;
  const std::chrono::sys_days date = std::chrono::year(year) / month / day;
  return date.time_since_epoch().count() * std::int64_t{86'400} + hour * 3600 + minute * 60;
}

inline platform::Date instant(const std::string& text, const TimeZone& zone) {
  return platform::Date(static_cast<double>(zone.utcFromLocal(wall(text))));
}

/// "2026-03-30 08:15", and seconds where there are any.
inline std::string wallText(std::int64_t wall) {
  const std::chrono::sys_seconds time{std::chrono::seconds(wall)};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const auto second = (time - day).count();
  char text[40];
  std::snprintf(text, sizeof text, second % 60 == 0 ? "%d-%02u-%02u %02d:%02d" : "%d-%02u-%02u %02d:%02d:%02d",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(second / 3600), static_cast<int>(second / 60 % 60), static_cast<int>(second % 60));
  return text;
}

inline std::string localText(platform::Date date, const TimeZone& zone) {
  return wallText(zone.localFromUtc(static_cast<std::int64_t>(date.secondsSince1970())));
}

/// "2026-03-30 08:15 to 2026-03-30 09:00 Title", with "(all day)" and the status where there is one.
inline std::string text(const CalendarOccurrence& occurrence, const TimeZone& zone) {
  constexpr const char* kStatus[] = {"", " confirmed", " tentative", " cancelled"};
  return localText(occurrence.start, zone) + " to " + localText(occurrence.end, zone) + " " +
         occurrence.details->title.value_or("(no title)") + (occurrence.details->allDay ? " (all day)" : "") +
         kStatus[static_cast<int>(occurrence.details->status)];
}

inline std::vector<std::string> texts(const std::vector<CalendarOccurrence>& occurrences, const TimeZone& zone) {
  std::vector<std::string> result;
  for (const CalendarOccurrence& occurrence : occurrences) result.push_back(text(occurrence, zone));
  return result;
}

/// A folder that is removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "hushmode-calendars-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
    path_ = pattern;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Writes a file, and the folders around it.
  void write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream file(path_ / name, std::ios::binary);
    file << text;
    ASSERT_TRUE(file.flush()) << name;
  }

 private:
  std::filesystem::path path_;
};

/// A calendar of one event.
inline std::string calendarText(const std::string& uid, const std::string& start = "20260330T080000Z",
                                const std::string& more = "") {
  return "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + uid + "\r\nDTSTART:" + start + "\r\n" +
         more + "END:VEVENT\r\nEND:VCALENDAR\r\n";
}

}  // namespace hushmode::devices::samples
