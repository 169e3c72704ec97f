// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The phone's two vibrate switches, and the short vibration as feedback.

#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;

const std::string feedback = "fx vibration feedback (4095)";
const std::string ringChanged = "darwin com.apple.springboard.ring-vibrate.changed";
const std::string silentChanged = "darwin com.apple.springboard.silent-vibrate.changed";

struct Vibration : EffectsTest {
  void setSwitches(bool ring, bool silent) {
    homeScreenDomain().set("ring-vibrate", ring);
    homeScreenDomain().set("silent-vibrate", silent);
  }
  /// "ring silent" as 1 and 0, of the phone's switches.
  std::string switches() {
    const auto text = [&](const char* key) { return homeScreenDomain().find(key)->as<bool>()[0] ? "1" : "0"; };
    return std::string(text("ring-vibrate")) + " " + text("silent-vibrate");
  }
  void forgetSaved() {
    phone.defaults().standard().remove("com.quorvel.hushmode-ring-vibrate");
    phone.defaults().standard().remove("com.quorvel.hushmode-silent-vibrate");
  }
};

TEST_F(Vibration, SwitchesAndSavesAndVibratesAccordingToWhatItFinds) {
  const struct {
    const char* name;
    bool on, profileVibrates;
    bool ring, silent;
    bool vibrates;
    const char *saved, *atOnce, *later;
  } cases[] = {
      {"on, ring on", true, true, true, false, true, "1 0", "1 0", "1 0"},
      {"on, ring on, both on", true, true, true, true, true, "1 1", "1 1", "1 1"},
      {"on, ring on, profile does not vibrate", true, false, true, false, true, "1 0", "1 0", "1 0"},
      {"on, ring off", true, true, false, false, false, "none", "1 1", "1 1"},
      {"on, only silent on", true, true, false, true, false, "none", "1 1", "1 1"},
      {"off, ring on, profile vibrates", false, true, true, false, true, "1 0", "0 0", "1 0"},
      {"off, both on, profile vibrates", false, true, true, true, true, "1 1", "0 0", "1 1"},
      {"off, ring on, profile does not vibrate", false, false, true, true, false, "1 1", "0 0", "0 0"},
      {"off, ring off", false, true, false, false, false, "none", "0 0", "0 0"},
      {"off, only silent on", false, true, false, true, false, "none", "0 0", "0 0"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    forgetSaved();
    setSwitches(each.ring, each.silent);
    work->setVibrate(each.profileVibrates);
    clearRecord();
    work->vibrate(each.on);
    EXPECT_EQ(count(feedback), each.vibrates ? 1 : 0);
    const auto text = [&](const char* key) { return saved(key) ? (*saved(key)->as<bool>() ? "1" : "0") : "none"; };
    const std::string ring = text("ring-vibrate"), silent = text("silent-vibrate");
    EXPECT_EQ(ring == "none" && silent == "none" ? "none" : ring + " " + silent, each.saved);
    EXPECT_EQ(switches(), each.atOnce);
    runFor(60);
    EXPECT_EQ(switches(), each.later);
    EXPECT_EQ(count(feedback), each.vibrates ? 1 : 0) << "the write-back does not vibrate";
  }
}

TEST_F(Vibration, SwitchingOffAndBackIsWrittenAndAnnouncedInOrder) {
  work->setVibrate(true);
  work->vibrate(false);
  EXPECT_EQ(
      texts(),
      (Texts{asterisks, "log I oldRingVibrateState: 1", asterisks, feedback,
             "def set \"com.quorvel.hushmode-ring-vibrate\" = true",
             "def set \"com.quorvel.hushmode-silent-vibrate\" = false", "def synchronize", asterisks,
             "log I changeVibrateStatus() is called", asterisks,
             "fx springboard domain ring-vibrate=false silent-vibrate=false", ringChanged, silentChanged, asterisks,
             "log I shouldRevertStatus, hence oldHMRingVibrateState: 1 & oldHMSilentVibrateState: 0", asterisks}));
  clearRecord();
  runFor(0.29);
  EXPECT_EQ(texts(), Texts());
  runFor(0.01);
  EXPECT_EQ(texts(),
            (Texts{"fx springboard domain ring-vibrate=true silent-vibrate=false", ringChanged, silentChanged}));
}

TEST_F(Vibration, SwitchingOnWhereRingIsOffLogsAndAnnouncesAndSavesNothing) {
  setSwitches(false, true);
  work->vibrate(true);
  EXPECT_EQ(
      texts(),
      (Texts{asterisks, "log I oldRingVibrateState: 0", asterisks, asterisks, "log I changeVibrateStatus() is called",
             asterisks, "fx springboard domain ring-vibrate=true silent-vibrate=true", ringChanged, silentChanged}));
}

TEST_F(Vibration, WritesBackWhatAnEarlierCallFoundAndSavesWhatThisOneFinds) {
  save("ring-vibrate", false);
  save("silent-vibrate", true);
  work->setVibrate(true);
  work->vibrate(false);
  EXPECT_EQ(count("log I shouldRevertStatus, hence oldHMRingVibrateState: 0 & oldHMSilentVibrateState: 1"), 1);
  EXPECT_EQ(saved("ring-vibrate"), Value(true));
  EXPECT_EQ(saved("silent-vibrate"), Value(false));
  runFor(0.3);
  EXPECT_EQ(switches(), "0 1");
}

TEST_F(Vibration, EachSavedSwitchStandsAlone) {
  save("silent-vibrate", true);
  work->setVibrate(true);
  work->vibrate(false);
  runFor(0.3);
  EXPECT_EQ(switches(), "1 1");
}

TEST_F(Vibration, TheLabelledOldStateIsThePresentOne) {
  save("ring-vibrate", true);
  setSwitches(false, false);
  work->vibrate(false);
  EXPECT_EQ(count("log I oldRingVibrateState: 0"), 1);
}

TEST_F(Vibration, APhoneWithVibrateOffEndsWithItOnAfterAVibratingProfile) {
  setSwitches(false, false);
  work->setVibrate(true);
  work->vibrate(true);
  EXPECT_EQ(switches(), "1 1");
  work->vibrate(false);
  runFor(60);
  EXPECT_EQ(switches(), "1 1") << "what the revert found was the profile's own doing";
}

TEST_F(Vibration, OtherSettingsOfTheHomeScreenAreKept) {
  homeScreenDomain().set("other", 1);
  work->vibrate(false);
  EXPECT_EQ(*homeScreenDomain().find("other"), Value(1));
}

TEST_F(Vibration, TheWriteBackIsOfTheSettingsAsReadAndOverwritesWhatChangedMeanwhile) {
  homeScreenDomain().set("other", 1);
  work->setVibrate(true);
  work->vibrate(false);
  homeScreenDomain().set("other", 2);
  homeScreenDomain().set("new", true);
  runFor(0.3);
  EXPECT_EQ(*homeScreenDomain().find("other"), Value(1));
  EXPECT_FALSE(homeScreenDomain().find("new"));
}

TEST_F(Vibration, AMissingDomainAndMissingSwitchesReadAsOff) {
  phone.defaults().domains().clear();
  work->vibrate(false);
  EXPECT_EQ(count("log I oldRingVibrateState: 0"), 1);
  EXPECT_EQ(switches(), "0 0");
  homeScreenDomain() = {{"ring-vibrate", true}};
  work->vibrate(true);
  EXPECT_EQ(saved("silent-vibrate"), Value(false));
}

TEST_F(Vibration, TheFeedbackIsOnePulseOfThreeHundredMillisecondsAtFullIntensity) {
  work->vibrate(true);
  const auto& entries = phone.record().entries();
  const auto pulse =
      std::find_if(entries.begin(), entries.end(), [](const auto& each) { return each.text() == feedback; });
  ASSERT_NE(pulse, entries.end());
  const Dictionary expected{{"VibePattern", Array{true, 300.0}}, {"Intensity", 1.0}};
  EXPECT_EQ(*pulse->fields.find("pattern"), Value(expected));
  EXPECT_EQ(*pulse->fields.find("soundID"), Value(4095));
}

TEST_F(Vibration, ARevertNeverRemovesTheSavedSwitches) {
  work->setVibrate(true);
  work->apply();
  work->revert();
  runFor(60);
  EXPECT_EQ(saved("ring-vibrate"), Value(true));
  EXPECT_EQ(saved("silent-vibrate"), Value(false));
}

TEST_F(Vibration, TheWriteBackIsNotCancelledByAnApplyThatFollowsAtOnce) {
  setSwitches(true, false);
  work->setVibrate(true);
  work->revert();
  EXPECT_EQ(switches(), "0 0");
  work->apply();
  EXPECT_EQ(switches(), "1 1");
  runFor(0.3);
  EXPECT_EQ(switches(), "1 0");
}

}  // namespace
}  // namespace hushmode
