// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Real calendars, most of them from the bug reports of a recurrence library's users, with what that library answers for
// them. They are not part of this repository: HUSHMODE_KNOWN_CALENDARS names the folder that has them.

namespace hushmode::devices {
namespace {

using platform::Date;

/// Files that break RFC 5545 in such a way that another answer is the better one.
const std::map<std::string, std::string> kOwnAnswers{
    {"bad_rrule_missing_until_event.ics",
     "The rule has the unknown part UNTL, so that nobody knows when it ends: only DTSTART is certain, and it occurs."},
};

std::string statusName(platform::EKEventStatus status) {
  switch (status) {
    case platform::EKEventStatus::Confirmed:
      return "CONFIRMED";
    case platform::EKEventStatus::Tentative:
      return "TENTATIVE";
    case platform::EKEventStatus::Canceled:
      return "CANCELLED";
    default:
      return "";
  }
}

/// An occurrence in one line, for comparison and for people.
std::string line(const std::string& uid, std::int64_t start, std::int64_t end, bool allDay, const std::string& status,
                 const std::string& title) {
  return std::to_string(start) + " " + std::to_string(end) + (allDay ? " all day" : "") + " [" + status + "] " + uid +
         " \"" + title + "\"";
}

std::vector<std::string> expectedLines(const nlohmann::json& occurrences) {
  std::vector<std::string> lines;
  for (const nlohmann::json& o : occurrences) {
    lines.push_back(line(o["uid"], o["start"], o["end"], o["allDay"], o["status"], o["title"]));
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::vector<std::string> actualLines(const CalendarFolder& folder, const std::string& file, const TimeZone& zone,
                                     std::int64_t midnight) {
  const auto begin = static_cast<double>(zone.startOfDay(midnight));
  const auto end = static_cast<double>(zone.startOfDay(midnight + 86'400));
  std::vector<std::string> lines;
  for (const CalendarOccurrence& o : folder.occurrences(Date(begin), Date(end), zone, {file})) {
    // The answers leave the UID of an event without one empty.
    const std::string uid = o.details->uniqueId.starts_with(file + "#") ? "" : o.details->uniqueId;
    lines.push_back(line(uid, static_cast<std::int64_t>(o.start.secondsSince1970()),
                         static_cast<std::int64_t>(o.end.secondsSince1970()), o.details->allDay,
                         statusName(o.details->status), o.details->title.value_or("")));
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::int64_t localMidnight(const std::string& day) {
  const std::chrono::year_month_day date{std::chrono::year(std::stoi(day.substr(0, 4))),
                                         std::chrono::month(static_cast<unsigned>(std::stoi(day.substr(5, 2)))),
                                         std::chrono::day(static_cast<unsigned>(std::stoi(day.substr(8, 2))))};
  return std::chrono::sys_days(date).time_since_epoch().count() * std::int64_t{86'400};
}

TEST(CalendarKnownAnswers, EveryFileZoneAndDayHasTheKnownOccurrences) {
  const char* folderName = std::getenv("HUSHMODE_KNOWN_CALENDARS");
  if (folderName == nullptr) GTEST_SKIP() << "HUSHMODE_KNOWN_CALENDARS names no folder of calendars with known answers";
  std::ifstream file(std::filesystem::path(folderName) / "expected.json");
  ASSERT_TRUE(file) << folderName;
  const nlohmann::json expected = nlohmann::json::parse(file);
  CalendarFolder folder(folderName);
  folder.rescan();

  std::size_t days = 0;
  for (const auto& [name, zones] : expected.items()) {
    for (const auto& [zoneName, answers] : zones.items()) {
      const auto zone = TimeZone::named(zoneName);
      ASSERT_NE(zone, nullptr) << zoneName;
      for (const auto& [day, occurrences] : answers.items()) {
        EXPECT_EQ(actualLines(folder, name, *zone, localMidnight(day)), expectedLines(occurrences))
            << name << ", " << zoneName << ", " << day;
        ++days;
      }
    }
  }
  EXPECT_GT(days, 1000U);
}

TEST(CalendarKnownAnswers, NothingOccursOnOtherDays) {
  const char* folderName = std::getenv("HUSHMODE_KNOWN_CALENDARS");
  if (folderName == nullptr) GTEST_SKIP() << "HUSHMODE_KNOWN_CALENDARS names no folder of calendars with known answers";
  std::ifstream file(std::filesystem::path(folderName) / "expected.json");
  ASSERT_TRUE(file) << folderName;
  const nlohmann::json expected = nlohmann::json::parse(file);
  CalendarFolder folder(folderName);
  folder.rescan();

  const auto zone = TimeZone::named("Europe/Berlin");
  ASSERT_NE(zone, nullptr);
  for (const auto& [name, zones] : expected.items()) {
    if (kOwnAnswers.contains(name)) continue;
    const nlohmann::json& answers = zones.at("Europe/Berlin");
    // The list of a file tells of all days up to its last one; an empty list of all days.
    std::int64_t first = localMidnight(answers.empty() ? "1995-01-01" : answers.begin().key()) - 400 * 86'400;
    const std::int64_t last = localMidnight(answers.empty() ? "2030-01-01" : std::prev(answers.end()).key());
    std::size_t others = 0;
    for (; first <= last; first += 86'400) {
      const auto date = std::chrono::year_month_day(std::chrono::sys_days(std::chrono::days(first / 86'400)));
      char day[16];
      std::snprintf(day, sizeof day, "%04d-%02u-%02u", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
      if (answers.contains(day)) continue;
      others += actualLines(folder, name, *zone, first).size();
    }
    EXPECT_EQ(others, 0U) << name;
  }
}

TEST(CalendarKnownAnswers, FilesWithOwnAnswersHaveThem) {
  const char* folderName = std::getenv("HUSHMODE_KNOWN_CALENDARS");
  if (folderName == nullptr) GTEST_SKIP() << "HUSHMODE_KNOWN_CALENDARS names no folder of calendars with known answers";
  CalendarFolder folder(folderName);
  folder.rescan();
  const auto zone = TimeZone::named("Europe/London");
  ASSERT_NE(zone, nullptr);
  const auto occurrences =
      folder.occurrences(Date(static_cast<double>(localMidnight("2019-01-01"))),
                         Date(static_cast<double>(localMidnight("2022-01-01"))), *zone, {kOwnAnswers.begin()->first});
  ASSERT_EQ(occurrences.size(), 1U) << kOwnAnswers.begin()->second;
  EXPECT_EQ(occurrences[0].start, Date(static_cast<double>(localMidnight("2019-08-01") + 13 * 3600)));
}

}  // namespace
}  // namespace hushmode::devices
