// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/shared/CalendarSamples.h"

#include <algorithm>
#include <random>

namespace hushmode::devices {
namespace {

using namespace samples;

std::string event(const std::string& uid, const std::string& more, const std::string& start = "20190301T083000Z") {
  return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + uid + "\r\nDTSTART:" + start + "\r\n" + more +
         "END:VEVENT\r\n";
}

std::string repeated(int times, const std::string& more) {
  std::string text;
  for (int number = 0; number < times; ++number) text += event("u" + std::to_string(number), more);
  return text;
}

/// The numbers below `end`, as rules list them.
std::string numbersTo(int end) {
  std::string text = "0";
  for (int number = 1; number < end; ++number) text += "," + std::to_string(number);
  return text;
}

struct Case {
  const char* name;
  std::string events;
  bool cut;  ///< Whether it is too much, and said so.
};

class CalendarHostile : public testing::TestWithParam<Case> {};

TEST_P(CalendarHostile, LeavesTheOtherEventsAloneAndSaysWhatWasCutOnce) {
  TemporaryFolder files;
  files.write("a/1.ics", "BEGIN:VCALENDAR\r\n" + GetParam().events + event("innocent", "", "20260330T080000Z") +
                             "END:VCALENDAR\r\n");
  std::vector<std::string> diagnostics;
  CalendarFolder folder(files.path(), [&](const std::string& line) { diagnostics.push_back(line); });
  folder.rescan();
  const auto utc = TimeZone::utc();
  for (const char* day : {"2026-03-30", "2026-03-30 06:00"}) {
    bool innocent = false;
    for (const CalendarOccurrence& o :
         folder.occurrences(instant(day, *utc), instant("2026-03-30 23:59", *utc), *utc)) {
      innocent = innocent || o.details->uniqueId == "innocent";
    }
    EXPECT_TRUE(innocent);
  }
  folder.occurrences(instant("2026-03-31", *utc), instant("2026-04-01", *utc), *utc);
  EXPECT_EQ(diagnostics.size(), GetParam().cut ? 1U : 0U);
}

const std::string kAllTimes = ";BYHOUR=" + numbersTo(24) + ";BYMINUTE=" + numbersTo(60) + ";BYSECOND=" + numbersTo(60);

const Case kCases[] = {
    {"NeverHourly", event("u", "RRULE:FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30\r\n"), false},
    {"NeverMinutely", event("u", "RRULE:FREQ=MINUTELY;BYMONTH=2;BYMONTHDAY=30\r\n"), false},
    {"NeverSecondly", event("u", "RRULE:FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30;COUNT=3\r\n"), false},
    {"NeverYearly", event("u", "RRULE:FREQ=YEARLY;BYWEEKNO=53;BYMONTH=6;COUNT=1\r\n"), false},
    {"NeverByPosition", event("u", "RRULE:FREQ=SECONDLY;BYSETPOS=2\r\n"), false},
    {"Minutely", event("u", "RRULE:FREQ=MINUTELY\r\n"), false},
    {"Secondly", event("u", "RRULE:FREQ=SECONDLY\r\n"), true},
    {"SecondlyCounted", event("u", "RRULE:FREQ=SECONDLY;COUNT=2000000000\r\n"), true},
    {"ManySecondly", repeated(100, "RRULE:FREQ=SECONDLY\r\n"), true},
    {"EverySecondOfTheDay", event("u", "RRULE:FREQ=DAILY" + kAllTimes + "\r\n"), true},
    {"LastSecondOfTheYear", event("u", "RRULE:FREQ=YEARLY;BYDAY=MO,TU,WE,TH,FR,SA,SU" + kAllTimes + ";BYSETPOS=-1\r\n"),
     true},
    {"LongIntervals",
     event("u", "RRULE:FREQ=YEARLY;INTERVAL=2147483647\r\n") +
         event("v", "RRULE:FREQ=SECONDLY;INTERVAL=2147483647\r\n"),
     false},
    {"LongEventsFromTheFirstYear", event("u", "DTEND:99991231T235959Z\r\nRRULE:FREQ=DAILY\r\n", "00010101T000000Z"),
     true},
    {"CountedFromTheFirstYear", event("u", "RRULE:FREQ=DAILY;BYMONTHDAY=30;BYMONTH=2;COUNT=2\r\n", "00010101T000000Z"),
     false},
    {"LongDuration", event("u", "DURATION:P2147483647W\r\nRRULE:FREQ=YEARLY\r\n"), false},
};

INSTANTIATE_TEST_SUITE_P(Rules, CalendarHostile, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(CalendarHostileText, ManyComponentsThatAreNotClosedAreNoObstacle) {
  TemporaryFolder files;
  std::string nested =
      "BEGIN:VCALENDAR\r\n" + event("first", "", "20260330T080000Z") + "BEGIN:VEVENT\r\nDTSTART:20260330\r\n";
  for (int depth = 0; depth < 20'000; ++depth) nested += "BEGIN:VALARM\r\n";
  files.write("a/1.ics", nested + "END:VEVENT\r\n" + event("last", "", "20260330T090000Z"));
  CalendarFolder folder(files.path());
  folder.rescan();
  const auto utc = TimeZone::utc();
  EXPECT_EQ(folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc).size(), 3U);
}

TEST(CalendarHostileText, LongLinesAreCutOrLeftOut) {
  TemporaryFolder files;
  std::string exceptions = "EXDATE:20260331T080000Z";
  for (int number = 0; number < 5'000; ++number) exceptions += ",20200101T080000Z";
  files.write("a/1.ics",
              "BEGIN:VCALENDAR\r\n" +
                  event("daily", "RRULE:FREQ=DAILY\r\n" + exceptions + ",20260401T080000Z\r\n", "20260330T080000Z") +
                  event(std::string(100'000, 'u'), "", "20260330T090000Z"));
  std::vector<std::string> diagnostics;
  CalendarFolder folder(files.path(), [&](const std::string& line) { diagnostics.push_back(line); });
  folder.rescan();
  const auto utc = TimeZone::utc();
  const auto occurrences = folder.occurrences(instant("2026-03-30", *utc), instant("2026-04-03", *utc), *utc);
  ASSERT_EQ(occurrences.size(), 3U);
  EXPECT_EQ(localText(occurrences[0].start, *utc), "2026-03-30 08:00");
  EXPECT_EQ(occurrences[1].details->uniqueId, "1.ics#1");
  EXPECT_EQ(localText(occurrences[2].start, *utc), "2026-04-02 08:00");
  ASSERT_EQ(diagnostics.size(), 2U);
  EXPECT_NE(diagnostics[0].find("the UID has 100004 bytes and is left out"), std::string::npos) << diagnostics[0];
  EXPECT_NE(diagnostics[1].find("the SUMMARY has 100008 bytes: only its beginning is kept"), std::string::npos)
      << diagnostics[1];
  EXPECT_EQ(occurrences[1].details->title, std::string(8'192 - 8, 'u'));
}

TEST(CalendarHostileText, ATitleIsCutNeitherWithinACharacterNorWithinAnEscape) {
  const auto utc = TimeZone::utc();
  const struct {
    std::string unit, read;  ///< What is repeated, and what it means.
  } cases[] = {{"\xE2\x82\xAC", "\xE2\x82\xAC"}, {"\\,", ","}, {"\\\\", "\\"}};
  for (const auto& [unit, read] : cases) {
    for (const char* shift : {"", "x", "xx"}) {
      std::string title = shift;
      while (title.size() < 9'000) title += unit;
      TemporaryFolder files;
      files.write("a/1.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:u\r\nSUMMARY:" + title +
                                 "\r\nDTSTART:20260330T080000Z\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
      CalendarFolder folder(files.path());
      folder.rescan();
      const auto found = folder.withUniqueId("u", *utc);
      ASSERT_TRUE(found);
      const std::string cut = found->details->title.value_or("");
      ASSERT_TRUE(cut.starts_with(shift));
      ASSERT_GT(cut.size(), 4'000U);
      const std::string rest = cut.substr(std::string(shift).size());
      EXPECT_EQ(rest.size() % read.size(), 0U) << unit << " after " << shift;
      for (std::size_t at = 0; at < rest.size(); at += read.size()) ASSERT_EQ(rest.substr(at, read.size()), read);
    }
  }
}

TEST(CalendarHostileText, ATitleOfTenMegabytesIsCut) {
  TemporaryFolder files;
  files.write("a/1.ics", calendarText("u", "20260330T080000Z", "SUMMARY:shadowed\r\n"));
  files.write("a/2.ics", calendarText(std::string(10U << 20, 'v')));
  CalendarFolder folder(files.path());
  folder.rescan();
  const auto utc = TimeZone::utc();
  const auto occurrences = folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc);
  ASSERT_EQ(occurrences.size(), 2U);
  EXPECT_LT(occurrences[0].details->title->size() + occurrences[1].details->title->size(), 9'000U);
}

TEST(CalendarHostileText, ManyTextsThatAreTooMuchCostNoMoreThanAFew) {
  TemporaryFolder files;
  for (int number = 0; number < 60; ++number) {
    files.write(
        "a/" + std::to_string(number) + ".ics",
        "BEGIN:VCALENDAR\r\n" + event("u" + std::to_string(number), "RRULE:FREQ=SECONDLY\r\n") + "END:VCALENDAR\r\n");
  }
  files.write("a/innocent.ics", calendarText("innocent"));
  std::vector<std::string> diagnostics;
  CalendarFolder folder(files.path(), [&](const std::string& line) { diagnostics.push_back(line); });
  folder.rescan();
  const auto utc = TimeZone::utc();
  const auto occurrences = folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc);
  EXPECT_TRUE(std::any_of(occurrences.begin(), occurrences.end(),
                          [](const CalendarOccurrence& o) { return o.details->uniqueId == "innocent"; }));
  EXPECT_LT(occurrences.size(), 60U * 60 * 60 * 24 / 3) << "a third of them";
  EXPECT_EQ(diagnostics.size(), 60U);
}

/// Whatever is done to the bytes of a calendar, the folder reads on and the calendar beside it is untouched.
TEST(CalendarHostileText, BytesChangedAtRandomAreNoObstacle) {
  std::mt19937 random(20260330);
  std::vector<std::string> texts;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(fixtures())) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    texts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  ASSERT_GT(texts.size(), 30U);
  const auto utc = TimeZone::utc();
  TemporaryFolder files;
  files.write("good/1.ics", calendarText("good"));
  CalendarFolder folder(files.path());
  for (int round = 0; round < 6; ++round) {
    for (std::size_t number = 0; number < texts.size(); ++number) {
      std::string text = texts[number];
      for (int changes = static_cast<int>(random() % 12); changes >= 0 && !text.empty(); --changes) {
        const std::size_t place = random() % text.size();
        if (random() % 8 == 0)
          text.resize(place);
        else if (random() % 3 == 0)
          text.insert(place, text.substr(random() % text.size(), 60));
        else
          text[place] = static_cast<char>(random() % 256);
      }
      files.write("bad/" + std::to_string(number) + ".ics", text);
    }
    folder.rescan();
    const auto all = folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc, {"good"});
    EXPECT_EQ(all.size(), 1U);
    for (const CalendarOccurrence& o :
         folder.occurrences(instant("2026-03-01", *utc), instant("2026-05-01", *utc), *utc, {"bad"})) {
      EXPECT_LE(o.start, o.end);
      EXPECT_FALSE(o.details->uniqueId.empty());
    }
  }
}

}  // namespace
}  // namespace hushmode::devices
