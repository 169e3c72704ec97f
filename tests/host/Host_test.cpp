// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What the host says, shows and does at once.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

using ::testing::PrintToString;

const std::string standup = list({event("09:00", "10:00")});

Step at(const Scenario& scenario, const std::string& time, std::function<void(Simulation&)> perform) {
  return {*parseTime(time, *scenario.zone, scenario.from), std::move(perform)};
}

// --- What it says ---

int countOf(const std::vector<std::string>& lines, const std::string& part) {
  return static_cast<int>(std::count_if(lines.begin(), lines.end(),
                                        [&](const std::string& line) { return line.find(part) != std::string::npos; }));
}

TEST(HostSays, OnceThatAWindowNeverOpensAndWhatToDo) {
  const Life life = live(scenarioOf(day({.events = standup,
                                         .steps = list({step("09:30", "plan"), step("09:40", "reload")}),
                                         .to = "2024-05-16",
                                         .hours = R"("startTime": "10:00 PM", "endTime": "6:00 AM")"})));
  ASSERT_EQ(life.complaints.size(), 1U) << PrintToString(life.complaints);
  EXPECT_NE(life.complaints[0].find("\"Work\""), std::string::npos);
  EXPECT_NE(life.complaints[0].find("Make two profiles of it"), std::string::npos);
  EXPECT_TRUE(life.writes.empty());
}

TEST(HostSays, OnceThatATimeCannotBeReadAndTheOthersGoOn) {
  const Life life = live(scenarioOf(day({.events = standup,
                                         .steps = list({step("09:30", "plan"), step("09:40", "reload")}),
                                         .more = R"(, "endTime": "noon")",
                                         .otherEvents = list({event("09:00", "10:00", "", "2")}),
                                         .to = "2024-05-16"})),
                         {{"09:45", otherQuiet}});
  ASSERT_EQ(life.complaints.size(), 1U) << PrintToString(life.complaints);
  EXPECT_NE(life.complaints[0].find("\"8:00 AM\""), std::string::npos) << "how to write it";
  PhoneState wanted = life.before;
  otherQuiet(wanted);
  EXPECT_EQ(life.moments[0], wanted) << differenceText(wanted, life.moments[0]);
  EXPECT_EQ(life.end, life.before);
}

TEST(HostSays, OnceThatThereAreNoWakeTimers) {
  const Life life = live(scenarioOf(day({.events = standup,
                                         .steps = list({step("09:30", "plan"), step("09:40", "reload")}),
                                         .phone = R"("faults": [{"class": "PCSimpleTimer", "present": false}])"})));
  EXPECT_EQ(countOf(life.complaints, "wake timers"), 1) << PrintToString(life.complaints);
}

TEST(HostSays, WhyAnEditIsRefused) {
  const Life life = live(scenarioOf(
      day({.events = standup,
           .steps = list({step("08:00", "editProfile", R"(, "profile": "Work", "set": {"title": "Other"})"),
                          step("08:01", "editProfile", R"(, "profile": "Work", "set": {"startTime": "early"})"),
                          step("08:02", "editProfile", R"(, "profile": "Work", "set": {"title": ""})")}),
           .otherEvents = "[]"})));
  EXPECT_EQ(countOf(life.complaints, "another profile is called \"Other\""), 1);
  EXPECT_EQ(countOf(life.complaints, "write times as"), 1) << PrintToString(life.complaints);
  EXPECT_EQ(countOf(life.complaints, "needs a title"), 1);
}

// --- Once, and no more ---

TEST(HostRestores, OnceWhenTheCalendarIsEmptiedInTheMeeting) {
  for (const std::string& more : {std::string(), withTone}) {
    const Life life = live(scenarioOf(
        day({.events = standup, .steps = list({step("09:59:57", "removeEvent", R"(, "uid": "1")")}), .more = more})));
    std::vector<double> ringtones;
    for (const VolumeWrite& each : life.writes) {
      if (!each.media) ringtones.push_back(static_cast<float>(each.volume));
    }
    EXPECT_EQ(ringtones, (std::vector<double>{0.25F, 0.8F})) << more;
    EXPECT_EQ(life.end, life.before);
  }
}

TEST(HostArms, NothingForAnEventThatIsOver) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  std::vector<host::PlannedWakeUp> armed;
  scenario.steps.push_back(at(scenario, "10:01", [&](Simulation& s) { armed = hostOf(s).armed(); }));
  live(scenario);
  ASSERT_EQ(armed.size(), 1U) << "the next look, at midnight";
  EXPECT_FALSE(armed[0].profile);
  EXPECT_EQ(armed[0].date, *parseTime("2024-05-15", *scenario.zone));
}

