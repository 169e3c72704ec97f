// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/simulation/Play.h"

#include <algorithm>

namespace hushmode::simulation {
namespace {

using Texts = std::vector<std::string>;

const std::string quieter = "ringtone 80% to 25%, media 50% to 13%";
const std::string louder = "ringtone 25% to 80%, media 13% to 50%";

TEST(LeastHost, AProfileFollowsItsEventAndThePhoneIsAsBefore) {
  const Played played = play(workday(standup));
  EXPECT_EQ(played.switches,
            (Texts{"09:00:00 Work on \"Standup\": " + quieter, "10:00:00 Work off \"Standup\" ended: " + louder}));
  EXPECT_EQ(played.end, (PhoneState{.ringtone = 0.8F,
                                    .media = 0.5F,
                                    .ringVibrate = true,
                                    .silentVibrate = true,
                                    .doNotDisturb = false,
                                    .icon = false}));
  EXPECT_TRUE(played.complaints.empty());
}

TEST(LeastHost, TheSameScenarioGivesTheSameRecord) {
  EXPECT_EQ(play(workday(standup)).entries, play(workday(standup)).entries);
}

TEST(LeastHost, APlanIsMadeAtEachMidnightWithAReload) {
  std::string scenario =
      workday(R"([{"uid": "1", "title": "Late", "start": "2024-05-16T09:00", "end": "2024-05-16T10:00"}])");
  scenario.replace(scenario.find("\"phone\""), 0, "\"to\": \"2024-05-16\", ");
  EXPECT_EQ(play(scenario).switches,
            (Texts{"09:00:00 Work on \"Late\": " + quieter, "10:00:00 Work off \"Late\" ended: " + louder}));
}

TEST(LeastHost, AHostThatIsToldToWaitPlansOnlyWhenAsked) {
  std::string scenario = workday(standup, R"([{"at": "09:30", "do": "plan"}])");
  scenario.replace(scenario.find("\"phone\""), 0, "\"hostPlans\": false, ");
  EXPECT_EQ(play(scenario).switches.front(), "09:30:00 Work on \"Standup\": " + quieter);
}

TEST(LeastHost, AChangeOfNetworkIsPlanned) {
  const Played played = play(workday("[]", R"([{"at": "09:00", "do": "join", "network": "Office"},
    {"at": "11:00", "do": "leave"}])",
                                     R"(, "wifiNetworks": ["Office"])"));
  EXPECT_EQ(played.switches,
            (Texts{"09:00:00 Work on network Office: " + quieter, "11:00:00 Work off left network Office: " + louder}));
}

TEST(LeastHost, AChangeOfTheCalendarIsPlannedAfterTheDebounce) {
  const Played played = play(workday("[]", R"([{"at": "09:00", "do": "addEvent", "calendar": "work", "uid": "2",
    "title": "Sudden", "start": "08:30", "end": "09:30"}])"));
  ASSERT_EQ(played.switches.size(), 2U);
  EXPECT_EQ(played.switches[0], "09:00:02 Work on \"Sudden\": " + quieter);
}

TEST(LeastHost, ACancelledEventSwitchesBack) {
  const Played played = play(workday(standup, R"([{"at": "09:20", "do": "setEventStatus", "uid": "1",
    "status": "cancelled"}])"));
  EXPECT_EQ(played.switches.back(), "09:20:02 Work off \"Standup\" gone from the calendar or overtaken: " + louder);
}

TEST(LeastHost, TheMasterSwitchGoesOffAndRevertsAtOnce) {
  const Played played = play(workday(standup, R"([{"at": "09:20", "do": "masterSwitch", "on": false}])"));
  EXPECT_EQ(played.switches.back(), "09:20:00 Work off Hush Mode switched off: " + louder);
}

