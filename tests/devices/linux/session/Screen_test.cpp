// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/Screen.h"

#include "tests/devices/linux/session/MockedLogind.h"
#include "tests/devices/linux/session/MockedScreens.h"
#include "tests/support/ServiceReports.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

class ScreenTest : public ::testing::Test {
 protected:
  void begin(std::chrono::milliseconds limit = BusClient::answerLimit) {
    screen.emplace(connectTo("session"), logind, reports.services, limit);
  }
  std::shared_ptr<platform::SBBacklightController> backlight() { return screen->backlightClass().sharedInstance(); }
  bool isLocked() { return screen->springBoardClass().sharedApplication()->isLocked(); }
  void light() { backlight()->turnOnScreenFullyWithBacklightSource(1); }
  void fade() { backlight()->_startFadeOutAnimationFromLockSource(1); }
  bool untilReported(const std::string& line) {
    runUntil([&] { return !reports.lines.empty() && reports.lines.back() == line; });
    return !reports.lines.empty() && reports.lines.back() == line;
  }
  bool untilPower(MockedMutter& mutter, int power) {
    return runUntil([&] { return mutter.power() == power; });
  }

  Services logindServices;
  Logind logind{Glib::RefPtr<Gio::DBus::Connection>(), logindServices, "", {}};
  ServiceReports reports;
  std::optional<Screen> screen;
};

const std::string byMutter = "screen: there, Mutter", bySaver = "screen: there, org.freedesktop.ScreenSaver",
                  byNothing = "screen: away, neither Mutter nor a screen saver lights it";

TEST_F(ScreenTest, AnswersToExactlyWhatMutterCanDo) {
  MockedMutter mutter(3);
  begin();
  ASSERT_TRUE(untilReported(byMutter));
  for (const char* selector :
       {"screenIsOn", "turnOnScreenFullyWithBacklightSource:", "setBacklightFactor:source:", "_undimFromSource:",
        "_startFadeOutAnimationFromLockSource:", "_lockScreenDimTimerFired"}) {
    EXPECT_TRUE(backlight()->respondsTo(selector)) << selector;
  }
  EXPECT_FALSE(backlight()->respondsTo("_setBacklightFactorToZeroForProx"));
}

TEST_F(ScreenTest, GoesBackToThePowerThatItHad) {
  MockedMutter mutter(MutterDisplay::Suspend);
  begin();
  ASSERT_TRUE(untilReported(byMutter));
  light();
  ASSERT_TRUE(untilPower(mutter, MutterDisplay::On));
  fade();
  EXPECT_TRUE(untilPower(mutter, MutterDisplay::Suspend));
}

TEST_F(ScreenTest, EveryWayToLightAndToPutOutMeansTheSame) {
  MockedMutter mutter(3);
  begin();
  ASSERT_TRUE(untilReported(byMutter));
  backlight()->setBacklightFactor(1.0, 1);
  ASSERT_TRUE(untilPower(mutter, 0));
  backlight()->setBacklightFactor(0.0, 1);
  ASSERT_TRUE(untilPower(mutter, 3));
  backlight()->_undimFromSource(1);
  ASSERT_TRUE(untilPower(mutter, 0));
  backlight()->_lockScreenDimTimerFired();
  EXPECT_TRUE(untilPower(mutter, 3));
}

TEST_F(ScreenTest, LeavesAScreenLitThatSomebodyElseLitOrDimmed) {
  MockedMutter mutter(0);
  begin();
  ASSERT_TRUE(untilReported(byMutter));
  light();
  fade();
  EXPECT_TRUE(backlight()->screenIsOn()) << "it was on before";
  mutter.setPower(3);
  ASSERT_TRUE(runUntil([&] { return !backlight()->screenIsOn(); }));
  light();
  mutter.setPower(1);
  ASSERT_TRUE(runUntil([&] { return !backlight()->screenIsOn(); }));
  mutter.setPower(0);
  ASSERT_TRUE(runUntil([&] { return backlight()->screenIsOn(); }));
  fade();
  EXPECT_TRUE(backlight()->screenIsOn()) << "the user switched it off and on meanwhile";
}

TEST_F(ScreenTest, LeavesAScreenLitThatWasUnlockedMeanwhile) {
  MockedLogind mockedLogind;
  mockedLogind.setLocked(true);
  Services services;
  const Logind session(connectTo("system"), services, "1", {});
  MockedMutter mutter(3);
  screen.emplace(connectTo("session"), session, reports.services);
  ASSERT_TRUE(untilReported(byMutter));
  ASSERT_TRUE(runUntil([&] { return isLocked(); }));
  light();
  mockedLogind.setLocked(false);
  ASSERT_TRUE(runUntil([&] { return !isLocked(); }));
  fade();
  EXPECT_TRUE(backlight()->screenIsOn());
}

