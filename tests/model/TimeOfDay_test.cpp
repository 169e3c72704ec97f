// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Times of day as people write them in a profile: "8:00 AM".

#include "model/TimeOfDay.h"

#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace hushmode {
namespace {

TEST(SplitTimeOfDay, CutsAtTheFirstColonAndThenAtSingleBlanks) {
  const struct {
    const char* time;
    const char* hours;
    const char* minutes;
    std::optional<std::string> period;
  } cases[] = {
      {"8:00 AM", "8", "00", "AM"},
      {"17:00", "17", "00", std::nullopt},
      {"8:05 AM sharp", "8", "05", "AM"},
      {" 8:05 pm", " 8", "05", "pm"},
      {"8:05  AM", "8", "05", ""},  // Two blanks: the piece between them is the period.
      {"8: 05 AM", "8", "", "05"},  // A blank before the minutes: they become the period.
      {"8:05 ", "8", "05", ""},
      {"8:05:30 AM", "8", "05", std::nullopt},  // The third part takes the period along.
      {":", "", "", std::nullopt},
      {"8:", "8", "", std::nullopt},
      {"8:05\tAM", "8", "05\tAM", std::nullopt},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.time);
    const TimeOfDayText text = splitTimeOfDay(each.time);
    EXPECT_EQ(text.hours, each.hours);
    EXPECT_EQ(text.minutes, each.minutes);
    EXPECT_EQ(text.period, each.period);
  }
}

TEST(SplitTimeOfDay, FaultsOnATextWithoutAColon) {
  for (const char* time : {"", "8", "8.00 AM", "noon"}) {
    SCOPED_TRACE(time);
    EXPECT_THROW(splitTimeOfDay(time), std::out_of_range);
  }
}

TEST(HourOfDay, FollowsThePeriodInAnyLetterCase) {
  const struct {
    const char* hours;
    std::optional<std::string> period;
    std::int64_t hour;
  } cases[] = {
      {"12", "AM", 0}, {"12", "PM", 12}, {"8", "AM", 8},   {"5", "PM", 17},  {"5", "pm", 17},
      {"5", "Pm", 17}, {"12", "am", 0},  {"0", "PM", 12},  {"13", "PM", 25}, {"13", "AM", 13},
      {"x", "PM", 12}, {"x", "AM", 0},   {"-5", "PM", 12}, {" 7", "AM", 7},  {"11th", "PM", 23},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.hours) + " " + each.period.value_or("none"));
    EXPECT_EQ(hourOfDay(each.hours, each.period), each.hour);
  }
}

TEST(HourOfDay, IsMidnightWithoutAProperPeriodWhateverTheHours) {
  EXPECT_EQ(hourOfDay("14", std::nullopt), 0);
  EXPECT_EQ(hourOfDay("8", std::nullopt), 0);
  for (const char* period : {"", "XM", "A", "AMPM", "A.M.", " AM", "AM "}) {
    SCOPED_TRACE(period);
    EXPECT_EQ(hourOfDay("5", period), 0);
  }
}

TEST(HourOfDay, StaysWithinTheIntegersForAbsurdHours) {
  constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(hourOfDay("9223372036854775807", "PM"), largest);
  EXPECT_EQ(hourOfDay("99999999999999999999", "AM"), largest);
}

}  // namespace
}  // namespace hushmode
