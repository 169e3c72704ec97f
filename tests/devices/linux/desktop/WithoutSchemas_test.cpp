// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A desktop on which none of the programs is installed whose settings the adapters work with. It takes a process of its
// own: GSettings looks for schemas once.

#include "devices/linux/desktop/ClockAlarms.h"
#include "devices/linux/desktop/DoNotDisturb.h"
#include "devices/linux/desktop/VibrateMirror.h"
#include "devices/simulated/SimulatedPhone.h"
#include "tests/devices/linux/desktop/DesktopTest.h"
#include "tests/devices/linux/desktop/NotificationsStandIn.h"

#include <giomm/settingsschemasource.h>

namespace hushmode::devices {

namespace {

class WithoutSchemas : public DesktopTest {
 protected:
  void SetUp() override {
    if (Gio::SettingsSchemaSource::get_default()) {
      GTEST_SKIP() << "there are schemas here; devices/linux/desktop-without-schemas runs it without";
    }
  }
};

}  // namespace

TEST_F(WithoutSchemas, ThereIsNoDoNotDisturbUntilThereAreInhibitions) {
  DoNotDisturb doNotDisturb(bus, services);
  EXPECT_TRUE(waitUntil([&] { return reported("do not disturb").starts_with("-"); }));
  EXPECT_FALSE(doNotDisturb.classNamed("CCUIModuleInstanceManager"));
  doNotDisturb.set(true);
  EXPECT_FALSE(doNotDisturb.isOn());
  NotificationsStandIn service;
  EXPECT_TRUE(waitUntil([&] { return services.isAvailable("do not disturb"); }));
  EXPECT_TRUE(doNotDisturb.classNamed("CCUIModuleInstanceManager"));
  exchangeWith(bus);
  EXPECT_FALSE(service.isInhibited());
  doNotDisturb.set(true);
  EXPECT_TRUE(waitUntil([&] { return service.isInhibited(); }));
}

TEST_F(WithoutSchemas, ThereIsNoAlarmManager) {
  const ClockAlarms alarms(bus, services);
  EXPECT_FALSE(alarms.classNamed("AlarmManager"));
  exchangeWith(bus);
  EXPECT_EQ(reports, std::vector<std::string>{"alarms -GNOME Clocks is not installed"});
}

TEST_F(WithoutSchemas, TheVibrateSwitchesMoveNothing) {
  SimulatedPhone phone{platform::Date(1715673600)};
  phone.defaults().domains().clear();
  DarwinNotifications notifications(bus, services);
  const VibrateMirror mirror(phone.defaults(), notifications, services);
  EXPECT_EQ(reported("vibrate switches"), "-feedbackd is not installed");
  notifications.post("com.apple.springboard.ring-vibrate.changed");
  exchangeWith(bus);
  EXPECT_TRUE(phone.defaults().domains().empty());
}

}  // namespace hushmode::devices
