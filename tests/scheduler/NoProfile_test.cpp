// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/EventKit.h"
#include "store/HMProfilesManager.h"
#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using NoProfile = PhoneFixture;

std::shared_ptr<platform::EKEvent> eventNow(platform::Date now, bool allDay) {
  auto details = std::make_shared<platform::EKEventDetails>();
  details->allDay = allDay;
  return std::make_shared<platform::EKEvent>(std::move(details), now.addingSeconds(-60), now.addingSeconds(60));
}

TEST_F(NoProfile, IsPlannedProcessedAndSwitchedWithoutAnyEffect) {
  const auto manager = HMProfilesManager::sharedManager();
  phone.record().clear();
  manager->scheduleEvents(nullptr, true);
  manager->processScheduledEvent(nullptr);
  manager->registerForPowerNotifications(phone.time().now(), nullptr);
  manager->schedulePowerEvent(nullptr, nullptr);
  for (const bool allDay : {false, true}) {
    manager->schedulePowerEvent(nullptr, eventNow(phone.time().now(), allDay));
  }
  for (const auto& entry : phone.record().entries()) EXPECT_EQ(entry.kind, devices::kind::log) << entry.text();
  EXPECT_TRUE(phone.wakeTimers().armed().empty());
  EXPECT_EQ(phone.time().pending(), 0U);
}

TEST_F(NoProfile, AWakeTimerStartsTheManagerThatItIsFor) {
  const auto profile = HMProfile::init();
  phone.record().clear();
  EXPECT_TRUE(profile->timerWithDate(phone.time().now().addingSeconds(60)));
  EXPECT_TRUE(phone.statusBar().icon());  // Made by the manager's start.
}

}  // namespace
}  // namespace hushmode
