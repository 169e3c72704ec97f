// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/DayPlan.h"

#include "apps/pictures/DayWords.h"
#include "apps/simulation/TimeText.h"

#include <gtest/gtest.h>

namespace hushmode::cli {
namespace {

using platform::Array;
using platform::Date;
using platform::Dictionary;
using platform::EKEventStatus;

/// A forecast made by hand, in Berlin.
class DayPlanTest : public testing::Test {
 protected:
  DayPlanTest() { forecast_.zone = devices::TimeZone::named("Europe/Berlin"); }

  Date at(const std::string& text) const { return *simulation::parseTime(text, *forecast_.zone); }
  DaySpan span(const std::string& from, const std::string& to) const { return {at(from), at(to)}; }
  void over(const std::string& firstDay, int days) {
    forecast_.from = at(firstDay);
    forecast_.to = simulation::beginningOfLocalDay(forecast_.from, *forecast_.zone, days).addingSeconds(-0.001);
  }
  /// Follows the calendar of its name.
  Dictionary& profile(std::int64_t identifier, const std::string& title) {
    return forecast_.profiles.emplace_back(Dictionary{{"identifier", identifier},
                                                      {"title", title},
                                                      {"enabled", true},
                                                      {"allDay", true},
                                                      {"calendarIdentifiers", Array{title}}});
  }
  KnownEvent& event(const std::string& calendar, const std::string& from, const std::string& to) {
    KnownEvent made;
    made.start = at(from);
    made.end = at(to);
    made.calendar = calendar;
    return forecast_.known.events.emplace_back(made);
  }
  void turn(std::int64_t identifier, bool on, const std::string& when) {
    host::Switch made;
    made.at = at(when);
    made.identifier = identifier;
    made.on = on;
    forecast_.switches.push_back(made);
  }
  std::vector<DayPlan> days() const { return dayPlans(forecast_); }
  double hours(const DayPlan& day) const { return (day.span.end - day.span.start) / 3600; }