TEST(HostArms, NothingWhileTheMasterSwitchIsOff) {
  Scenario scenario =
      scenarioOf(day({.events = list({event("09:00", "10:00"), event("12:00", "13:00", "", "2")}),
                      .steps = list({step("09:30", "masterSwitch", R"(, "on": false)"), step("09:40", "plan")}),
                      .more = withAll}));
  std::vector<host::PlannedWakeUp> armed{{}};
  scenario.steps.push_back(at(scenario, "09:50", [&](Simulation& s) { armed = hostOf(s).armed(); }));
  live(scenario);
  EXPECT_TRUE(armed.empty());
}

/// Whether a wake-up of the library's own is armed for this moment; the host looks after it in any case.
bool isArmed(const std::vector<host::PlannedWakeUp>& armed, platform::Date date) {
  return std::any_of(armed.begin(), armed.end(),
                     [&](const host::PlannedWakeUp& each) { return each.profile == 5 && each.date == date; });
}

TEST(HostArms, TheLibrarysWakeUpsOfANewDay) {
  Scenario scenario =
      scenarioOf(day({.events = list({event("2024-05-15T09:00", "2024-05-15T10:00")}), .to = "2024-05-15"}));
  std::vector<host::PlannedWakeUp> armed;
  scenario.steps.push_back(at(scenario, "2024-05-15T08:30", [&](Simulation& s) { armed = hostOf(s).armed(); }));
  live(scenario);
  EXPECT_TRUE(isArmed(armed, *parseTime("2024-05-15T09:00", *scenario.zone)));
}

TEST(HostArms, TheLibrarysWakeUpsOfANetworkThatFollowsAnother) {
  Scenario scenario = scenarioOf(day({.steps = list({step("09:00", "join", R"(, "network": "Cafe")"),
                                                     step("10:00", "join", R"(, "network": "Home")")}),
                                      .more = R"(, "wifiNetworks": ["Home"])"}));
  std::vector<host::PlannedWakeUp> armed;
  scenario.steps.push_back(at(scenario, "10:01", [&](Simulation& s) { armed = hostOf(s).armed(); }));
  live(scenario);
  EXPECT_TRUE(isArmed(armed, *parseTime("2024-05-14T17:00", *scenario.zone)));
}

/// A wake-up that was on its way when the switch was set.
TEST(MasterSwitch, OffHoldsAgainstAWakeUpThatFiresAllTheSame) {
  Scenario scenario = scenarioOf(day({.events = standup}));
  // The file is set, but the host has not been told yet.
  scenario.steps.push_back(at(scenario, "08:59", [](Simulation& s) {
    s.phone().files().memory().set(HMProfilesManager::settingsPath,
                                   platform::Dictionary{{"com.quorvel.hushmode.enabled", false}});
  }));
  const Life life = live(scenario, {{"09:00:05", asBefore}});
  EXPECT_EQ(life.moments[0], life.before) << differenceText(life.before, life.moments[0]);
  EXPECT_TRUE(life.writes.empty());
}

// --- Edits that cannot be saved ---

class UnsavedEdits : public ::testing::Test {
 protected:
  /// Runs `edit` at 9:30, in the meeting, while no file can be written; the profiles afterwards.
  std::vector<platform::Dictionary> profilesAfter(const std::function<void(host::Host&)>& edit) {
    Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
    std::vector<platform::Dictionary> profiles;
    scenario.steps.push_back(at(scenario, "09:30", [&](Simulation& s) {
      s.phone().files().setWritesFail(true);
      try {
        edit(hostOf(s));
        ADD_FAILURE() << "the edit was taken for saved";
      } catch (const host::EditError& refusal) {
        EXPECT_EQ(refusal.kind(), host::EditError::Kind::NotSaved) << refusal.what();
      }
      profiles = hostOf(s).profiles();
      s.phone().files().setWritesFail(false);
    }));
    const Life life = live(scenario);
    EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
    return profiles;
  }
};

TEST_F(UnsavedEdits, AreUndone) {
  const auto profiles = profilesAfter([](host::Host& host) { host.updateProfile(5, {{"ringerVolume", 0.0}}); });
  ASSERT_EQ(profiles.size(), 1U);
  EXPECT_EQ(*profiles[0].find("ringerVolume"), platform::Value(0.25));
}

TEST_F(UnsavedEdits, AddNoProfile) {
  EXPECT_EQ(profilesAfter([](host::Host& host) { host.addProfile({{"title", "New"}, {"allDay", true}}); }).size(), 1U);
}

TEST_F(UnsavedEdits, DeleteNoProfile) {
  EXPECT_EQ(profilesAfter([](host::Host& host) { host.deleteProfile(5); }).size(), 1U);
}

// --- Stopping ---

class Stopping : public ::testing::TestWithParam<const char*> {};

