// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ZonedCalendar.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace hushmode::devices {
namespace {

using platform::Date;
using platform::DateComponents;

ZonedCalendar calendarIn(const char* zone) {
  auto found = TimeZone::named(zone);
  EXPECT_TRUE(found) << zone;
  return ZonedCalendar(found ? found : TimeZone::utc());
}

/// "2026-03-29 02:30:00" on the calendar's clock.
std::string clockText(const ZonedCalendar& calendar, Date date) {
  const DateComponents c = calendar.componentsOfDate(date);
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, static_cast<int>(*c.hour),
                static_cast<int>(*c.minute), static_cast<int>(*c.second));
  return text;
}

DateComponents clock(int year, int month, int day, std::int64_t hour, std::int64_t minute = 0,
                     std::int64_t second = 0) {
  return {year, month, day, hour, minute, second};
}

DateComponents wholeDay(int year, int month, int day) {
  return {year, month, day, std::nullopt, std::nullopt, std::nullopt};
}

TEST(ZonedCalendar, BreaksADateIntoLocalComponents) {
  const struct {
    const char* zone;
    double date;
    const char* text;
  } cases[] = {
      {"UTC", 0, "1970-01-01 00:00:00"},
      {"UTC", 59.999, "1970-01-01 00:00:59"},
      {"UTC", -0.5, "1969-12-31 23:59:59"},
      {"UTC", 1'709'210'096, "2024-02-29 12:34:56"},
      {"Europe/Berlin", 1'774'746'000, "2026-03-29 03:00:00"},
      {"Europe/Berlin", 1'774'745'999.75, "2026-03-29 01:59:59"},
      {"America/New_York", -15'638'400, "1969-07-03 20:00:00"},
      {"Asia/Kathmandu", 2'208'988'800, "2040-01-01 05:45:00"},
      {"Etc/GMT+12", 1'767'225'600, "2025-12-31 12:00:00"},
      {"Etc/GMT-12", 1'767'225'600, "2026-01-01 12:00:00"},
      {"UTC", -62'167'219'200, "0000-01-01 00:00:00"},
  };
  for (const auto& c : cases) EXPECT_EQ(clockText(calendarIn(c.zone), Date(c.date)), c.text) << c.zone;
}

TEST(ZonedCalendar, MakesADateFromComponents) {
  const struct {
    const char* what;
    const char* zone;
    DateComponents components;
    const char* text;
  } cases[] = {
      {"a clock time", "Europe/Berlin", clock(2026, 7, 1, 14, 30, 5), "2026-07-01 14:30:05"},
      {"absent clock components are zero",
       "Europe/Berlin",
       {2026, 7, 1, std::nullopt, 30, std::nullopt},
       "2026-07-01 00:30:00"},
      {"a whole day begins at midnight", "Europe/Berlin", wholeDay(2026, 7, 1), "2026-07-01 00:00:00"},
      {"26:00 is 02:00 tomorrow", "Europe/Berlin", clock(2026, 12, 31, 26), "2027-01-01 02:00:00"},
      {"-1:00 is 23:00 yesterday", "Europe/Berlin", clock(2026, 3, 1, -1), "2026-02-28 23:00:00"},
      {"90 minutes", "UTC", clock(2026, 1, 1, 0, 90), "2026-01-01 01:30:00"},
      {"-1 second", "UTC", clock(2026, 1, 1, 0, 0, -1), "2025-12-31 23:59:59"},
      {"48:00 over a change of the clock", "Europe/Berlin", clock(2026, 3, 28, 48), "2026-03-30 00:00:00"},
      {"a time that does not exist", "Europe/Berlin", clock(2026, 3, 29, 2, 30), "2026-03-29 03:30:00"},
      {"a midnight that does not exist", "Asia/Beirut", wholeDay(2026, 3, 29), "2026-03-29 01:00:00"},
      {"the same asked as a clock time", "Asia/Beirut", clock(2026, 3, 29, 0), "2026-03-29 01:00:00"},
      {"a day that does not exist", "Pacific/Apia", wholeDay(2011, 12, 30), "2011-12-31 00:00:00"},
      {"the 29th of a common February", "UTC", wholeDay(2026, 2, 29), "2026-03-01 00:00:00"},
      {"day 0", "UTC", wholeDay(2026, 3, 0), "2026-02-28 00:00:00"},
      {"month 13", "UTC", wholeDay(2026, 13, 1), "2027-01-01 00:00:00"},
      {"month 0", "UTC", wholeDay(2026, 0, 1), "2025-12-01 00:00:00"},
      {"month -12", "UTC", wholeDay(2026, -12, 1), "2024-12-01 00:00:00"},
      {"2040", "America/New_York", clock(2040, 7, 4, 9), "2040-07-04 09:00:00"},
      {"1969", "Europe/Berlin", clock(1969, 7, 20, 21, 17), "1969-07-20 21:17:00"},
  };
  for (const auto& c : cases) {
    const ZonedCalendar calendar = calendarIn(c.zone);
    EXPECT_EQ(clockText(calendar, calendar.dateFromComponents(c.components)), c.text) << c.what;
  }
}

TEST(ZonedCalendar, TakesTheFirstOfTwoEqualClockTimes) {
  EXPECT_EQ(calendarIn("Europe/Berlin").dateFromComponents(clock(2026, 10, 25, 2, 30)), Date(1'792'888'200));
  EXPECT_EQ(calendarIn("America/New_York").dateFromComponents(clock(2026, 11, 1, 1, 30)), Date(1'793'511'000));
  EXPECT_EQ(calendarIn("Australia/Lord_Howe").dateFromComponents(clock(2026, 4, 5, 1, 45)), Date(1'775'313'900));
}

TEST(ZonedCalendar, AddsDaysAtTheSameLocalTime) {
  const struct {
    const char* what;
    const char* zone;
    DateComponents from;
    int days;
    const char* text;
  } cases[] = {
      {"an ordinary day", "Europe/Berlin", clock(2026, 7, 1, 14, 30), 1, "2026-07-02 14:30:00"},
      {"a short day", "Europe/Berlin", clock(2026, 3, 28, 14, 30), 1, "2026-03-29 14:30:00"},
      {"a long day", "Europe/Berlin", clock(2026, 10, 24, 14, 30), 1, "2026-10-25 14:30:00"},
      {"back over a short day", "Europe/Berlin", clock(2026, 3, 29, 14, 30), -1, "2026-03-28 14:30:00"},
      {"no day", "Europe/Berlin", clock(2026, 3, 29, 14, 30), 0, "2026-03-29 14:30:00"},
      {"to a time that does not exist", "Europe/Berlin", clock(2026, 3, 28, 2, 30), 1, "2026-03-29 03:30:00"},
      {"from midnight to midnight", "Europe/Berlin", wholeDay(2026, 3, 29), 1, "2026-03-30 00:00:00"},
      {"to a day without midnight", "Asia/Beirut", wholeDay(2026, 3, 28), 1, "2026-03-29 01:00:00"},
      {"from a day without midnight", "Asia/Beirut", wholeDay(2026, 3, 29), 1, "2026-03-30 00:00:00"},
      {"from a day without midnight back", "America/Sao_Paulo", wholeDay(2018, 11, 4), -1, "2018-11-03 00:00:00"},
      {"01:00 elsewhere is no beginning", "Asia/Beirut", clock(2026, 3, 30, 1), 1, "2026-03-31 01:00:00"},
      {"to a skipped day", "Pacific/Apia", wholeDay(2011, 12, 29), 1, "2011-12-31 00:00:00"},
      {"over a skipped day", "Pacific/Apia", clock(2011, 12, 29, 8), 2, "2011-12-31 08:00:00"},
      {"a leap year", "UTC", wholeDay(2024, 2, 28), 2, "2024-03-01 00:00:00"},
  };
  for (const auto& c : cases) {
    const ZonedCalendar calendar = calendarIn(c.zone);
    const Date from = calendar.dateFromComponents(c.from);
    EXPECT_EQ(clockText(calendar, calendar.dateByAddingDays(from, c.days)), c.text) << c.what;
  }
}

TEST(ZonedCalendar, KeepsFractionsOfASecondWhenAddingDays) {
  const ZonedCalendar calendar = calendarIn("Europe/Berlin");
  EXPECT_EQ(calendar.dateByAddingDays(Date(1'774'700'000.25), 1), Date(1'774'700'000.25 + 23 * 3600));
  EXPECT_EQ(calendar.dateByAddingDays(Date(-0.75), 1), Date(86'399.25));
}

TEST(ZonedCalendar, GivesEveryDaysLengthAsThatOfItsClock) {
  const ZonedCalendar calendar = calendarIn("Australia/Lord_Howe");
  const auto hoursOf = [&](int year, int month, int day) {
    const Date begin = calendar.dateFromComponents(wholeDay(year, month, day));
    return (calendar.dateByAddingDays(begin, 1) - begin) / 3600;
  };
  EXPECT_EQ(hoursOf(2026, 4, 5), 24.5);
  EXPECT_EQ(hoursOf(2026, 7, 1), 24);
  EXPECT_EQ(hoursOf(2026, 10, 4), 23.5);
}

TEST(ZonedCalendar, FollowsItsZoneFromTheNextCallOn) {
  ZonedCalendar calendar = calendarIn("UTC");
  EXPECT_EQ(clockText(calendar, Date(0)), "1970-01-01 00:00:00");
  calendar.setTimeZone(TimeZone::named("Asia/Tokyo"));
  EXPECT_EQ(clockText(calendar, Date(0)), "1970-01-01 09:00:00");
  EXPECT_EQ(calendar.timeZone()->name(), "Asia/Tokyo");
}

TEST(ZonedCalendar, CutsWhatIsBeyondItsYears) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  constexpr int mostInt = std::numeric_limits<int>::max();
  constexpr int leastInt = std::numeric_limits<int>::min();
  for (const char* zone : {"UTC", "Europe/Berlin", "Pacific/Apia"}) {
    const ZonedCalendar calendar = calendarIn(zone);
    const int latest = calendar.componentsOfDate(calendar.dateFromComponents(clock(2026, 1, 1, most, most, most))).year;
    const int earliest =
        calendar.componentsOfDate(calendar.dateFromComponents(clock(2026, 1, 1, least, least, least))).year;
    EXPECT_NEAR(latest, 30'000, 1) << zone;
    EXPECT_NEAR(earliest, -30'000, 1) << zone;
    EXPECT_NEAR(calendar.componentsOfDate(calendar.dateFromComponents(clock(2026, 1, 1, most, least))).year, 2026, 1);
    EXPECT_NEAR(calendar.componentsOfDate(calendar.dateFromComponents(wholeDay(mostInt, mostInt, mostInt))).year,
                30'000, 1);
    EXPECT_NEAR(calendar.componentsOfDate(calendar.dateFromComponents(wholeDay(leastInt, leastInt, leastInt))).year,
                -30'000, 1);
    EXPECT_NEAR(calendar.componentsOfDate(Date(1e300)).year, 30'000, 1);
    EXPECT_NEAR(calendar.componentsOfDate(Date(-std::numeric_limits<double>::infinity())).year, -30'000, 1);
    EXPECT_GT(calendar.dateByAddingDays(Date(0), mostInt), Date(1e11));
    EXPECT_LT(calendar.dateByAddingDays(Date(0), leastInt), Date(-1e11));
  }
  const ZonedCalendar calendar = calendarIn("UTC");
  EXPECT_EQ(calendar.componentsOfDate(Date(std::nan(""))).year, 1970);
  EXPECT_EQ(calendar.dateByAddingDays(Date(1e300), 1), Date(1e300));
  EXPECT_TRUE(std::isnan(calendar.dateByAddingDays(Date(std::nan("")), 1).secondsSince1970()));
}

}  // namespace
}  // namespace hushmode::devices
