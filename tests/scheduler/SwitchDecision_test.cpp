// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "scheduler/SwitchDecision.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

namespace hushmode {

/// For failure messages.
void PrintTo(Switch decision, std::ostream* out) {
  constexpr const char* names[] = {"On", "Off", "Leave"};
  *out << names[static_cast<int>(decision)];
}

namespace {

using platform::Date;

TEST(SwitchDecision, SecondsAreTruncatedTowardZero) {
  const struct {
    double seconds;
    std::int64_t whole;
  } cases[] = {{0, 0},     {0.9, 0},       {-0.9, 0},        {1, 1},    {-1, -1},   {-4.999, -4}, {-5, -5},
               {9.999, 9}, {3599.5, 3599}, {-3599.5, -3599}, {-0.5, 0}, {1.999, 1}, {10, 10},     {86400.25, 86400}};
  for (const auto& c : cases) EXPECT_EQ(wholeSeconds(c.seconds), c.whole) << c.seconds;
}

TEST(SwitchDecision, SecondsBeyond32BitsAreTheNearestBound) {
  constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(wholeSeconds(2147483646.5), highest - 1);
  EXPECT_EQ(wholeSeconds(2147483647.5), highest);
  EXPECT_EQ(wholeSeconds(2147483648.0), highest);
  EXPECT_EQ(wholeSeconds(1e300), highest);
  EXPECT_EQ(wholeSeconds(-2147483647.5), lowest + 1);
  EXPECT_EQ(wholeSeconds(-2147483649.0), lowest);
  EXPECT_EQ(wholeSeconds(-1e300), lowest);
}

TEST(SwitchDecision, AStartIsNowFromFourSecondsAgoToNineAhead) {
  for (const std::int64_t seconds : {-4, -1, 0, 1, 9}) EXPECT_TRUE(isStartNow(seconds)) << seconds;
  for (const std::int64_t seconds : {-3600, -5, 10, 3600}) EXPECT_FALSE(isStartNow(seconds)) << seconds;
}

TEST(SwitchDecision, AnEndIsNowFromFourSecondsAgoToThisSecond) {
  for (const std::int64_t seconds : {-4, -1, 0}) EXPECT_TRUE(isEndNow(seconds)) << seconds;
  for (const std::int64_t seconds : {-3600, -5, 1, 3600}) EXPECT_FALSE(isEndNow(seconds)) << seconds;
}

TEST(SwitchDecision, TheBandsInRealSecondsAreOpenAtTheirOuterBounds) {
  const auto startIsNow = [](double seconds) { return isStartNow(wholeSeconds(seconds)); };
  EXPECT_TRUE(startIsNow(9.999));
  EXPECT_FALSE(startIsNow(10));
  EXPECT_TRUE(startIsNow(-4.999));
  EXPECT_FALSE(startIsNow(-5));
  const auto endIsNow = [](double seconds) { return isEndNow(wholeSeconds(seconds)); };
  EXPECT_TRUE(endIsNow(0.999)) << "still to come, but less than a second";
  EXPECT_FALSE(endIsNow(1));
  EXPECT_TRUE(endIsNow(-4.999));
  EXPECT_FALSE(endIsNow(-5));
}

TEST(SwitchDecision, OnItsNetworkTheStartSwitchesOnAndTheEndOff) {
  constexpr std::int64_t far = 3600;
  const struct {
    const char* what;
    std::int64_t toStart, toEnd;
    bool applied;
    Switch decision;
  } cases[] = {
      {"start 9 s ahead", 9, far, false, Switch::On},
      {"start 10 s ahead", 10, far, false, Switch::Leave},
      {"start 10 s ahead, applied", 10, far, true, Switch::Off},
      {"start 4 s ago", -4, far, false, Switch::On},
      {"start 5 s ago", -5, far, false, Switch::Leave},
      {"start now, applied already", 0, far, true, Switch::On},
      {"end 4 s ago", -far, -4, false, Switch::Off},
      {"end now", -far, 0, false, Switch::Off},
      {"end 1 s ahead", -far, 1, false, Switch::Leave},
      {"end 5 s ago", -far, -5, false, Switch::Leave},
      {"end 5 s ago, applied", -far, -5, true, Switch::Off},
      {"in the middle, applied", -far, far, true, Switch::Off},
      {"start and end both now", 0, 0, false, Switch::On},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(switchOnNetwork(c.toStart, c.toEnd, c.applied), c.decision);
  }
}

TEST(SwitchDecision, AnEventSwitchesByItsBoundsAndByWhatWasAppliedThroughIt) {
  constexpr std::int64_t far = 3600;
  const struct {
    const char* what;
    FollowedEvent event;
    Switch decision;
  } cases[] = {
      {"starts in 9 s", {9, far, false, false, false}, Switch::On},
      {"starts in 10 s", {10, far, false, false, false}, Switch::Leave},
      {"began 4 s ago", {-4, far, true, false, false}, Switch::On},
      {"began 5 s ago and goes on", {-5, far, true, false, false}, Switch::On},
      {"began and ended within the bands", {-4, -1, false, false, false}, Switch::On},
      {"goes on to its end at this second", {-far, 0, true, false, false}, Switch::On},
      {"ended 4 s ago, not applied", {-far, -4, false, false, false}, Switch::Off},
      {"ended 5 s ago, not applied", {-far, -5, false, false, false}, Switch::Leave},
      {"ended 5 s ago, applied", {-far, -5, false, true, false}, Switch::Off},
      {"ends at this second, applied", {-far, 0, true, true, false}, Switch::Off},
      {"ends in 1 s, applied", {-far, 1, true, true, false}, Switch::Leave},
      {"applied, goes on, ends before the window", {-far, far, true, true, false}, Switch::Leave},
      {"applied, goes on, ends with or after the window", {-far, far, true, true, true}, Switch::Off},
      {"not applied, to come, ends after the window", {far, 2 * far, false, false, true}, Switch::Leave},
      {"applied, starts in 9 s", {9, far, false, true, false}, Switch::Off},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(switchByEvent(c.event), c.decision);
  }
}

TEST(SwitchDecision, TheRevertDateIsTheEarlierEnd) {
  const Date five(1000), six(2000);
  EXPECT_EQ(revertDate(six, five), five) << "the window closes first";
  EXPECT_EQ(revertDate(five, six), five) << "the event ends first";
  EXPECT_EQ(revertDate(five, five), five);
  EXPECT_EQ(revertDate(six, std::nullopt), six) << "an all-day profile has no window";
  EXPECT_EQ(revertDate(std::nullopt, five), std::nullopt) << "no event";
  EXPECT_EQ(revertDate(std::nullopt, std::nullopt), std::nullopt);
}

TEST(SwitchDecision, TheNextBoundaryIsTheStartWhileThatIsAhead) {
  const Date start(1000), end(2000);
  EXPECT_EQ(nextBoundary(start, end, Date(999.5)), start);
  EXPECT_EQ(nextBoundary(start, end, Date(1000)), end);
  EXPECT_EQ(nextBoundary(start, end, Date(1500)), end);
  EXPECT_EQ(nextBoundary(start, end, Date(2500)), end) << "also when that is past";
}

}  // namespace
}  // namespace hushmode
