// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/ControlCenter.h"
#include "platform/MobileTimer.h"
#include "platform/PersistentConnection.h"
#include "platform/SpringBoard.h"
#include "platform/StatusBar.h"
#include "platform/ToneLibrary.h"
#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using platform::SBBacklightController;
using platform::TLAlert;
using Texts = std::vector<std::string>;

TEST_F(PhoneFixture, AnyClassCanBeTakenAwayAndGivenBack) {
  for (const char* name : {"PCSimpleTimer", "TLAlert", "SpringBoard", "VolumeControl", "SBBacklightController",
                           "CCUIModuleInstanceManager", "CCUIButtonModuleView", "AlarmManager"}) {
    SCOPED_TRACE(name);
    EXPECT_NE(phone.classNamed(name), nullptr);
    phone.classes().removeClass(name);
    EXPECT_EQ(phone.classNamed(name), nullptr);
    phone.classes().restoreClass(name);
    EXPECT_NE(phone.classNamed(name), nullptr);
  }
  EXPECT_EQ(phone.classNamed("NoSuchClass"), nullptr);
  EXPECT_THROW(phone.classes().removeClass("NoSuchClass"), std::invalid_argument);
}

TEST_F(PhoneFixture, EachSystemVersionHasItsOwnControlCenterClasses) {
  const struct {
    const char* name;
    const char* firstVersion;
    const char* lastVersion;
  } classes[] = {
      {"SBControlCenterController", "9", "10"},      {"SBCCSettingsSectionController", "9", "9"},
      {"SBCCDoNotDisturbSetting", "9", "9"},         {"CCUISystemControlsPageViewController", "10", "10"},
      {"CCUISettingsSectionController", "10", "10"}, {"CCUIDoNotDisturbSetting", "10", "10"},
      {"CCUIModuleInstanceManager", "11", "13"},     {"CCUIButtonModuleView", "11", "13"},
  };
  for (const auto& each : classes) {
    for (int version = 9; version <= 13; ++version) {
      SCOPED_TRACE(std::string(each.name) + " on " + std::to_string(version));
      phone.uiKit().setSystemVersion(std::to_string(version) + ".3.5");
      const bool expected = version >= std::stoi(each.firstVersion) && version <= std::stoi(each.lastVersion);
      EXPECT_EQ(phone.classNamed(each.name) != nullptr, expected);
    }
  }
}

TEST_F(PhoneFixture, SelectorsAreNamedByTheirFirstKeyword) {
  const auto backlight = platform::find<SBBacklightController>()->sharedInstance();
  EXPECT_TRUE(backlight->respondsTo("turnOnScreenFullyWithBacklightSource:"));
  phone.classes().removeSelector("SBBacklightController", "turnOnScreenFullyWithBacklightSource");
  EXPECT_FALSE(backlight->respondsTo("turnOnScreenFullyWithBacklightSource:"));
  EXPECT_FALSE(backlight->respondsTo("turnOnScreenFullyWithBacklightSource"));
  EXPECT_TRUE(backlight->respondsTo("setBacklightFactor:source:"));
  phone.classes().restoreSelector("SBBacklightController", "turnOnScreenFullyWithBacklightSource:");
  EXPECT_TRUE(backlight->respondsTo("turnOnScreenFullyWithBacklightSource:"));
}

TEST_F(PhoneFixture, ASelectorThatWasTakenAwayCannotBeSent) {
  const auto backlight = platform::find<SBBacklightController>()->sharedInstance();
  for (const char* selector : {"screenIsOn", "setBacklightFactor", "_setBacklightFactorToZeroForProx"}) {
    phone.classes().removeSelector("SBBacklightController", selector);
  }
  EXPECT_THROW(backlight->screenIsOn(), std::logic_error);
  EXPECT_THROW(backlight->setBacklightFactor(1, 1), std::logic_error);
  EXPECT_THROW(backlight->_setBacklightFactorToZeroForProx(), std::logic_error);
  EXPECT_EQ(texts(), Texts()) << "and leaves no trace";
}

TEST_F(PhoneFixture, WaysToPlayAToneCanBeTakenAwayOneByOne) {
  auto* alerts = platform::find<TLAlert>();
  const auto alert = alerts->initWithType(1, "tone", std::nullopt);
  const struct {
    const char* selector;
    const platform::Object& receiver;
  } ways[] = {
      {"startPlayingRepeatedly", *alert},
      {"stop", *alert},
      {"playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:", *alerts},
      {"_playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:shouldOverrideMasterSwitches:", *alerts},
  };
  for (const auto& each : ways) {
    SCOPED_TRACE(each.selector);
    EXPECT_TRUE(each.receiver.respondsTo(each.selector));
    phone.classes().removeSelector("TLAlert", each.selector);
    EXPECT_FALSE(each.receiver.respondsTo(each.selector));
  }
}