TEST_P(Stopping, PutsEverythingBackAtOnceAndForGood) {
  Scenario scenario = scenarioOf(day({.events = standup,
                                      .more = withAll,
                                      .otherEvents = list({event("09:15", "09:45", "", "2")}),
                                      .otherMore = withAll}));
  PhoneState stopped;
  scenario.steps.push_back(at(scenario, GetParam(), [&](Simulation& s) {
    s.stop();
    stopped = stateOf(s.phone());
    EXPECT_FALSE(hostOf(s).isRunning());
    EXPECT_TRUE(hostOf(s).armed().empty());
    EXPECT_TRUE(s.phone().wakeTimers().armed().empty());
  }));
  const Life life = live(scenario);
  EXPECT_EQ(stopped, life.before) << differenceText(life.before, stopped);
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

INSTANTIATE_TEST_SUITE_P(At, Stopping,
                         ::testing::Values("08:30", "09:00:00.5", "09:00:01", "09:00:02", "09:10", "09:20", "09:45:01",
                                           "10:00:00.5", "10:00:01", "10:30"),
                         [](const auto& info) {
                           std::string name = info.param;
                           std::erase_if(name, [](char c) { return !std::isdigit(static_cast<unsigned char>(c)); });
                           return name;
                         });

TEST(Stopping, TellsTheSwitchWithItsReason) {
  Scenario scenario = scenarioOf(day({.events = standup}));
  std::vector<host::Switch> told;
  scenario.steps.push_back(at(scenario, "09:30", [&](Simulation& s) {
    hostOf(s).setOnSwitch([&](const host::Switch& each) { told.push_back(each); });
    s.stop();
  }));
  live(scenario);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].reason, host::Reason{host::Reason::Kind::Stopped});
  EXPECT_FLOAT_EQ(*told[0].after.ringtone, 0.8);
}

// --- What others do to the phone and the files ---

TEST(ProfilesFile, WithoutAnAppliedProfileEndsItAtOnce) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.steps.push_back(at(scenario, "09:30", [](Simulation& s) {
    s.phone().files().memory().set(HMProfilesManager::profilesPath, platform::Array());
    hostOf(s).profilesFileChanged();
  }));
  const Life life = live(scenario, {{"09:31", asBefore}});
  EXPECT_EQ(life.moments[0], life.before) << differenceText(life.before, life.moments[0]);
}

TEST(ProfilesFile, ThatCannotBeReadChangesNothing) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.steps.push_back(at(scenario, "09:30", [](Simulation& s) {
    s.phone().files().memory().set(HMProfilesManager::profilesPath, platform::Dictionary{{"no", "list"}});
    hostOf(s).profilesFileChanged();
  }));
  const Life life = live(scenario, {{"09:31", quietWithAll}});
  PhoneState wanted = life.before;
  quietWithAll(wanted);
  EXPECT_EQ(life.moments[0], wanted) << differenceText(wanted, life.moments[0]);
  EXPECT_EQ(countOf(life.complaints, "cannot be read"), 1) << PrintToString(life.complaints);
  EXPECT_EQ(life.end, life.before);
}

TEST(VibrateSwitches, SetByHandInTheMeetingStay) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.steps.push_back(at(scenario, "09:30", [](Simulation& s) {
    s.phone().defaults().domains()["com.apple.springboard"].set("silent-vibrate", false);
    hostOf(s).phoneChanged();
  }));
  const Life life = live(scenario);
  PhoneState wanted = life.before;
  wanted.silentVibrate = false;
  EXPECT_EQ(life.end, wanted) << differenceText(wanted, life.end);
}

TEST(VibrateSwitches, SetByHandRightAfterTheBeginningHoldOverAProfileThatDoesNotVibrate) {
  for (const bool on : {false, true}) {
    SCOPED_TRACE(on ? "on" : "off");
    Scenario scenario = scenarioOf(day({.events = standup,
                                        .more = R"(, "vibrate": false)",
                                        .phone = on ? R"("ringVibrate": false, "silentVibrate": false)" : ""}));
    scenario.steps.push_back(at(scenario, "09:00:02", [&](Simulation& s) {
      s.phone().defaults().domains()["com.apple.springboard"].set("silent-vibrate", on);
      hostOf(s).phoneChanged();
    }));
    const Life life = live(scenario, {{"09:30", quiet}});
    PhoneState wanted = life.before;
    wanted.silentVibrate = on;
    EXPECT_EQ(life.end, wanted) << differenceText(wanted, life.end);
    quiet(wanted);
    wanted.ringVibrate = false;  // What is switched on by hand stays; that one is switched off keeps nothing on.
    EXPECT_EQ(life.moments[0], wanted) << differenceText(wanted, life.moments[0]);
  }
}

TEST(Applied, IsShownWithItsReasonAndItsEnd) {
  Scenario scenario = scenarioOf(day({.events = list({event("09:00", "10:00"), event("10:00", "11:00", "", "2")})}));
  std::vector<host::AppliedProfile> shown;
  scenario.steps.push_back(at(scenario, "09:30", [&](Simulation& s) { shown = hostOf(s).applied(); }));
  live(scenario);
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].title, "Work");
  EXPECT_EQ(messageOf(shown[0].reason).english(), "\"Event 1\"");
  EXPECT_EQ(shown[0].until, *parseTime("2024-05-14T11:00", *scenario.zone));
}

}  // namespace
}  // namespace hushmode::simulation
