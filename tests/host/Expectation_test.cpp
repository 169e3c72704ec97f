// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/Expectation.h"

#include <gtest/gtest.h>
#include <ostream>

namespace hushmode::host {
namespace {

using platform::Date;
using platform::EKEventStatus;

constexpr auto any = EKEventStatus::None, confirmed = EKEventStatus::Confirmed, tentative = EKEventStatus::Tentative,
               cancelled = EKEventStatus::Canceled;

/// Hours of a day as dates.
Date hour(double hours) { return Date(hours * 3600); }
Happening from(double start, double end, EKEventStatus status = any, bool allDay = false) {
  return {hour(start), hour(end), status, allDay};
}

Conditions office() {
  return {.enabled = true, .windowStart = hour(8), .windowEnd = hour(17), .allDayEventsIgnored = true};
}
Conditions with(Conditions conditions, const std::function<void(Conditions&)>& change) {
  change(conditions);
  return conditions;
}

struct Case {
  const char* name;
  Conditions conditions;
  std::vector<Happening> events;
  double now;
  bool on;
  double change;  ///< The next one; 0 for none.
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

class ExpectationTest : public ::testing::TestWithParam<Case> {};

TEST_P(ExpectationTest, SaysWhetherItIsOnAndWhenThatChanges) {
  const Case& each = GetParam();
  EXPECT_EQ(expectation(each.conditions, each.events, hour(each.now)).on, each.on);
  const auto change = nextChange(each.conditions, each.events, hour(each.now));
  if (each.change == 0) {
    EXPECT_FALSE(change) << change->secondsSince1970() / 3600;
  } else {
    ASSERT_TRUE(change);
    EXPECT_EQ(change->secondsSince1970() / 3600, each.change);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExpectationTest,
    ::testing::Values(
        Case{"NothingHappens", office(), {}, 9, false, 0},
        Case{"AnEventIsAhead", office(), {from(9, 10)}, 8.5, false, 9},
        Case{"ItsStartIsIncluded", office(), {from(9, 10)}, 9, true, 10},
        Case{"ItsEndIsNot", office(), {from(9, 10)}, 10, false, 0},
        Case{"TheWindowOpensInIt", office(), {from(7, 9)}, 7.5, false, 8},
        Case{"TheWindowClosesInIt", office(), {from(16, 18)}, 16.5, true, 17},
        Case{"TheWindowIsClosed", office(), {from(16, 18)}, 17, false, 0},
        Case{"BackToBackIsNoChange", office(), {from(9, 10), from(10, 11)}, 9.5, true, 11},
        Case{"Overlapping", office(), {from(9, 10), from(9.5, 9.75)}, 9.6, true, 10},
        Case{"AGapIsAChange", office(), {from(9, 10), from(10.5, 11)}, 9.5, true, 10},
        Case{"ATentativeOneInFront",
             with(office(), [](auto& c) { c.wantedStatus = 1; }),
             {from(9, 10, tentative), from(9, 11, confirmed)},
             9.5,
             true,
             11},
        Case{"OfAnotherStatus",
             with(office(), [](auto& c) { c.wantedStatus = 1; }),
             {from(9, 10, tentative)},
             9.5,
             false,
             0},
        Case{"Cancelled", office(), {from(9, 10, cancelled)}, 9.5, false, 0},
        Case{"AllDayIgnored", office(), {from(0, 24, any, true)}, 9, false, 0},
        Case{"AllDayCounted",
             with(office(), [](auto& c) { c.allDayEventsIgnored = false; }),
             {from(0, 24, any, true)},
             9,
             true,
             17},
        Case{"WithoutAWindow", with(office(), [](auto& c) { c.allDay = true; }), {from(22, 25)}, 23, true, 25},
        Case{"Disabled", with(office(), [](auto& c) { c.enabled = false; }), {from(9, 10)}, 9.5, false, 0},
        Case{"OnItsNetworkInTheWindow", with(office(), [](auto& c) { c.onOwnNetwork = true; }), {}, 9, true, 17},
        Case{"OnItsNetworkBeforeTheWindow", with(office(), [](auto& c) { c.onOwnNetwork = true; }), {}, 7, false, 8},
        Case{"OnItsNetworkForEver", with(office(), [](auto& c) { c.onOwnNetwork = c.allDay = true; }), {}, 9, true, 0},
        Case{"AWindowThatEndsBeforeItStarts",
             with(office(), [](auto& c) { std::swap(c.windowStart, c.windowEnd); }),
             {from(9, 23)},
             18,
             false,
             0}),
    [](const auto& info) { return info.param.name; });

TEST(Expectation, OfTheEventsThatGoOnItNamesTheLastToEnd) {
  const auto answer = expectation(office(), {from(9, 10), from(9, 11), from(9, 10.5)}, hour(9.5));
  EXPECT_EQ(answer.event, 1U);
  EXPECT_FALSE(answer.byNetwork);
}

TEST(Expectation, WhatIsOffHasNoEnd) { EXPECT_FALSE(onUntil(office(), {from(9, 10)}, hour(8.5))); }

}  // namespace
}  // namespace hushmode::host