  Forecast forecast_;
};

TEST_F(DayPlanTest, EachLocalDayOfTheForecastIsThereWithOrWithoutAnything) {
  over("2026-11-24", 3);
  profile(1, "Work");
  const auto made = days();
  ASSERT_EQ(made.size(), 3u);
  EXPECT_EQ(made[0].span, span("2026-11-24", "2026-11-25"));
  EXPECT_EQ(made[2].span, span("2026-11-26", "2026-11-27"));
  for (const DayPlan& each : made) {
    EXPECT_TRUE(each.lanes.empty());
    EXPECT_FALSE(each.jump);
  }
}

TEST_F(DayPlanTest, OnlyEnabledProfilesWithSomethingOnThatDayHaveALane) {
  over("2026-11-24", 2);
  profile(1, "Idle");
  profile(2, "Work");
  profile(3, "Disabled").set("enabled", false);
  event("Work", "2026-11-25 09:00", "2026-11-25 10:00");
  event("Disabled", "2026-11-25 09:00", "2026-11-25 10:00");
  event("Nobody's", "2026-11-25 09:00", "2026-11-25 10:00");
  const auto made = days();
  EXPECT_TRUE(made[0].lanes.empty());
  ASSERT_EQ(made[1].lanes.size(), 1u);
  EXPECT_EQ(made[1].lanes[0].title, "Work");
}

TEST_F(DayPlanTest, WhatGoesOverMidnightIsCutAtTheDays) {
  over("2026-11-24", 3);
  profile(1, "Work");
  event("Work", "2026-11-24 22:00", "2026-11-26 01:00");
  turn(1, true, "2026-11-24 22:00");
  turn(1, false, "2026-11-26 01:00");
  const auto made = days();
  const std::vector<DaySpan> expected{span("2026-11-24 22:00", "2026-11-25"), span("2026-11-25", "2026-11-26"),
                                      span("2026-11-26", "2026-11-26 01:00")};
  for (std::size_t i = 0; i < 3; ++i) {
    const Lane& lane = made[i].lanes.at(0);
    ASSERT_EQ(lane.events.size(), 1u);
    EXPECT_EQ(lane.events[0].span, expected[i]);
    EXPECT_EQ(lane.events[0].beganBefore, i > 0);
    EXPECT_EQ(lane.events[0].goesOn, i < 2);
    EXPECT_EQ(lane.on, std::vector{expected[i]});
    EXPECT_EQ(lane.switches.size(), i == 1 ? 0u : 1u);
  }
}

TEST_F(DayPlanTest, WhatEndsAtMidnightIsNotOfTheNextDay) {
  over("2026-11-24", 2);
  profile(1, "Work");
  event("Work", "2026-11-24 22:00", "2026-11-25");
  EXPECT_FALSE(days()[0].lanes.empty());
  EXPECT_TRUE(days()[1].lanes.empty());
}

TEST_F(DayPlanTest, AProfileThatStaysOnIsOnUntilTheLastDayIsOver) {
  over("2026-11-24", 1);
  profile(1, "Work");
  turn(1, true, "2026-11-24 22:00");
  EXPECT_EQ(days()[0].lanes.at(0).on, std::vector{span("2026-11-24 22:00", "2026-11-25")});
}

TEST_F(DayPlanTest, SeveralThatAreOnAreAConflictForAsLongAsTheSameOnesAre) {
  over("2026-11-24", 1);
  for (const auto& [identifier, title] : {std::pair(1, "Work"), std::pair(2, "Home"), std::pair(3, "Choir")}) {
    profile(identifier, title);
  }
  turn(1, true, "2026-11-24 09:00");
  turn(2, true, "2026-11-24 10:00");
  turn(3, true, "2026-11-24 10:30");
  turn(3, false, "2026-11-24 11:00");
  turn(1, false, "2026-11-24 12:00");
  turn(2, false, "2026-11-24 13:00");
  // One that ends when another begins.
  turn(3, true, "2026-11-24 13:00");
  turn(3, false, "2026-11-24 14:00");
  const auto day = days()[0];
  ASSERT_EQ(day.conflicts.size(), 3u);
  EXPECT_EQ(day.conflicts[0].span, span("2026-11-24 10:00", "2026-11-24 10:30"));
  EXPECT_EQ(day.conflicts[0].lanes, (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(day.conflicts[1].lanes, (std::vector<std::size_t>{0, 1, 2}));
  EXPECT_EQ(day.conflicts[2].span, span("2026-11-24 11:00", "2026-11-24 12:00"));
  EXPECT_EQ(conflictText(day, day.conflicts[0], *forecast_.zone), "10:00–10:30: Work and Home are both on");
  EXPECT_EQ(conflictText(day, day.conflicts[1], *forecast_.zone), "10:30–11:00: Work and 2 others are on");
}

TEST_F(DayPlanTest, EventsThatDoNotCountSayWhy) {
  over("2026-11-24", 1);
  Dictionary& work = profile(1, "Work");
  work.set("allDay", false);
  work.set("startTime", "8:00 AM");
  work.set("endTime", "5:00 PM");
  work.set("applyProfileEventStatus", std::int64_t(1));
  work.set("allDayEventsIgnored", true);
  event("Work", "2026-11-24 09:00", "2026-11-24 10:00").status = EKEventStatus::Confirmed;
  event("Work", "2026-11-24 07:00", "2026-11-24 08:00").status = EKEventStatus::Confirmed;
  event("Work", "2026-11-24 07:30", "2026-11-24 08:30").status = EKEventStatus::Confirmed;
  event("Work", "2026-11-24 11:00", "2026-11-24 12:00").status = EKEventStatus::Canceled;
  event("Work", "2026-11-24 12:00", "2026-11-24 13:00").status = EKEventStatus::Tentative;
  event("Work", "2026-11-24 14:00", "2026-11-24 14:00").status = EKEventStatus::Confirmed;
  KnownEvent& wholeDay = event("Work", "2026-11-24", "2026-11-25");
  wholeDay.status = EKEventStatus::Tentative;
  wholeDay.allDay = true;
  const auto day = days()[0];
  std::vector<Standing> standings;
  for (const PlannedEvent& each : day.lanes.at(0).events) standings.push_back(each.standing);
  using enum Standing;
  EXPECT_EQ(standings, (std::vector{AllDayIgnored, OutsideHours, Counts, Counts, Cancelled, OtherStatus, NoLength}));
  EXPECT_EQ(day.lanes[0].window, span("2026-11-24 08:00", "2026-11-24 17:00"));
  EXPECT_EQ(hoursText(day, day.lanes[0], *forecast_.zone), "08:00–17:00");
}

TEST_F(DayPlanTest, AWindowThatDoesNotOpenIsNone) {
  over("2026-11-24", 1);
  Dictionary& work = profile(1, "Work");
  work.set("allDay", false);
  work.set("startTime", "10:00 PM");
  work.set("endTime", "6:00 AM");
  event("Work", "2026-11-24 23:00", "2026-11-24 23:30");
  const Lane lane = days()[0].lanes.at(0);
  EXPECT_FALSE(lane.window);
  EXPECT_EQ(lane.events.at(0).standing, Standing::OutsideHours);
}

struct JumpCase {
  const char *zone, *day;
  double hours;
  const char* text;
};
class Jumps : public DayPlanTest, public testing::WithParamInterface<JumpCase> {};

TEST_P(Jumps, ADayHasItsRealLengthAndTheJumpItsPlace) {
  forecast_.zone = devices::TimeZone::named(GetParam().zone);
  ASSERT_TRUE(forecast_.zone);
  over(GetParam().day, 1);
  const auto made = days();
  ASSERT_EQ(made.size(), 1u);
  EXPECT_EQ(hours(made[0]), GetParam().hours);
  ASSERT_TRUE(made[0].jump);
  EXPECT_EQ(jumpText(made[0], *forecast_.zone), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(, Jumps,
                         testing::Values(JumpCase{"Europe/Berlin", "2026-03-29", 23, "02:00 to 03:00 skipped"},
                                         JumpCase{"Europe/Berlin", "2026-10-25", 25, "02:00 to 03:00 repeated"},
                                         JumpCase{"Australia/Lord_Howe", "2026-10-04", 23.5, "02:00 to 02:30 skipped"},
                                         JumpCase{"Australia/Lord_Howe", "2026-04-05", 24.5, "01:30 to 02:00 repeated"},
                                         JumpCase{"Africa/Cairo", "2026-04-24", 23, "00:00 to 01:00 skipped"},
                                         JumpCase{"Africa/Cairo", "2026-10-29", 25, "23:00 to 24:00 repeated"}),
                         [](const auto& each) { return "Day" + std::to_string(each.index); });

TEST_F(DayPlanTest, TheDaysBesideAJumpHaveNone) {
  over("2026-03-28", 3);
  const auto made = days();
  EXPECT_FALSE(made[0].jump);
  EXPECT_TRUE(made[1].jump);
  EXPECT_FALSE(made[2].jump);
}

}  // namespace
}  // namespace hushmode::cli