TEST_F(ScreenTest, IsLitThroughTheScreenSaverWhereThereIsNoMutter) {
  MockedScreenSaver saver(true);
  begin();
  ASSERT_TRUE(untilReported(bySaver));
  ASSERT_TRUE(runUntil([&] { return isLocked(); }));
  EXPECT_FALSE(backlight()->screenIsOn());
  EXPECT_TRUE(backlight()->respondsTo("turnOnScreenFullyWithBacklightSource:"));
  EXPECT_FALSE(backlight()->respondsTo("_startFadeOutAnimationFromLockSource:"));
  EXPECT_FALSE(backlight()->respondsTo("_setBacklightFactorToZeroForProx"));
  light();
  EXPECT_TRUE(backlight()->screenIsOn());
  fade();
  ASSERT_TRUE(runUntil([&] { return saver.activities() == 1; }));
  saver.setActive(false);
  ASSERT_TRUE(runUntil([&] { return !isLocked(); }));
  saver.setActive(true);
  ASSERT_TRUE(runUntil([&] { return isLocked(); }));
  EXPECT_FALSE(backlight()->screenIsOn());
  EXPECT_EQ(saver.activities(), 1U);
  EXPECT_EQ(saver.service().callsOf(MockedScreenSaver::path, "SetActive"), 0U);
}

TEST_F(ScreenTest, IsLitThroughAScreenSaverThatTellsNothing) {
  MockedScreenSaver saver;
  saver.service().answer(MockedScreenSaver::path, MockedScreenSaver::name, "GetActive", "", "b",
                         "raise dbus.exceptions.DBusException('not here', name='org.example.No')");
  begin();
  ASSERT_TRUE(untilReported(bySaver));
  light();
  ASSERT_TRUE(runUntil([&] { return saver.activities() == 1; }));
  EXPECT_FALSE(isLocked());
}

TEST_F(ScreenTest, AsksAScreenSaverAgainThatDidNotAnswer) {
  MockedScreenSaver saver(true);
  saver.service().hang();
  begin(200ms);
  ASSERT_TRUE(untilReported(bySaver));
  // Longer than its answer is waited for: only a later question tells.
  EXPECT_FALSE(runUntil([&] { return isLocked(); }, 400ms));
  saver.service().goOn();
  EXPECT_TRUE(runUntil([&] { return isLocked(); }));
}

TEST_F(ScreenTest, RestsWhereThereIsNeither) {
  begin();
  ASSERT_TRUE(untilReported(byNothing));
  light();
  backlight()->setBacklightFactor(1.0, 1);
  fade();
  EXPECT_FALSE(backlight()->screenIsOn());
  EXPECT_FALSE(backlight()->respondsTo("turnOnScreenFullyWithBacklightSource:"));
  EXPECT_FALSE(isLocked());
}

TEST_F(ScreenTest, RestsWithoutABus) {
  screen.emplace(Glib::RefPtr<Gio::DBus::Connection>(), logind, reports.services);
  EXPECT_EQ(reports.lines, Texts{byNothing});
}

TEST_F(ScreenTest, FallsBackToTheScreenSaverWhileMutterIsAway) {
  MockedMutter mutter(3);
  MockedScreenSaver saver;
  begin();
  ASSERT_TRUE(untilReported(byMutter));
  light();
  ASSERT_TRUE(untilPower(mutter, 0));
  mutter.service().kill();
  ASSERT_TRUE(untilReported(bySaver));
  fade();
  light();
  ASSERT_TRUE(runUntil([&] { return saver.activities() == 1; }));
  mutter.restart(3);
  ASSERT_TRUE(untilReported(byMutter));
  EXPECT_FALSE(backlight()->screenIsOn());
  EXPECT_EQ(reports.lines, (Texts{byMutter, bySaver, byMutter}));
}

TEST_F(ScreenTest, KnowsNothingOfScreensThatMutterCannotSwitch) {
  MockedMutter mutter(-1);
  begin();
  ASSERT_TRUE(untilReported(byNothing));
  mutter.setPower(7);
  mutter.setPower(0);
  EXPECT_TRUE(untilReported(byMutter));
}

TEST_F(ScreenTest, IsNotLitWhereMutterRefusesAndIsReadAgain) {
  MockedMutter mutter(3);
  mutter.service().answer(MockedMutter::path, "org.freedesktop.DBus.Properties", "Set", "ssv", "",
                          "raise dbus.exceptions.DBusException('no', name='org.example.No')");
  begin(200ms);
  ASSERT_TRUE(untilReported(byMutter));
  light();
  EXPECT_TRUE(backlight()->screenIsOn());
  ASSERT_TRUE(untilReported(byNothing));
  EXPECT_FALSE(backlight()->screenIsOn());
  ASSERT_TRUE(untilReported(byMutter));
  EXPECT_FALSE(backlight()->screenIsOn());
}

TEST_F(ScreenTest, IsUsedAgainAfterItDidNotAnswer) {
  MockedMutter mutter(3);
  mutter.service().hang();
  begin(200ms);
  ASSERT_TRUE(untilReported(byNothing));
  mutter.service().goOn();
  EXPECT_TRUE(untilReported(byMutter));
}

TEST_F(ScreenTest, TakesNoNonsense) {
  MockedMutter mutter(3);
  begin();
  ASSERT_TRUE(untilReported(byMutter));
  for (const char* value : {"'off'", "uint32 0", "0.0"}) {
    mutter.service().control(MockedMutter::path, "EmitSignal",
                             "('org.freedesktop.DBus.Properties', 'PropertiesChanged', 'sa{sv}as', "
                             "[<'org.gnome.Mutter.DisplayConfig'>, <{'PowerSaveMode': <" +
                                 std::string(value) + ">}>, <@as []>])");
  }
  mutter.setPower(1);
  ASSERT_TRUE(runUntil([&] { return mutter.power() == 1; }));
  light();
  ASSERT_TRUE(untilPower(mutter, 0));
  EXPECT_EQ(reports.lines, Texts{byMutter});
}

}  // namespace
}  // namespace hushmode::devices
