// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "scheduler/EventChoice.h"

#include <gtest/gtest.h>

namespace hushmode {
namespace {

using platform::Date;

/// Hours on one day; the decisions know no calendar.
Date at(double hours) { return Date(1715644800 + hours * 3600); }

constexpr double second = 1.0 / 3600;

const Window eightToFive{at(8), at(17)};

TEST(EventChoice, AnEventOfATimedProfileQualifiesByItsPlaceBesideTheWindow) {
  const struct {
    const char* what;
    double start, end, now;
    bool qualifies;
  } cases[] = {
      {"A: covers the window", 7, 18, 6, true},
      {"A: is the window", 8, 17, 6, true},
      {"A: covered the window and has ended", 7, 18, 19, true},
      {"A: ends with the window and has ended", 7, 17, 19, true},
      {"B: ends inside the window", 7, 9, 6.5, true},
      {"B: ends before the window opens", 6, 7, 5, true},
      {"B: ended before the window opens", 6, 7, 7.5, false},
      {"B: ended inside the window", 7, 9, 9.5, false},
      {"C: lies inside, to come", 9, 10, 8, true},
      {"C: lies inside and has ended", 9, 10, 10.5, false},
      {"C: starts with the window, to come", 8, 9, 6, true},
      {"C: starts with the window and has ended", 8, 9, 9.5, false},
      {"D: starts inside and ends after", 16, 18, 8, true},
      {"D: starts after the window", 18, 19, 8, true},
      {"D: has ended all the same", 18, 19, 20, true},
      {"D: starts inside, ends with the window, has ended", 16, 17, 20, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(qualifiesAtOnce(at(c.start), at(c.end), eightToFive, at(c.now)), c.qualifies);
  }
}

TEST(EventChoice, AnEventInProgressQualifiesWhateverTheWindow) {
  for (const std::optional<Window>& window : {std::optional(eightToFive), std::optional<Window>()}) {
    EXPECT_TRUE(qualifiesAtOnce(at(5), at(6), window, at(5))) << "the start is included";
    EXPECT_TRUE(qualifiesAtOnce(at(5), at(6), window, at(5.5)));
    EXPECT_TRUE(qualifiesAtOnce(at(5), at(6), window, at(6))) << "the end is included";
    EXPECT_FALSE(qualifiesAtOnce(at(5), at(6), window, at(6 + second)));
  }
}

TEST(EventChoice, AtItsEndAnEventHasEndedForTheTestsBeyondProgress) {
  // An inverted event is never in progress, so that only the strict comparison with its end decides.
  EXPECT_FALSE(qualifiesAtOnce(at(10), at(9), eightToFive, at(9)));
  EXPECT_TRUE(qualifiesAtOnce(at(10), at(9), eightToFive, at(9 - second)));
}

TEST(EventChoice, WithoutAWindowOnlyAnEventInProgressQualifies) {
  EXPECT_FALSE(qualifiesAtOnce(at(9), at(10), std::nullopt, at(8)));
  EXPECT_FALSE(qualifiesAtOnce(at(0), at(24), std::nullopt, at(25)));
}

TEST(EventChoice, TheNextStartIsNowOrLaterAndNotAfterTheBest) {
  EXPECT_TRUE(startsNext(at(9), std::nullopt, at(8)));
  EXPECT_TRUE(startsNext(at(8), std::nullopt, at(8))) << "now counts";
  EXPECT_FALSE(startsNext(at(8 - second), std::nullopt, at(8)));
  EXPECT_TRUE(startsNext(at(9), at(10), at(8)));
  EXPECT_TRUE(startsNext(at(9), at(9), at(8))) << "of equals, the last";
  EXPECT_FALSE(startsNext(at(10), at(9), at(8)));
  EXPECT_FALSE(startsNext(at(7), at(9), at(8))) << "earlier than the best, but over";
}

TEST(EventChoice, AnAllDayEventIsDroppedExactlyWhenTheProfileDoesNotIgnoreThem) {
  EXPECT_TRUE(isDroppedInTheEnd(true, false));
  EXPECT_FALSE(isDroppedInTheEnd(true, true));
  EXPECT_FALSE(isDroppedInTheEnd(false, false));
  EXPECT_FALSE(isDroppedInTheEnd(false, true));
}

}  // namespace
}  // namespace hushmode