TEST_F(PhoneFixture, TheScreenFollowsEveryOperation) {
  const auto backlight = platform::find<SBBacklightController>()->sharedInstance();
  const auto expectOn = [&](bool on) {
    EXPECT_EQ(phone.screen().isOn(), on);
    EXPECT_EQ(backlight->screenIsOn(), on);
  };
  expectOn(false);
  backlight->turnOnScreenFullyWithBacklightSource(1);
  expectOn(true);
  backlight->_setBacklightFactorToZeroForProx();
  expectOn(false);
  backlight->setBacklightFactor(1.0, 1);
  expectOn(true);
  backlight->_startFadeOutAnimationFromLockSource(1);
  expectOn(false);
  backlight->_undimFromSource(1);
  expectOn(true);
  backlight->_lockScreenDimTimerFired();
  expectOn(false);
  EXPECT_EQ(texts(), (Texts{
                         "fx turnOnScreenFullyWithBacklightSource:1",
                         "fx _setBacklightFactorToZeroForProx",
                         "fx setBacklightFactor:1.000000 source:1",
                         "fx _startFadeOutAnimationFromLockSource:1",
                         "fx _undimFromSource:1",
                         "fx _lockScreenDimTimerFired",
                     }));
}

TEST_F(PhoneFixture, TheLockIsTheUsers) {
  const auto application = platform::find<platform::SpringBoard>()->sharedApplication();
  EXPECT_FALSE(application->isLocked());
  phone.screen().lock();
  EXPECT_TRUE(application->isLocked());
  phone.screen().unlock();
  EXPECT_FALSE(application->isLocked());
  EXPECT_EQ(texts(), (Texts{"phone lock", "phone unlock"}));
}

TEST_F(PhoneFixture, TheStatusBarHasItsClassOnceTheLibraryIsLoaded) {
  EXPECT_EQ(platform::find<platform::LSStatusBarItem>(), nullptr);
  phone.foundation().setLoads(devices::SimulatedStatusBar::libraryPath, false);
  EXPECT_FALSE(phone.coreFoundation().dlopen(devices::SimulatedStatusBar::libraryPath, 2));
  EXPECT_EQ(platform::find<platform::LSStatusBarItem>(), nullptr);
  phone.foundation().setLoads(devices::SimulatedStatusBar::libraryPath, true);
  EXPECT_TRUE(phone.coreFoundation().dlopen(devices::SimulatedStatusBar::libraryPath, 2));
  clearRecord();
  const auto item = platform::find<platform::LSStatusBarItem>()->initWithIdentifier("com.quorvel.hushmode", 2);
  EXPECT_TRUE(phone.statusBar().isIconVisible());
  item->setImageName("Profile");
  item->setVisible(false);
  EXPECT_FALSE(phone.statusBar().isIconVisible());
  EXPECT_EQ(phone.statusBar().icon()->image, "Profile");
  EXPECT_EQ(phone.statusBar().icon()->alignment, 2);
  EXPECT_EQ(texts(), (Texts{"fx statusBarItem initWithIdentifier:com.quorvel.hushmode alignment:2",
                            "fx statusBarItem setImageName:Profile", "fx statusBarItem setVisible:false"}));
}

TEST_F(PhoneFixture, AlarmsAreSeenOnceLoadedAndAnswerTheTitlesThatExist) {
  phone.alarms().setStored({"Wake up", "Tea", "Tea"});
  const auto manager = platform::find<platform::AlarmManager>()->sharedManager();
  EXPECT_TRUE(manager->alarms().empty());
  manager->loadAlarms();
  const auto alarms = manager->alarms();
  ASSERT_EQ(alarms.size(), 3U);
  phone.classes().removeSelector(devices::SimulatedAlarms::alarmClassName, "title");
  EXPECT_FALSE(alarms[0]->respondsTo("title"));
  EXPECT_TRUE(alarms[0]->respondsTo("rawTitle"));
  EXPECT_THROW(alarms[0]->title(), std::logic_error);
  EXPECT_EQ(alarms[0]->uiTitle(), "Wake up");
  manager->removeAlarm(alarms[1]);
  manager->removeAlarm(alarms[1]);
  EXPECT_EQ(phone.alarms().stored(), (Texts{"Wake up", "Tea"}));
  EXPECT_EQ(manager->alarms(), (std::vector{alarms[0], alarms[2]}));
  EXPECT_EQ(texts(), (Texts{"fx loadAlarms", "fx removeAlarm title=\"Tea\"", "fx removeAlarm title=\"Tea\" (failed)"}));
}

}  // namespace
}  // namespace hushmode
