// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "calendar/EventMatch.h"

#include <gtest/gtest.h>

namespace hushmode {
namespace {

using platform::Date;

Date at(double hours) { return Date(1715644800 + hours * 3600); }

constexpr double second = 1.0 / 3600;

TEST(EventMatch, AnEventMeetsTheWindowByFourClausesWithTheirGaps) {
  const struct {
    const char* what;
    double start, end, now;
    bool meets;
  } cases[] = {
      {"1: covers the window", 7, 18, 12, true},
      {"1: covers the window and has ended", 7, 18, 18.5, true},
      {"1: is the window", 8, 17, 12, true},
      {"1: is the window and has ended", 8, 17, 20, true},
      {"1: starts before it, ends with it, has ended", 7, 17, 20, true},
      {"2: ends before the window opens, goes on", 6, 7, 6.5, true},
      {"2: ends before the window opens, to come", 6, 7, 5, true},
      {"2: ended before the window opens", 6, 7, 7.5, false},
      {"2: at its end it has ended", 6, 7, 7, false},
      {"2: a second before its end it has not", 6, 7, 7 - second, true},
      {"2: starts before and ends inside, goes on", 7, 9, 8.5, true},
      {"2: starts before and ended inside", 7, 9, 9.5, false},
      {"3: lies inside, to come", 9, 10, 8.5, true},
      {"3: lies inside, a second before its end", 9, 10, 10 - second, true},
      {"3: lies inside, at its end", 9, 10, 10, false},
      {"3: lies inside, ended", 9, 10, 11, false},
      {"3: starts with the window, ended", 8, 9, 9.5, false},
      {"4: starts inside, ends after", 16, 18, 8, true},
      {"4: starts inside, ends after, has ended", 16, 18, 19, true},
      {"4: starts after the window has closed", 18, 19, 12, true},
      {"4: the same, over", 18, 19, 20, true},
      {"4: starts inside, ends with the window, has ended", 16, 17, 20, true},
      {"4: starts as the window closes", 17, 18, 12, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(eventMeetsWindow(at(c.start), at(c.end), at(8), at(17), at(c.now)), c.meets);
  }
}

TEST(EventMatch, AWindowThatEndsBeforeItStartsIsComparedAsItStands) {
  // 10 PM to 6 AM of the same day.
  EXPECT_TRUE(eventMeetsWindow(at(9), at(10), at(22), at(6), at(20))) << "starts before 22:00 and ends after 6:00";
  EXPECT_FALSE(eventMeetsWindow(at(4), at(5), at(22), at(6), at(5.5)));
  EXPECT_TRUE(eventMeetsWindow(at(23), at(24), at(22), at(6), at(20)));
}

}  // namespace
}  // namespace hushmode
