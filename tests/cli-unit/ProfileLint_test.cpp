// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ProfileLint.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

namespace hushmode::cli {
namespace {

using platform::Array;
using platform::Date;
using platform::Dictionary;
using platform::EKEventStatus;

/// 2026-11-24, in UTC.
constexpr double day = 1795478400;

Date hour(double hours) { return Date(day + hours * 3600); }

KnownEvent event(const std::string& calendar, double start, double end, EKEventStatus status = EKEventStatus::Confirmed,
                 bool allDay = false) {
  return {hour(start), hour(end), calendar, "uid", "Interview", status, allDay};
}

host::Switch switched(double at, std::int64_t profile, bool on) {
  host::Switch each;
  each.at = hour(at);
  each.identifier = profile;
  each.on = on;
  return each;
}

/// On from 8 to 17 for the calendar Work, with identifier 1.
Dictionary office() {
  return {{"identifier", std::int64_t(1)},
          {"title", "Office"},
          {"enabled", true},
          {"startTime", "8:00 AM"},
          {"endTime", "5:00 PM"},
          {"ringerVolume", 0.05},
          {"calendarIdentifiers", Array{"folder:Work"}},
          {"allDayEventsIgnored", true}};
}

/// A phone on which nothing is wrong: one profile, on from nine to ten, and off afterwards.
LintSubject healthy() {
  LintSubject subject;
  subject.profiles = {office()};
  subject.known.calendars = {{"folder:Home", "Home", "calendar folder", true},
                             {"folder:Work", "Work", "calendar folder", true}};
  subject.known.events = {event("folder:Work", 9, 10)};
  subject.switches = {switched(9, 1, true), switched(10, 1, false)};
  subject.networks = {{{"Office", true}, {"Home", false}}};
  subject.accountsKnown = true;
  return subject;
}

using Change = std::function<void(LintSubject&)>;

/// Sets a key of the first profile.
Change with(const char* key, platform::Value value) {
  return [key, value](LintSubject& subject) { subject.profiles.front().set(key, value); };
}
Change together(std::vector<Change> changes) {
  return [changes](LintSubject& subject) {
    for (const Change& each : changes) each(subject);
  };
}
Change withSecondProfile(std::int64_t identifier, const char* title, const std::function<void(Dictionary&)>& change) {
  return [=](LintSubject& subject) {
    Dictionary second = office();
    second.set("identifier", identifier);
    second.set("title", title);
    change(second);
    subject.profiles.push_back(second);
  };
}
Change neverSwitching() {
  return [](LintSubject& subject) { subject.switches.clear(); };
}
Change withEvents(std::vector<KnownEvent> events) {
  return [events](LintSubject& subject) { subject.known.events = events; };
}
Change withSwitches(std::vector<host::Switch> switches) {
  return [switches](LintSubject& subject) { subject.switches = switches; };
}
/// On as the first, and an hour longer.
Change alongside(double volume) {
  return together(
      {withSecondProfile(2, "Other", [=](Dictionary& other) { other.set("ringerVolume", volume); }),
       withSwitches({switched(9, 1, true), switched(9.5, 2, true), switched(10, 1, false), switched(11, 2, false)})});
}

std::vector<Finding> found(const Change& change) {
  LintSubject subject = healthy();
  if (change) change(subject);
  return lint(subject, *devices::TimeZone::utc());
}

struct Case {
  const char* test;
  Change change;
  const char* name;  ///< Of the only finding; null where nothing is to be found.
  Severity severity = Severity::Note;
  const char* says = "";    ///< A part of its text.
  const char* remedy = "";  ///< All of it.
};

std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.test; }

class LintTest : public ::testing::TestWithParam<Case> {};

TEST_P(LintTest, FindsThatAndNothingElse) {
  const Case& each = GetParam();
  const auto findings = found(each.change);
  if (!each.name) {
    EXPECT_TRUE(findings.empty()) << findings.front().name << ": " << findings.front().text;
    return;
  }
  ASSERT_EQ(findings.size(), 1u) << (findings.empty() ? "nothing" : findings.back().text);
  EXPECT_EQ(findings.front().name, each.name);
  EXPECT_EQ(findings.front().severity, each.severity);
  EXPECT_NE(findings.front().text.find(each.says), std::string::npos) << findings.front().text;
  EXPECT_EQ(findings.front().remedy, each.remedy);
}

using enum Severity;
constexpr auto cancelled = EKEventStatus::Canceled, tentative = EKEventStatus::Tentative;

INSTANTIATE_TEST_SUITE_P(
    Windows, LintTest,
    ::testing::Values(
        Case{"AHealthyPhone", {}, nullptr},
        Case{"EndsBeforeItStarts", together({with("startTime", "10:00 PM"), with("endTime", "6:00 AM")}),
             "window-never-opens", Problem, "ends (6:00 AM) before it starts (10:00 PM)",
             "hushmode profile edit Office --all-day && hushmode schedule Office 22:00-06:00"},
        Case{"EndsWhenItStarts", with("endTime", "8:00 AM"), "window-never-opens", Problem, "never opens",
             "hushmode profile edit Office --all-day"},
        Case{"OneMinute", with("endTime", "8:01 AM"), nullptr},
        Case{"AWindowOfNoMeaningAllDay", together({with("endTime", "1:00 AM"), with("allDay", true)}), nullptr},
        Case{"WithoutColon", with("startTime", "8 AM"), "window-unreadable", Problem, "\"8 AM\"",
             "hushmode profile edit Office --window 08:00-17:00"},
        Case{"WithoutColonAllDay", together({with("startTime", "8 AM"), with("allDay", true)}), nullptr},
        Case{"TwentyFourHoursButOpen", with("startTime", "14:30"), "window-time-odd", Warning, "reads as 00:30",
             "hushmode profile edit Office --window 14:30-17:00"},
        Case{"TwentyFourHoursAndNeverOpen", with("endTime", "17:00"), "window-time-odd", Problem, "reads as 00:00",
             "hushmode profile edit Office --window 08:00-17:00"},
        Case{"LowerCaseIsUsual", with("startTime", "8:00 am"), nullptr},
        Case{"AbsentTimesAreMidnight",
             [](LintSubject& subject) { subject.profiles.front().set("startTime", "12:00 AM"); }, nullptr}),
    [](const auto& info) { return info.param.test; });

INSTANTIATE_TEST_SUITE_P(
    Places, LintTest,
    ::testing::Values(
        Case{"TheOnlyCalendarIsGone", with("calendarIdentifiers", Array{"folder:Wrok"}), "calendar-gone", Problem,
             "folder:Wrok", "hushmode calendars"},
        Case{"OneCalendarOfTwoIsGone", with("calendarIdentifiers", Array{"folder:Wrok", "folder:Work"}),
             "calendar-gone", Warning, "folder:Wrok", "hushmode profile edit Office --calendars Work"},
        Case{"GoneButOnANetwork",
             together({with("calendarIdentifiers", Array{"folder:Wrok"}), with("wifiNetworks", Array{"Office"})}),
             "calendar-gone", Warning, "folder:Wrok", "hushmode calendars"},
        Case{"OurOwnCalendarNeedNotBeThere", with("calendarIdentifiers", Array{"folder:Work", "folder:Hush Mode/1"}),
             nullptr},
        Case{"AnAccountThatIsGone", with("calendarIdentifiers", Array{"folder:Work", "eds:work"}), "calendar-gone",
             Warning, "eds:work", "hushmode profile edit Office --calendars Work"},
        Case{"AnAccountThatNobodyKnows",
             together({with("calendarIdentifiers", Array{"folder:Work", "eds:work"}),
                       [](LintSubject& subject) { subject.accountsKnown = false; }}),
             nullptr},
        Case{"FollowsNothing", together({with("calendarIdentifiers", Array()), neverSwitching()}), "follows-nothing",
             Warning, "never on", "hushmode profile edit Office --calendars \"Home, Work\""},
        Case{"FollowsANetworkOnly",
             together({with("calendarIdentifiers", Array()), with("wifiNetworks", Array{"Office"}), neverSwitching()}),
             nullptr},
        Case{"ANetworkNearlyKnown", with("wifiNetworks", Array{"Ofice"}), "network-unknown", Warning,
             "it knows \"Office\"", "hushmode profile edit Office --networks Office"},
        Case{"ANetworkNeverJoined", with("wifiNetworks", Array{"Office", "City Library"}), "network-unknown", Warning,
             "City Library", "hushmode networks"},
        Case{"KnownNetworks", with("wifiNetworks", Array{"Office", "Home"}), nullptr},
        Case{"NetworksThatNobodyKnows",
             together({with("wifiNetworks", Array{"Ofice"}), [](LintSubject& subject) { subject.networks.reset(); }}),
             nullptr}),
    [](const auto& info) { return info.param.test; });

INSTANTIATE_TEST_SUITE_P(
    Events, LintTest,
    ::testing::Values(
        Case{"WantsCancelledEvents", with("applyProfileEventStatus", std::int64_t(3)), "wants-cancelled-events",
             Problem, "never count", "hushmode profile edit Office --events any"},
        Case{"WantsTentativeEvents", with("applyProfileEventStatus", std::int64_t(2)), "status-never-matches", Warning,
             "tentative", "hushmode profile edit Office --events any"},
        Case{"WantsTheStatusThatOneHas",
             together({with("applyProfileEventStatus", std::int64_t(2)),
                       withEvents({event("folder:Work", 9, 10), event("folder:Work", 11, 12, tentative)})}),
             nullptr},
        Case{"AStatusThatOnlyAnotherCalendarHas",
             together({with("applyProfileEventStatus", std::int64_t(2)),
                       withEvents({event("folder:Work", 9, 10), event("folder:Home", 11, 12, tentative)})}),
             "status-never-matches", Warning, "tentative", "hushmode profile edit Office --events any"},
        Case{"ACancelledEventSaysNothingOfTheStatus",
             together({with("applyProfileEventStatus", std::int64_t(2)),
                       withEvents({event("folder:Work", 9, 10, cancelled)}), neverSwitching()}),
             "never-on", Warning, "no event of its calendars", "hushmode explain Office"},
        Case{"IgnoresAllThereIs", withEvents({event("folder:Work", 0, 24, EKEventStatus::None, true)}),
             "all-events-ignored", Warning, "last all day", "hushmode profile edit Office --all-day-events count"},
        Case{"CountsWhatLastsAllDay",
             together({with("allDayEventsIgnored", false),
                       withEvents({event("folder:Work", 0, 24, EKEventStatus::None, true)})}),
             nullptr},
        Case{"IgnoresOneOfTwo",
             withEvents({event("folder:Work", 0, 24, EKEventStatus::None, true), event("folder:Work", 9, 10)}),
             nullptr},
        Case{"HasOnlyCancelledEvents",
             together({withEvents({event("folder:Work", 9, 10, cancelled)}), neverSwitching()}), "never-on", Warning,
             "no event of its calendars", "hushmode explain Office"},
        Case{"HasNoEvents", together({withEvents({}), neverSwitching()}), "never-on", Warning,
             "no event of its calendars", "hushmode explain Office"},
        Case{"ItsWindowShutsThemOut", together({withEvents({event("folder:Work", 19, 20)}), neverSwitching()}),
             "never-on", Warning, "while its window is open", "hushmode profile edit Office --all-day"},
        Case{"NetworksCannotBeForecast",
             together({withEvents({}), with("wifiNetworks", Array{"Office"}), neverSwitching()}), nullptr}),
    [](const auto& info) { return info.param.test; });

INSTANTIATE_TEST_SUITE_P(
    Profiles, LintTest,
    ::testing::Values(
        Case{"None", [](LintSubject& subject) { subject.profiles.clear(); }, "no-profiles", Warning, "no profiles",
             "hushmode profile add Meetings"},
        Case{"OneIsDisabled", with("enabled", false), "disabled", Note, "disabled", "hushmode profile enable Office"},
        Case{"ADisabledOneIsNotLookedAt", together({with("enabled", false), with("startTime", "8 AM")}), "disabled",
             Note, "disabled", "hushmode profile enable Office"},
        Case{"TheSameTitle",
             together({withSecondProfile(2, "Office", [](Dictionary&) {}),
                       withSwitches({switched(9, 1, true), switched(10, 1, false), switched(11, 2, true)})}),
             "title-twice", Warning, "Two profiles", "hushmode profile edit 2 --title \"Office 2\""},
        Case{"OtherTitles",
             together({withSecondProfile(2, "Other", [](Dictionary&) {}),
                       withSwitches({switched(9, 1, true), switched(10, 1, false), switched(11, 2, true)})}),
             nullptr},
        Case{"TwoFight", alongside(0.5), "profiles-fight", Warning,
             "\"Office\" and \"Other\" are both on, first on Tuesday, 24 November 2026, 09:30, and differ: ringtone 5% "
             "and 50%",
             "hushmode profile edit Other --ringtone 5%"},
        Case{"TwoAgree", alongside(0.05), nullptr},
        Case{"OneAfterTheOther",
             together({alongside(0.5), withSwitches({switched(9, 1, true), switched(10, 1, false),
                                                     switched(10, 2, true), switched(11, 2, false)})}),
             nullptr},
        Case{"OneThatStaysOnFights",
             together({alongside(0.5), withSwitches({switched(9, 1, true), switched(700, 2, true)})}), "profiles-fight",
             Warning, "Wednesday, 23 December 2026, 04:00", "hushmode profile edit Other --ringtone 5%"},
        Case{"DoNotDisturbIsNoFight",
             together({alongside(0.05), [](LintSubject& subject) { subject.profiles.back().set("dnDEnabled", true); }}),
             nullptr}),
    [](const auto& info) { return info.param.test; });

TEST(Lint, TheFirstTimeOfAFightIsTold) {
  const auto findings = found(
      together({alongside(0.5), withSwitches({switched(33, 2, true), switched(34, 1, true), switched(35, 2, false),
                                              switched(36, 1, false), switched(57, 2, true), switched(58, 1, true)})}));
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_NE(findings.front().text.find("Wednesday, 25 November 2026, 10:00"), std::string::npos)
      << findings.front().text;
}

TEST(Lint, TitlesThatAShellWouldReadAreQuotedAndThoseThatCannotBeTypedGiveWayToTheIdentifier) {
  for (const auto& [title, word] : std::vector<std::pair<std::string, std::string>>{{"At work", "\"At work\""},
                                                                                    {"$HOME", "'$HOME'"},
                                                                                    {"it's $5", "'it'\\''s $5'"},
                                                                                    {"Büro", "Büro"},
                                                                                    {"\x1b[2J", "1"},
                                                                                    {"--all-day", "1"}}) {
    const auto findings = found(together({with("title", title), with("enabled", false)}));
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings.front().remedy, "hushmode profile enable " + word);
  }
}

}  // namespace
}  // namespace hushmode::cli
