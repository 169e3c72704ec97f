// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/DateFormatter.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

TEST(DateFormatter, CountsTheHoursOfAHalfDayFromTwelve) {
  DateFormatter formatter([] { return TimeZone::utc(); });
  formatter.setDateFormat("h a H");
  const char* const texts[] = {"12 AM 0",  "1 AM 1",  "2 AM 2",  "3 AM 3",  "4 AM 4",   "5 AM 5",
                               "6 AM 6",   "7 AM 7",  "8 AM 8",  "9 AM 9",  "10 AM 10", "11 AM 11",
                               "12 PM 12", "1 PM 13", "2 PM 14", "3 PM 15", "4 PM 16",  "5 PM 17",
                               "6 PM 18",  "7 PM 19", "8 PM 20", "9 PM 21", "10 PM 22", "11 PM 23"};
  int hour = 0;
  for (const char* text : texts) {
    EXPECT_EQ(formatter.stringFromDate(platform::Date(hour * 3600.0 + 1)), text);
    ++hour;
  }
  EXPECT_EQ(hour, 24);
}

}  // namespace
}  // namespace hushmode::devices
