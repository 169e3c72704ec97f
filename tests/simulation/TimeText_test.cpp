// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/TimeText.h"

#include <gtest/gtest.h>

namespace hushmode::simulation {
namespace {

using devices::TimeZone;
using platform::Date;

const auto berlin = TimeZone::named("Europe/Berlin");

TEST(TimeText, UnderstandsDaysDaysWithClockTimesAndUtc) {
  const struct {
    const char* text;
    double seconds;
  } cases[] = {
      {"2024-05-14", 1715637600},          {"2024-05-14 09:30", 1715671800},        {"2024-05-14T09:30", 1715671800},
      {"2024-05-14T09:30:15", 1715671815}, {"2024-05-14T09:30:15.5", 1715671815.5}, {"2024-05-14T09:30Z", 1715679000},
      {"2024-03-31T02:30", 1711848600},  // does not exist: 03:30
      {"2024-10-27T02:30", 1729989000},  // exists twice: the first
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    EXPECT_EQ(parseTime(each.text, *berlin), Date(each.seconds));
  }
}

TEST(TimeText, AClockTimeAloneIsOnTheGivenDay) {
  EXPECT_EQ(parseTime("09:30", *berlin, Date(1715637600)), Date(1715671800));
  EXPECT_EQ(parseTime("09:30", *berlin), std::nullopt);
}

TEST(TimeText, RefusesWhatNoCalendarHas) {
  for (const char* text : {"", "soon", "2024-5-14", "2024-02-30", "2024-13-01", "2024-05-14T", "2024-05-14T24:00",
                           "2024-05-14T09:60", "2024-05-14T09:30:60", "2024-05-14T09:30x", "2024-05-14T09:30:15.",
                           "2024-05-14T9:30", "2024-05-14 09:30 ", "09:30:99"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(parseTime(text, *berlin, Date(0)), std::nullopt);
  }
}

TEST(TimeText, TellsTimesWithTheOffsetAndMilliseconds) {
  EXPECT_EQ(isoTime(Date(1715671800), *berlin), "2024-05-14T09:30:00+02:00");
  EXPECT_EQ(isoTime(Date(1715671800.5), *berlin), "2024-05-14T09:30:00.500+02:00");
  EXPECT_EQ(isoTime(Date(1715671799.9999), *berlin), "2024-05-14T09:30:00+02:00");
  EXPECT_EQ(isoTime(Date(1715671800), *TimeZone::named("America/St_Johns")), "2024-05-14T05:00:00-02:30");
  EXPECT_EQ(isoTime(Date(-1), *TimeZone::utc()), "1969-12-31T23:59:59+00:00");
}

TEST(TimeText, TellsDaysAndClockTimes) {
  EXPECT_EQ(dayHeading(Date(1715671800), *berlin), "Tuesday, 14 May 2024");
  EXPECT_EQ(clockTime(Date(1715671800.9), *berlin), "09:30:00");
}

TEST(TimeText, LocalDaysBeginAtLocalMidnightAlsoWhenTheClockChanges) {
  EXPECT_EQ(beginningOfLocalDay(Date(1711882800), *berlin), Date(1711839600));     // 31 March 2024
  EXPECT_EQ(beginningOfLocalDay(Date(1711882800), *berlin, 1), Date(1711922400));  // 23 hours later
}

}  // namespace
}  // namespace hushmode::simulation
