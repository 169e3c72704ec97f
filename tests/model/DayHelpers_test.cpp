// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The bounds of local days, on days of 23, 24 and 25 hours.

#include "model/DayHelpers.h"

#include "devices/simulated/SimulatedPhone.h"
#include "platform/Process.h"

#include <chrono>
#include <gtest/gtest.h>

namespace hushmode {
namespace {

using platform::Date;

Date utc(int year, int month, int day, int hour = 0, int minute = 0, double second = 0) {
  using namespace std::chrono;
  const sys_days midnight = std::chrono::year(year) / month / day;
  return Date(static_cast<double>(midnight.time_since_epoch() / 1s) + hour * 3600.0 + minute * 60.0 + second);
}

struct Day {
  const char* name;
  const char* zone;
  Date inside;
  Date beginning;
  Date end;
};

class DayBounds : public testing::TestWithParam<Day> {};

TEST_P(DayBounds, AreTheFirstInstantAndOneSecondBeforeTheNextMidnight) {
  const Day& day = GetParam();
  devices::SimulatedPhone phone(utc(2024, 1, 1), devices::TimeZone::named(day.zone));
  const platform::Process process(phone);
  EXPECT_EQ(hm_beginningOfDay(day.inside), day.beginning);
  EXPECT_EQ(hm_endOfDay(day.inside), day.end);
  EXPECT_EQ(hm_beginningOfDay(day.beginning), day.beginning);
  EXPECT_EQ(hm_endOfDay(day.beginning), day.end);
  EXPECT_EQ(hm_beginningOfDay(day.end.addingSeconds(0.999)), day.beginning) << "the last second is of the same day";
  EXPECT_NE(hm_beginningOfDay(day.end.addingSeconds(1)), day.beginning) << "the next midnight is of the next day";
  EXPECT_NE(hm_beginningOfDay(day.beginning.addingSeconds(-0.001)), day.beginning);
}

INSTANTIATE_TEST_SUITE_P(Of, DayBounds,
                         testing::Values(Day{"AnOrdinaryDayInUtc", "UTC", utc(2024, 5, 14, 13, 7, 5.25),
                                             utc(2024, 5, 14), utc(2024, 5, 14, 23, 59, 59)},
                                         Day{"AnOrdinaryDayInBerlin", "Europe/Berlin", utc(2024, 5, 14, 13),
                                             utc(2024, 5, 13, 22), utc(2024, 5, 14, 21, 59, 59)},
                                         Day{"TheLocalDayAfterTheUtcOne", "Asia/Tokyo", utc(2024, 5, 14, 20),
                                             utc(2024, 5, 14, 15), utc(2024, 5, 15, 14, 59, 59)},
                                         Day{"ADayOf23Hours", "Europe/Berlin", utc(2024, 3, 31, 12),
                                             utc(2024, 3, 30, 23), utc(2024, 3, 31, 21, 59, 59)},
                                         Day{"ADayOf25Hours", "Europe/Berlin", utc(2024, 10, 27, 12),
                                             utc(2024, 10, 26, 22), utc(2024, 10, 27, 22, 59, 59)},
                                         Day{"ADayWithoutMidnight", "Africa/Cairo", utc(2024, 4, 26, 12),
                                             utc(2024, 4, 25, 22), utc(2024, 4, 26, 20, 59, 59)},
                                         Day{"TheDayBeforeOneWithoutMidnight", "Africa/Cairo", utc(2024, 4, 25, 12),
                                             utc(2024, 4, 24, 22), utc(2024, 4, 25, 21, 59, 59)},
                                         Day{"ADayWithTwoMidnights", "America/Havana", utc(2024, 11, 3, 12),
                                             utc(2024, 11, 3, 4), utc(2024, 11, 4, 4, 59, 59)},
                                         Day{"ADayBefore1970", "UTC", utc(1969, 12, 31, 12), utc(1969, 12, 31),
                                             utc(1969, 12, 31, 23, 59, 59)}),
                         [](const testing::TestParamInfo<Day>& info) { return info.param.name; });

TEST(DayHelpers, LeaveTheLastSecondOfTheDayOutside) {
  devices::SimulatedPhone phone(utc(2024, 5, 14));
  const platform::Process process(phone);
  const Date late = utc(2024, 5, 14, 23, 59, 59.5);
  EXPECT_GT(late, hm_endOfDay(late));
  EXPECT_FALSE(hm_isBetweenDate(late, hm_beginningOfDay(late), hm_endOfDay(late)));
  EXPECT_TRUE(hm_isBetweenDate(utc(2024, 5, 14, 23, 59, 59), hm_beginningOfDay(late), hm_endOfDay(late)));
}

TEST(DayHelpers, FollowAChangeOfTheTimeZone) {
  devices::SimulatedPhone phone(utc(2024, 5, 14));
  const platform::Process process(phone);
  const Date noon = utc(2024, 5, 14, 12);
  EXPECT_EQ(hm_beginningOfDay(noon), utc(2024, 5, 14));
  phone.moveToTimeZone("Europe/Berlin");
  EXPECT_EQ(hm_beginningOfDay(noon), utc(2024, 5, 13, 22));
}

TEST(IsBetweenDate, IncludesBothBoundsAndNothingBeyondThem) {
  const struct {
    double date, first, second;
    bool between;
  } cases[] = {
      {10, 10, 20, true},         {20, 10, 20, true},  {15, 10, 20, true}, {9.999999, 10, 20, false},
      {20.000001, 10, 20, false}, {10, 10, 10, true},  {10, 11, 9, false}, {15, 20, 10, false},
      {20, 20, 10, false},        {10, 20, 10, false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(testing::Message() << each.date << " between " << each.first << " and " << each.second);
    EXPECT_EQ(hm_isBetweenDate(Date(each.date), Date(each.first), Date(each.second)), each.between);
  }
}

}  // namespace
}  // namespace hushmode