TEST(LeastHost, ATimeThatCannotBeReadIsToldOnceAndTheOthersGoOn) {
  std::string scenario = workday(standup, R"([{"at": "07:00", "do": "plan"}, {"at": "07:10", "do": "addEvent",
    "calendar": "work", "uid": "2", "start": "12:00", "end": "12:30"}])");
  const std::string broken = R"({"identifier": 4, "title": "Broken", "enabled": true, "startTime": "8 AM",
    "endTime": "5:00 PM", "calendarIdentifiers": ["work"]}, )";
  scenario.replace(scenario.find("{\"identifier\": 5"), 0, broken);
  const Played played = play(scenario);
  EXPECT_EQ(played.complaints,
            (Texts{"profile \"Broken\": time of day \"8 AM\" has no \":\"; expected a text such as \"8:00 AM\""}));
  EXPECT_EQ(played.switches.size(), 4U);
}

TEST(LeastHost, AKilledHostFindsTheAppliedProfileAfterItsStartAndRevertsItAtTheEnd) {
  const Played played = play(workday(standup, R"([{"at": "09:20", "do": "kill"}, {"at": "09:40", "do": "start"}])"));
  EXPECT_EQ(played.switches,
            (Texts{"09:00:00 Work on \"Standup\": " + quieter, "10:00:00 Work off \"Standup\" ended: " + louder}));
}

TEST(LeastHost, AStepOnAnUnknownProfileIsComplainedOf) {
  const Played played = play(workday(standup, R"([{"at": "08:00", "do": "deleteProfile", "profile": "Wrok"}])"));
  EXPECT_EQ(played.complaints, (Texts{"no profile is titled \"Wrok\""}));
}

TEST(LeastHost, AnEditedProfileIsSavedAndPlanned) {
  const Played played = play(workday(standup, R"([{"at": "08:00", "do": "editProfile", "profile": "Work",
    "set": {"ringerVolume": 0.5}}])"));
  EXPECT_EQ(played.switches.front(), "09:00:00 Work on \"Standup\": ringtone 80% to 50%, media 50% to 13%");
}

TEST(LeastHost, AFileThatCannotBeWrittenDoesNotStopTheSwitch) {
  const Played played = play(workday(standup, R"([{"at": "08:00", "do": "fault", "writes": "files"}])"));
  EXPECT_EQ(played.switches.size(), 2U);
  EXPECT_NE(std::find(played.entries.begin(), played.entries.end(), "file write profiles failed"),
            played.entries.end());
}

TEST(Switches, WhatChangedIsToldInWords) {
  const PhoneState before{.ringtone = 1.0F,
                          .media = 0.5F,
                          .ringVibrate = false,
                          .silentVibrate = false,
                          .doNotDisturb = true,
                          .icon = true};
  const PhoneState after{.ringtone = 0.0F,
                         .media = 0.5F,
                         .ringVibrate = true,
                         .silentVibrate = true,
                         .doNotDisturb = false,
                         .icon = false};
  EXPECT_EQ(host::differenceText(before, before), "nothing changed");
  EXPECT_EQ(host::differenceText(before, after),
            "ringtone 100% to 0%, vibrate on ring on, vibrate on silent on, do not disturb off, icon hidden");
  // What cannot be read on either side is no difference.
  EXPECT_EQ(host::differenceText(before, {}), "nothing changed");
  EXPECT_EQ(host::differenceText({}, after), "nothing changed");
}

TEST(Switches, WhatTheUserChangesLaterIsNotTheSwitchsDoing) {
  const Played played = play(workday(standup, R"([{"at": "09:10", "do": "pressVolume", "volume": 0.75}])"));
  EXPECT_EQ(played.switches.front(), "09:00:00 Work on \"Standup\": " + quieter);
}

TEST(Switches, TwoProfilesOfOneInstantShareTheChange) {
  std::string scenario = workday(standup);
  const std::string second = R"({"identifier": 4, "title": "Also", "enabled": true, "allDay": true,
    "allDayEventsIgnored": true, "ringerVolume": 0, "calendarIdentifiers": ["work"], "vibrate": true}, )";
  scenario.replace(scenario.find("{\"identifier\": 5"), 0, second);
  const Played played = play(scenario);
  ASSERT_EQ(played.switches.size(), 4U);
  EXPECT_EQ(played.switches[1].substr(0, 13), "09:00:00 Work");
}

}  // namespace
}  // namespace hushmode::simulation
