// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What the phone lacks or refuses: the rest holds all the same, and nothing is left changed that can be put back.

#include "host/Ledger.h"
#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

const std::string standup = list({event("09:00", "10:00")});

std::string lacking(const std::string& className) {
  return R"("faults": [{"class": ")" + className + R"(", "present": false}])";
}
std::string fault(const std::string& at, const std::string& what) { return step(at, "fault", ", " + what); }

const Change quietExceptMedia = [](PhoneState& s) { s.ringtone = 0.25F, s.doNotDisturb = true, s.icon = true; };

INSTANTIATE_TEST_SUITE_P(
    MissingClasses, Promises,
    ::testing::Values(
        Promise{"NoMediaVolume", day({.events = standup, .more = withAll, .phone = lacking("VolumeControl")})}.at(
            "09:30", quietExceptMedia),
        Promise{"NoTone", day({.events = standup, .more = withAll, .phone = lacking("TLAlert")})}.at("09:30",
                                                                                                     quietWithAll),
        Promise{"NoControlCenter",
                day({.events = standup, .more = withAll, .phone = lacking("CCUIModuleInstanceManager")})}
            .at("09:30", with(quiet, [](PhoneState& s) { s.icon = true; })),
        Promise{"NoOldControlCenter",
                day({.events = standup,
                     .more = withAll,
                     .phone = R"("systemVersion": "10.3", )" + lacking("SBControlCenterController")})}
            .at("09:30", with(quiet, [](PhoneState& s) { s.icon = true; })),
        Promise{"NoIcon", day({.events = standup, .more = withAll, .phone = lacking("LSStatusBarItem")})}.at(
            "09:30", with(quiet, [](PhoneState& s) { s.doNotDisturb = true; })),
        Promise{"NoLockScreen", day({.events = standup, .more = withAll, .phone = lacking("SpringBoard")})}.at(
            "09:30", quietWithAll),
        Promise{"NoBacklight", day({.events = standup, .more = withAll, .phone = lacking("SBBacklightController")})}.at(
            "09:30", quietWithAll),
        Promise{"NoWakeTimers", day({.events = standup,
                                     .steps = list({step("09:01", "plan"), step("10:01", "plan")}),
                                     .more = withAll,
                                     .phone = lacking("PCSimpleTimer")})}
            .at("09:30", quietWithAll)
            .at("10:30", asBefore),
        Promise{"MediaVolumeThatGoesAndComesBack",
                day({.events = standup,
                     .steps = list({fault("09:30", R"("class": "VolumeControl", "present": false)"),
                                    fault("11:00", R"("class": "VolumeControl", "present": true)")}),
                     .more = withAll})}
            .at("09:20", quietWithAll)
            .at("11:10", asBefore),
        Promise{"ControlCenterThatGoesAndComesBack",
                day({.events = standup,
                     .steps = list({fault("09:30", R"("class": "CCUIModuleInstanceManager", "present": false)"),
                                    fault("11:00", R"("class": "CCUIModuleInstanceManager", "present": true)")}),
                     .more = withAll})}
            .at("09:20", quietWithAll)
            .at("11:10", asBefore),
        Promise{"WakeTimersThatGoInTheMeeting",
                day({.events = standup,
                     .steps = list({fault("09:30", R"("class": "PCSimpleTimer", "present": false)"),
                                    step("10:01", "plan")}),
                     .more = withAll})}
            .at("09:40", quietWithAll)
            .at("10:30", asBefore)),
    nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    FailingServices, Promises,
    ::testing::Values(
        Promise{"RingtoneCannotBeSet", day({.events = standup,
                                            .more = withAll,
                                            .phone = R"("faults": [{"writes": "volume", "category": "Ringtone"}])"})}
            .at("09:30", with(quietWithAll, [](PhoneState& s) { s.ringtone = 0.8F; })),
        Promise{"RingtoneCannotBePutBackAtFirst",
                day({.events = standup,
                     .steps = list({fault("09:30", R"("writes": "volume", "category": "Ringtone")"),
                                    fault("11:00", R"("writes": "volume", "category": "Ringtone", "fail": false)")}),
                     .more = withAll})}
            .at("10:30", [](PhoneState& s) { s.ringtone = 0.25F; })
            .at("11:10", asBefore),
        Promise{"RingtoneCannotBeReadInTheMeeting",
                day({.events = standup,
                     .steps = list({fault("09:30", R"("reads": "volume", "category": "Ringtone")"),
                                    fault("09:40", R"("reads": "volume", "category": "Ringtone", "fail": false)")}),
                     .more = withAll})}
            .at("09:50", quietWithAll)
            .at("10:30", asBefore),
        Promise{"RingtoneCannotBeReadAtTheEnd",
                day({.events = standup,
                     .steps = list({fault("09:30", R"("reads": "volume", "category": "Ringtone")"),
                                    fault("11:00", R"("reads": "volume", "category": "Ringtone", "fail": false)")}),
                     .more = withAll})}
            .at("11:10", asBefore),
        Promise{"GeneralVolumeCannotBeRead", day({.events = standup,
                                                  .more = withAll,
                                                  .phone = R"("faults": [{"reads": "volume", "category": "Volume"}])"})}
            .at("09:30", quietWithAll),
        // As where the sound server starts after the host: nothing can be read or set before.
        Promise{"VolumesThatComeLate",
                day({.events = list({event("09:00", "10:00"), event("12:00", "13:00", "", "2")}),
                     .steps = list({fault("10:30", R"("reads": "volume", "category": "Ringtone", "fail": false)"),
                                    fault("10:30", R"("writes": "volume", "category": "Ringtone", "fail": false)")}),
                     .more = withAll,
                     .phone = R"("faults": [{"reads": "volume", "category": "Ringtone"},
                                            {"writes": "volume", "category": "Ringtone"}])"})}
            .at("12:30", quietWithAll)
            .at("13:10", asBefore)),
    nameOfPromise);

// Without a ledger nothing survives a death.
INSTANTIATE_TEST_SUITE_P(
    FailingFiles, LongPromises,
    ::testing::Values(Promise{"NoFileCanBeWritten",
                              day({.events = standup, .more = withAll, .phone = R"("faults": [{"writes": "files"}])"})}
                          .at("09:30", quietWithAll)
                          .at("10:30", asBefore),
                      Promise{"NoFileCanBeWrittenInTheMeeting",
                              day({.events = standup,
                                   .steps = list({fault("09:30", R"("writes": "files")"),
                                                  fault("11:00", R"("writes": "files", "fail": false)")}),
                                   .more = withAll})}
                          .at("09:40", quietWithAll)
                          .at("10:30", asBefore)),
    nameOfPromise);

/// The ringtone's service comes in the meeting, and the host is told.
TEST(LateServices, AreAssertedAndLedBackToWhatTheyShowed) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.prepare.emplace_back([](devices::SimulatedPhone& phone) {
    phone.sound().setReadFails("Ringtone", true);
    phone.sound().setWriteFails("Ringtone", true);
    phone.classes().removeClass("VolumeControl");
    phone.classes().removeClass("CCUIModuleInstanceManager");
  });
  const auto come = [](Simulation& simulation) {
    devices::SimulatedPhone& phone = simulation.phone();
    phone.sound().setReadFails("Ringtone", false);
    phone.sound().setWriteFails("Ringtone", false);
    phone.classes().restoreClass("VolumeControl");
    phone.classes().restoreClass("CCUIModuleInstanceManager");
    hostOf(simulation).serviceReturned();
  };
  scenario.steps.push_back({*parseTime("2024-05-14T09:30", *scenario.zone), come});
  const std::vector<Moment> moments{{"09:20", [](PhoneState& s) { s.icon = true; }}, {"09:31", quietWithAll}};
  const Life life = live(scenario, moments);
  for (std::size_t i = 0; i < moments.size(); ++i) {
    PhoneState wanted = life.before;
    moments[i].wanted(wanted);
    EXPECT_EQ(life.moments[i], wanted) << "at " << moments[i].at << differenceText(wanted, life.moments[i]);
  }
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

TEST(LateServices, ThatComeAfterTheMeetingAreNotTouched) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.prepare.emplace_back([](devices::SimulatedPhone& phone) {
    phone.sound().setReadFails("Ringtone", true);
    phone.sound().setWriteFails("Ringtone", true);
  });
  scenario.steps.push_back({*parseTime("2024-05-14T10:30", *scenario.zone), [](Simulation& simulation) {
                              simulation.phone().sound().setReadFails("Ringtone", false);
                              simulation.phone().sound().setWriteFails("Ringtone", false);
                              hostOf(simulation).serviceReturned();
                            }});
  const Life life = live(scenario);
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

// --- The ledger's file ---

struct LedgerCase {
  const char* name;
  platform::Array content;
};
std::ostream& operator<<(std::ostream& out, const LedgerCase& each) { return out << each.name; }

class LedgersFullOfNonsense : public ::testing::TestWithParam<LedgerCase> {};

TEST_P(LedgersFullOfNonsense, DoNoHarm) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.prepare.emplace_back(
      [](devices::SimulatedPhone& phone) { phone.files().memory().set(host::Ledger::path, GetParam().content); });
  const Life life = live(scenario, {{"08:00", asBefore}, {"09:30", quietWithAll}});
  EXPECT_EQ(life.moments[0], life.before) << differenceText(life.before, life.moments[0]);
  PhoneState wanted = life.before;
  quietWithAll(wanted);
  EXPECT_EQ(life.moments[1], wanted) << differenceText(wanted, life.moments[1]);
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

platform::Array entry(platform::Dictionary dictionary) {
  platform::Array array;
  array.emplace_back(std::move(dictionary));
  return array;
}

INSTANTIATE_TEST_SUITE_P(Such, LedgersFullOfNonsense,
                         ::testing::Values(LedgerCase{"Empty", {}}, LedgerCase{"AText", platform::Array{"nonsense"}},
                                           LedgerCase{"AnEmptyEntry", entry({})},
                                           LedgerCase{"OtherTypes", entry({{"ringtone", "0.8"},
                                                                           {"media", true},
                                                                           {"ringVibrate", 1},
                                                                           {"silentVibrate", "yes"},
                                                                           {"doNotDisturb", 0.5},
                                                                           {"ringtonesSet", "0.25"},
                                                                           {"mediasSet", platform::Dictionary{}},
                                                                           {"doNotDisturbSet", 1},
                                                                           {"byHand", 3}})},
                                           LedgerCase{"OutOfRange",
                                                      entry({{"ringtone", 7.5},
                                                             {"media", -1.0},
                                                             {"ringtonesSet", platform::Array{-3.0, "x", 0.8}},
                                                             {"mediasSet", platform::Array{0.5}}})}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Ledger, OfAnEarlierLifeIsFinishedAtTheStart) {
  Scenario scenario = scenarioOf(day({}));
  scenario.prepare.emplace_back([](devices::SimulatedPhone& phone) {
    phone.sound().setVolume("Ringtone", 0.25F);
    phone.sound().setMediaVolume(0.9F);
    phone.controlCenter().setDoNotDisturb(true);
    phone.files().memory().set(host::Ledger::path, entry({{"ringtone", 0.8},
                                                          {"media", 0.5},
                                                          {"ringVibrate", true},
                                                          {"silentVibrate", true},
                                                          {"doNotDisturb", false},
                                                          {"ringtonesSet", platform::Array{0.25}},
                                                          {"mediasSet", platform::Array{0.125}},
                                                          {"doNotDisturbSet", true}}));
  });
  const Life life = live(scenario, {{"00:00", asBefore}});
  for (const PhoneState& state : {life.moments[0], life.end}) {
    EXPECT_FLOAT_EQ(*state.ringtone, 0.8) << "as the ledger says";
    EXPECT_FLOAT_EQ(*state.media, 0.9) << "no profile has set this";
    EXPECT_FALSE(*state.doNotDisturb);
  }
}

TEST(Ledger, ThatCannotBeReadIsSaidAndReplaced) {
  Scenario scenario = scenarioOf(day({.events = standup, .more = withAll}));
  scenario.prepare.emplace_back([](devices::SimulatedPhone& phone) {
    phone.files().memory().set(host::Ledger::path, platform::Dictionary{{"ringtone", 0.1}});
  });
  const Life life = live(scenario);
  ASSERT_EQ(life.complaints.size(), 1U) << ::testing::PrintToString(life.complaints);
  EXPECT_NE(life.complaints[0].find("cannot be read"), std::string::npos);
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

/// A library without this host has applied a profile, and was killed; what it saved is what was found.
TEST(Ledger, IsOpenedForWhatAnotherHostHasLeftApplied) {
  Scenario scenario = scenarioOf(day({.more = withAll + R"(, "applied": true)"}));
  scenario.prepare.emplace_back([](devices::SimulatedPhone& phone) {
    phone.sound().setVolume("Ringtone", 0.25F);
    phone.sound().setMediaVolume(0.125F);
    phone.defaults().standard() = {{"com.quorvel.hushmode-ringtone", 0.7},
                                   {"com.quorvel.hushmode-playBackVolume", 0.6},
                                   {"com.quorvel.hushmode-ring-vibrate", true},
                                   {"com.quorvel.hushmode-silent-vibrate", false}};
  });
  const Life life = live(scenario);
  EXPECT_FLOAT_EQ(*life.end.ringtone, 0.7);
  EXPECT_FLOAT_EQ(*life.end.media, 0.6);
  EXPECT_TRUE(*life.end.ringVibrate);
  EXPECT_FALSE(*life.end.silentVibrate);
}

TEST(Ledger, ThatCannotBeWrittenIsSaidOnce) {
  const Life life = live(scenarioOf(day({.events = list({event("09:00", "10:00"), event("11:00", "12:00", "", "2")}),
                                         .phone = R"("faults": [{"writes": "files"}])"})));
  EXPECT_EQ(std::count_if(life.complaints.begin(), life.complaints.end(),
                          [](const std::string& line) { return line.find("noted on disk") != std::string::npos; }),
            1)
      << ::testing::PrintToString(life.complaints);
}

}  // namespace
}  // namespace hushmode::simulation
