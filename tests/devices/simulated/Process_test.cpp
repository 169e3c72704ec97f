// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The death of the host process, and a new one on the same phone.

#include "platform/MobileTimer.h"
#include "platform/PersistentConnection.h"
#include "platform/StatusBar.h"
#include "platform/ToneLibrary.h"
#include "tests/support/PhoneFixture.h"

#include <memory>

namespace hushmode {
namespace {

using Texts = std::vector<std::string>;

TEST_F(PhoneFixture, ADeadProcessIsNeverCalledAgain) {
  int calls = 0;
  const auto count = [&calls](auto&&...) { ++calls; };
  auto target = std::make_shared<platform::ObjectArray>(platform::ObjectList());
  phone.runLoop().dispatchAsync(count);
  phone.runLoop().dispatchAfter(5, count);
  phone.runLoop().performSelector(target, "act", 5, count);
  phone.runLoop().addTimer(phone.foundation().timerWithTimeInterval(5, count));
  platform::find<platform::PCSimpleTimer>()
      ->initWithFireDate(at("09:00"), "host", count, {})
      ->scheduleInRunLoop(phone.runLoop());
  phone.notifications().addObserver(this, "name", nullptr, count);
  phone.foundation().darwinCenter().observe(count);
  phone.uiKit().makeAlertView({"title", "message", std::nullopt, {"Yes"}, count})->show();
  const auto store = phone.eventKit().makeEventStore();
  phone.notifications().addObserver(this, platform::EKEventStore::changedNotification, store, count);
  phone.calendars().addCalendar("cal-A", "A");

  killProcess();
  EXPECT_EQ(phone.time().pending(), 0U);
  EXPECT_TRUE(phone.wakeTimers().armed().empty());
  EXPECT_TRUE(phone.uiKit().shownAlerts().empty());
  phone.calendars().addCalendar("cal-B", "B");
  EXPECT_EQ(phone.time().pending(), 0U) << "no store is left to tell";
  phone.sound().pressVolumeButton("Ringtone", 0.1F);
  phone.foundation().darwinCenter().postFromOutside("name");
  phone.notifications().post({"name", nullptr, {}});
  runFor(86400);
  EXPECT_EQ(calls, 0);
}

TEST_F(PhoneFixture, ADeadProcessLeavesThePhoneAsItIs) {
  phone.foundation().files().writeArrayToFileAtomically({1}, "/file");
  phone.foundation().standardUserDefaults().setFloat(0.5F, "key");
  phone.celestial().sharedAVSystemController()->setVolumeTo(0.25F, "Ringtone");
  phone.controlCenter().setDoNotDisturb(true);
  phone.screen().setOn(true);
  phone.wifi().join("Home");
  restartProcess();
  EXPECT_NE(phone.files().memory().find("/file"), nullptr);
  EXPECT_EQ(phone.defaults().floatForKey("key"), 0.5F);
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.25F);
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
  EXPECT_TRUE(phone.screen().isOn());
  EXPECT_EQ(phone.wifi().joined(), "Home");
}

TEST_F(PhoneFixture, AProcessTakesItsOwnObjectsWithIt) {
  phone.coreFoundation().dlopen(devices::SimulatedStatusBar::libraryPath, 2);
  platform::find<platform::LSStatusBarItem>()->initWithIdentifier("icon", 2)->setVisible(true);
  platform::find<platform::TLAlert>()->initWithType(1, "tone", std::nullopt)->startPlayingRepeatedly();
  phone.alarms().setStored({"Tea"});
  platform::find<platform::AlarmManager>()->sharedManager()->loadAlarms();
  const auto controller = phone.celestial().sharedAVSystemController();
  EXPECT_EQ(phone.celestial().sharedAVSystemController(), controller);
  restartProcess();
  EXPECT_FALSE(phone.statusBar().isIconVisible());
  EXPECT_EQ(platform::find<platform::LSStatusBarItem>(), nullptr) << "its library is loaded no longer";
  EXPECT_FALSE(phone.tone().playing());
  EXPECT_TRUE(platform::find<platform::AlarmManager>()->sharedManager()->alarms().empty());
  EXPECT_NE(phone.celestial().sharedAVSystemController(), controller) << "marks kept beside it go with it";
}

TEST_F(PhoneFixture, ANewProcessWorksOnTheSamePhoneAndTimersAreNamedOn) {
  const auto arm = [&](double seconds) {
    platform::find<platform::PCSimpleTimer>()
        ->initWithFireDate(phone.time().now().addingSeconds(seconds), "host", [](const auto&) {}, {})
        ->scheduleInRunLoop(phone.runLoop());
  };
  arm(10);
  restartProcess();
  arm(20);
  runFor(60);
  EXPECT_EQ(texts(), (Texts{
                         "timer arm t1 at 08:00:10 {}",
                         "phone process ended",
                         "phone process started",
                         "timer arm t2 at 08:00:20 {}",
                         "timer fire t2 (08:00:20)",
                     }));
}

TEST_F(PhoneFixture, AProcessMayDieInTheMiddleOfItsOwnWork) {
  bool later = false;
  phone.runLoop().dispatchAfter(1, [&] { killProcess(); });
  phone.runLoop().dispatchAfter(1, [&] { later = true; });
  runFor(5);
  EXPECT_FALSE(later);
  phone.time().setOnStep([&] { restartProcess(); });
  phone.runLoop().dispatchAfter(1, [] {});
  runFor(5);
  EXPECT_EQ(texts().back(), "phone process started");
}

}  // namespace
}  // namespace hushmode
