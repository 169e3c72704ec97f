// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/Explanation.h"

#include <functional>
#include <gtest/gtest.h>
#include <ostream>

namespace hushmode::cli {
namespace {

using platform::Date;
using platform::EKEventStatus;

/// 2026-11-24, 00:00 in Berlin, where it is an hour later than in UTC.
constexpr double midnight = 1795474800;

Date hour(double hours) { return Date(midnight + hours * 3600); }

std::shared_ptr<const devices::TimeZone> berlin() { return devices::TimeZone::named("Europe/Berlin"); }

WindowTime at(const char* text, int minutes) { return {text, minutes, true}; }

/// From eight to 18 o'clock, for events of Work that do not last all day.
ProfileRules office() {
  ProfileRules rules;
  rules.title = "Office";
  rules.enabled = rules.allDayEventsIgnored = true;
  rules.start = at("8:00 AM", 480);
  rules.end = at("6:00 PM", 1080);
  rules.calendars = {"Work"};
  return rules;
}

KnownEvent event(const char* title, double start, double end, EKEventStatus status = EKEventStatus::Confirmed,
                 const char* calendar = "Work", bool allDay = false) {
  return {hour(start), hour(end), calendar, title, title, status, allDay};
}

std::vector<KnownEvent> meetings() { return {event("Standup", 9.5, 9.75), event("Interview", 14.5, 15.5)}; }

Explanation explained(double now, const std::function<void(ProfileRules&, Moment&)>& change = {},
                      const std::vector<KnownEvent>& events = meetings()) {
  ProfileRules rules = office();
  Moment moment{hour(now), true, true, std::nullopt};
  if (change) change(rules, moment);
  return explain(rules, moment, events, *berlin());
}

struct Case {
  const char* test;
  std::function<void(ProfileRules&, Moment&)> change;
  double now;
  std::optional<Condition> failed;  ///< None: it is on.
  double next;                      ///< When the answer changes, in hours; 0 for never.
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.test; }

class ExplanationTest : public ::testing::TestWithParam<Case> {};

TEST_P(ExplanationTest, NamesTheFirstConditionThatFailedAndTheNextChange) {
  const Case& each = GetParam();
  const Explanation explanation = explained(each.now, each.change);
  EXPECT_EQ(explanation.on, !each.failed);
  EXPECT_EQ(explanation.failed, each.failed);
  ASSERT_EQ(explanation.next.has_value(), each.next != 0);
  if (explanation.next) {
    EXPECT_EQ((explanation.next->at - hour(0)) / 3600, each.next);
    EXPECT_NE(explanation.next->on, explanation.on);
  }
}

void joined(ProfileRules& rules, Moment& moment) {
  rules.networks = {"Office"};
  moment.joinedNetwork = "Office";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExplanationTest,
    ::testing::Values(
        Case{"InAnEvent", {}, 14.5, std::nullopt, 15.5}, Case{"AtItsEnd", {}, 15.5, Condition::Event, 0},
        Case{"BetweenEvents", {}, 12, Condition::Event, 14.5}, Case{"BeforeTheWindow", {}, 7, Condition::Window, 9.5},
        Case{"AfterTheWindow", {}, 18, Condition::Window, 0},
        Case{"SwitchedOff", [](auto&, Moment& moment) { moment.masterSwitch = false; }, 15, Condition::MasterSwitch, 0},
        Case{"Disabled", [](ProfileRules& rules, auto&) { rules.enabled = false; }, 15, Condition::Enabled, 0},
        Case{"TheMasterSwitchComesFirst",
             [](ProfileRules& rules, Moment& moment) { rules.enabled = moment.masterSwitch = false; }, 7,
             Condition::MasterSwitch, 0},
        Case{"DisabledComesBeforeTheWindow", [](ProfileRules& rules, auto&) { rules.enabled = false; }, 7,
             Condition::Enabled, 0},
        Case{"OnItsNetwork", joined, 12, std::nullopt, 18},
        Case{"OnItsNetworkBeforeTheWindow", joined, 7, Condition::Window, 8},
        Case{"OnAnotherNetwork",
             [](ProfileRules& rules, Moment& moment) {
               rules.networks = {"Office"};
               rules.calendars.clear();
               moment.joinedNetwork = "Home";
             },
             12, Condition::Network, 0},
        Case{"OnAnUnknownNetwork",
             [](ProfileRules& rules, Moment& moment) {
               rules.networks = {"Office"};
               rules.calendars.clear();
               moment.isNetworkKnown = false;
             },
             12, Condition::Network, 0},
        Case{"FollowsNothing", [](ProfileRules& rules, auto&) { rules.calendars.clear(); }, 15, Condition::Event, 0},
        Case{"NeverOpens", [](ProfileRules& rules, auto&) { rules.end = at("6:00 AM", 360); }, 15, Condition::Window,
             0},
        Case{"Unreadable",
             [](ProfileRules& rules, auto&) {
               rules.end = {"6 PM", std::nullopt, false};
             },
             15, Condition::Window, 0},
        Case{"AllDay", [](ProfileRules& rules, auto&) { rules.allDay = true; }, 7, Condition::Event, 9.5}),
    [](const auto& info) { return info.param.test; });

Verdict verdict(const KnownEvent& each, const std::function<void(ProfileRules&, Moment&)>& change = {}) {
  const auto explanation = explained(14, change, {each});
  return explanation.events.empty() ? Verdict::NotBegun : explanation.events.front().verdict;
}

TEST(Explanation, EachEventSaysWhyItDoesNotCount) {
  EXPECT_EQ(verdict(event("A", 13, 15)), Verdict::Counts);
  EXPECT_EQ(verdict(event("A", 13, 15, EKEventStatus::Confirmed, "Home")), Verdict::OtherCalendar);
  EXPECT_EQ(verdict(event("A", 13, 15, EKEventStatus::Canceled)), Verdict::Cancelled);
  EXPECT_EQ(verdict(event("A", 0, 24, EKEventStatus::None, "Work", true)), Verdict::AllDayIgnored);
  const auto wantsConfirmed = [](ProfileRules& rules, auto&) { rules.wantedStatus = 1; };
  EXPECT_EQ(verdict(event("A", 13, 15, EKEventStatus::Tentative), wantsConfirmed), Verdict::OtherStatus);
  EXPECT_EQ(verdict(event("A", 13, 15), wantsConfirmed), Verdict::Counts);
  EXPECT_EQ(verdict(event("A", 13, 14)), Verdict::Ended);
  EXPECT_EQ(verdict(event("A", 13, 13)), Verdict::NotBegun) << "one without a length never goes on and is not told";
}

TEST(Explanation, OfTheOthersTheNearestThatCountAreTold) {
  const auto explanation = explained(
      12, {},
      {event("Early", 8, 8.5), event("Standup", 9.5, 9.75), event("Cancelled", 10, 11, EKEventStatus::Canceled),
       event("Elsewhere", 12.5, 13, EKEventStatus::Confirmed, "Home"), event("Lunch", 13, 14), event("Late", 15, 16),
       event("Tomorrow", 33, 34)});
  ASSERT_EQ(explanation.events.size(), 2u);
  EXPECT_EQ(explanation.events[0].event.title, "Standup");
  EXPECT_EQ(explanation.events[0].verdict, Verdict::Ended);
  EXPECT_EQ(explanation.events[1].event.title, "Lunch");
  EXPECT_EQ(explanation.events[1].verdict, Verdict::NotBegun);
}

TEST(Explanation, TheNearestOfAnotherDayIsNotTold) {
  EXPECT_TRUE(explained(12, {}, {event("Tomorrow", 33, 34)}).events.empty());
}

TEST(Explanation, AWindowThatOpensAtMidnightOpensThen) {
  const auto fromMidnight = [](ProfileRules& rules, auto&) { rules.start = at("12:00 AM", 0); };
  const auto explanation = explained(19, fromMidnight, {event("Night", 22, 30)});
  ASSERT_TRUE(explanation.next);
  EXPECT_EQ((explanation.next->at - hour(0)) / 3600, 24);
  EXPECT_TRUE(explanation.next->on);
}

TEST(Explanation, ItIsOnForTheEventThatEndsLast) {
  const auto explanation = explained(9, {}, {event("Long", 8.5, 11), event("Short", 8.9, 10), event("Next", 11, 12)});
  ASSERT_TRUE(explanation.onFor);
  EXPECT_EQ(explanation.onFor->title, "Long");
  EXPECT_EQ((explanation.next->at - hour(0)) / 3600, 12) << "the end of the chain";
}

TEST(Explanation, TheNextChangeMayComeOnALaterDay) {
  const auto explanation = explained(19, {}, {event("Standup", 24 * 5 + 9.5, 24 * 5 + 10)});
  ASSERT_TRUE(explanation.next);
  EXPECT_EQ((explanation.next->at - hour(0)) / 3600, 24 * 5 + 9.5);
  ASSERT_TRUE(explanation.next->event);
  EXPECT_EQ(explanation.next->event->title, "Standup");
  EXPECT_FALSE(explained(19, {}, {event("Far", 24 * 9 + 9.5, 24 * 9 + 10)}).next) << "too far away";
}

TEST(Explanation, AnEventOverMidnightEndsForItsWindowAndGoesOnWithoutOne) {
  const std::vector<KnownEvent> night{event("Night", 17, 26)};
  EXPECT_EQ((explained(17.5, {}, night).next->at - hour(0)) / 3600, 18);
  const auto allDay = [](ProfileRules& rules, auto&) { rules.allDay = true; };
  EXPECT_EQ((explained(17.5, allDay, night).next->at - hour(0)) / 3600, 26);
}

TEST(Explanation, WindowsAreOfTheLocalClockAcrossDaylightSaving) {
  // 2026-10-25 in Berlin: the clock goes back from three to two.
  const Date noon(1792926000);
  const auto conditions = conditionsOn(office(), noon, *berlin(), false);
  EXPECT_EQ(conditions.windowStart.secondsSince1970(), 1792911600);  // 08:00 at +01:00.
  EXPECT_EQ(conditions.windowEnd - conditions.windowStart, 10 * 3600);
}

}  // namespace
}  // namespace hushmode::cli
