// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/GuardedDevice.h"

#include "devices/simulated/SimulatedPhone.h"

#include <gtest/gtest.h>

namespace hushmode::host {
namespace {

using platform::Date;
using platform::PCSimpleTimer;

class GuardedDeviceTest : public ::testing::Test {
 protected:
  GuardedDeviceTest() { phone.wakeTimers().setLatency(0); }

  /// Arms a wake-up of the library's, which counts itself.
  void arm(Date date) {
    auto& timers = dynamic_cast<PCSimpleTimer::Class&>(*guard.classNamed(PCSimpleTimer::className));
    timers.initWithFireDate(date, "test", [this](const auto&) { ++woken; }, {{"ProfileIdentifier", 5}})
        ->scheduleInRunLoop(guard.coreFoundation().mainRunLoop());
  }

  static constexpr double moment = 0.001;

  const Date now{1000};
  devices::SimulatedPhone phone{now};
  GuardedDevice guard{phone,
                      {.enter = [](const std::function<void()>& work, bool) { work(); },
                       .mayWake = [] { return true; },
                       .beforeArrayIsWritten = [](const platform::Array&, std::string_view) {}}};
  int woken = 0;
};

/// Woken in the very moment in which it asks to be, the library would ask again, and again.
TEST_F(GuardedDeviceTest, WakesAMomentLaterAtTheEarliest) {
  for (const Date date : {now, now.addingSeconds(-60)}) {
    woken = 0;
    arm(date);
    ASSERT_EQ(guard.armedWakeUps().size(), 1U);
    const Date soonest = phone.time().now().addingSeconds(moment);
    EXPECT_EQ(guard.armedWakeUps()[0].date, soonest);
    phone.time().runUntil(soonest.addingSeconds(-moment / 2));
    EXPECT_EQ(woken, 0);
    phone.time().runUntil(soonest);
    EXPECT_EQ(woken, 1);
    EXPECT_TRUE(guard.armedWakeUps().empty());
  }
}

TEST_F(GuardedDeviceTest, WakesAtALaterDateToTheMoment) {
  const Date date = now.addingSeconds(2 * moment);
  arm(date);
  EXPECT_EQ(guard.armedWakeUps()[0].date, date);
  EXPECT_EQ(guard.armedWakeUps()[0].profile, 5);
  phone.time().runUntil(date.addingSeconds(-moment / 2));
  EXPECT_EQ(woken, 0);
  phone.time().runUntil(date);
  EXPECT_EQ(woken, 1);
}

}  // namespace
}  // namespace hushmode::host
