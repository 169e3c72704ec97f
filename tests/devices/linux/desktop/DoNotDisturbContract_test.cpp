// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/DoNotDisturbContract.h"

#include "devices/linux/desktop/DoNotDisturb.h"
#include "tests/devices/linux/desktop/DesktopTest.h"
#include "tests/devices/linux/desktop/NotificationsStandIn.h"

namespace hushmode::contracts {

namespace {

using devices::runCommand;
using devices::waitUntil;

/// GNOME or Phosh, with the real settings; its user works with the gsettings program.
class SettingWorld {
 public:
  SettingWorld() { userSwitches(false); }
  platform::Class* classNamed(std::string_view name) { return doNotDisturb.classNamed(name); }
  void userSwitches(bool on) {
    runCommand(std::string("gsettings set org.gnome.desktop.notifications show-banners ") + (on ? "false" : "true"));
    EXPECT_TRUE(waitUntil([&] { return doNotDisturb.isOn() == on; }));
  }
  bool isPhoneQuiet() { return runCommand("gsettings get org.gnome.desktop.notifications show-banners") == "false\n"; }

 private:
  Glib::RefPtr<Gio::DBus::Connection> bus = devices::connectToSessionBus();
  devices::Services services;
  devices::DoNotDisturb doNotDisturb{bus, services};
};

/// Plasma; its user ends all inhibitions, or another program adds one.
class InhibitionWorld {
 public:
  InhibitionWorld() {
    EXPECT_TRUE(waitUntil([&] { return services.isAvailable("do not disturb"); }));
  }
  platform::Class* classNamed(std::string_view name) { return doNotDisturb.classNamed(name); }
  void userSwitches(bool on) {
    on ? service.setOtherInhibition(true) : service.clearInhibitions();
    EXPECT_TRUE(waitUntil([&] { return doNotDisturb.isOn() == on; }));
  }
  bool isPhoneQuiet() {
    const bool quiet = doNotDisturb.isOn();
    EXPECT_TRUE(waitUntil([&] { return service.isInhibited() == quiet; }));
    return service.isInhibited();
  }

 private:
  devices::NotificationsStandIn service;
  Glib::RefPtr<Gio::DBus::Connection> bus = devices::connectToSessionBus();
  devices::Services services;
  devices::DoNotDisturb doNotDisturb{bus, services};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Setting, DoNotDisturbContract, SettingWorld);
INSTANTIATE_TYPED_TEST_SUITE_P(Inhibition, DoNotDisturbContract, InhibitionWorld);

}  // namespace hushmode::contracts
