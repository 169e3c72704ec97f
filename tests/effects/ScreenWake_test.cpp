// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The light of the screen at a switch, and its end.

#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

struct ScreenWake : EffectsTest {
  ScreenWake() { work->setWakeUpScreen(true); }
};

TEST_F(ScreenWake, HappensOnlyForAProfileThatAsksForItAndIsNotSilent) {
  for (const char* version : {"9.3", "13.1"}) {
    phone.uiKit().setSystemVersion(version);
    for (const bool wakes : {false, true}) {
      for (const bool silent : {false, true}) {
        SCOPED_TRACE(testing::Message() << version << " wakes " << wakes << " silent " << silent);
        work->setWakeUpScreen(wakes);
        work->setSilent(silent);
        phone.screen().setOn(false);
        work->wakeUpScreenIfRequired();
        EXPECT_EQ(phone.screen().isOn(), wakes && !silent);
        runFor(60);
      }
    }
  }
}

TEST_F(ScreenWake, LightsADarkScreenAndLetsItGoDarkFiveSecondsLater) {
  const struct {
    const char *version, *lit, *dark;
  } cases[] = {
      {"8.4", "fx _undimFromSource:1", "fx _lockScreenDimTimerFired"},
      {"9.3.5", "fx _undimFromSource:1", "fx _lockScreenDimTimerFired"},
      {"10.0", "fx turnOnScreenFullyWithBacklightSource:1", "fx _setBacklightFactorToZeroForProx"},
      {"11.4", "fx turnOnScreenFullyWithBacklightSource:1", "fx _setBacklightFactorToZeroForProx"},
      {"12.4", "fx turnOnScreenFullyWithBacklightSource:1", "fx _setBacklightFactorToZeroForProx"},
      {"13.1.2", "fx turnOnScreenFullyWithBacklightSource:1", "fx _setBacklightFactorToZeroForProx"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.version);
    phone.uiKit().setSystemVersion(each.version);
    clearRecord();
    work->wakeUpScreenIfRequired();
    runFor(4.9);
    EXPECT_EQ(texts(), Texts{each.lit});
    runFor(0.1);
    EXPECT_EQ(texts(), (Texts{each.lit, each.dark}));
  }
}

TEST_F(ScreenWake, LightsAScreenThatIsOnAgainAndLeavesItOn) {
  phone.screen().setOn(true);
  work->wakeUpScreenIfRequired();
  runFor(60);
  EXPECT_EQ(texts(), Texts{"fx turnOnScreenFullyWithBacklightSource:1"});
  EXPECT_TRUE(phone.screen().isOn());
}

TEST_F(ScreenWake, BelowTenDimsAlsoAScreenThatWasOn) {
  phone.uiKit().setSystemVersion("9.3.5");
  phone.screen().setOn(true);
  work->wakeUpScreenIfRequired();
  runFor(5);
  EXPECT_EQ(texts(), (Texts{"fx _undimFromSource:1", "fx _lockScreenDimTimerFired"}));
}

TEST_F(ScreenWake, UsesTheOperationsThatTheScreenAnswers) {
  const struct {
    const char* name;
    std::vector<const char*> absent;
    Texts expected;
  } cases[] = {
      {"no full light",
       {"turnOnScreenFullyWithBacklightSource:"},
       {"fx setBacklightFactor:1.000000 source:1", "fx _setBacklightFactorToZeroForProx"}},
      {"no zero factor",
       {"_setBacklightFactorToZeroForProx"},
       {"fx turnOnScreenFullyWithBacklightSource:1", "fx _startFadeOutAnimationFromLockSource:1"}},
      {"no way to go dark",
       {"_setBacklightFactorToZeroForProx", "_startFadeOutAnimationFromLockSource:"},
       {"fx turnOnScreenFullyWithBacklightSource:1"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    for (const char* selector : each.absent) phone.classes().removeSelector("SBBacklightController", selector);
    phone.screen().setOn(false);
    clearRecord();
    work->wakeUpScreenIfRequired();
    runFor(60);
    EXPECT_EQ(texts(), each.expected);
    for (const char* selector : each.absent) phone.classes().restoreSelector("SBBacklightController", selector);
  }
}

TEST_F(ScreenWake, WithoutTheBacklightsClassDoesNothingNowAndLater) {
  phone.classes().removeClass("SBBacklightController");
  for (const char* version : {"9.3", "13.1"}) {
    phone.uiKit().setSystemVersion(version);
    work->wakeUpScreenIfRequired();
    runFor(60);
    EXPECT_EQ(texts(), Texts()) << version;
  }
}

TEST_F(ScreenWake, ASecondOneDoesNotPutTheDarkeningOff) {
  work->wakeUpScreenIfRequired();
  runFor(3);
  work->wakeUpScreenIfRequired();
  runFor(2);
  EXPECT_FALSE(phone.screen().isOn());
}

}  // namespace
}  // namespace hushmode
