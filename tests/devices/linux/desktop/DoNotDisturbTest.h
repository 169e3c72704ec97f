// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/desktop/DoNotDisturb.h"
#include "tests/devices/linux/desktop/DesktopTest.h"
#include "tests/devices/linux/desktop/NotificationsStandIn.h"

#include <chrono>
#include <string>
#include <vector>

namespace hushmode::devices {

// What is reported of "do not disturb" where one of the two is behind it.
inline constexpr const char* theInhibitions = "+inhibitions of the notification service";
inline constexpr const char* theSetting = "+the setting org.gnome.desktop.notifications show-banners";

/// As the desktop's user does it in its settings.
inline void showBanners(bool shown) {
  runCommand(std::string("gsettings set org.gnome.desktop.notifications show-banners ") + (shown ? "true" : "false"));
}

inline bool areBannersShown() {
  return runCommand("gsettings get org.gnome.desktop.notifications show-banners") == "true\n";
}

/// A desktop as it is at first.
class DesktopWithBanners : public DesktopTest {
 protected:
  DesktopWithBanners() {
    showBanners(true);
    const BannerSetting setting([] {});
    EXPECT_TRUE(waitUntil([&] { return !setting.isQuiet(); }));
  }
};

/// Its Do Not Disturb, and what was told of it.
class DoNotDisturbTest : public DesktopWithBanners {
 protected:
  DoNotDisturbTest() {
    doNotDisturb.setListener([this](bool on) { told.push_back(on); });
  }

  std::string reportedNow() const { return reported("do not disturb"); }
  bool waitForReport(const std::string& report) {
    return waitUntil([&] { return reportedNow() == report; });
  }

  // Short, for those tests in which it is waited for; a good service answers in less than a millisecond.
  DoNotDisturb doNotDisturb{bus, services, std::chrono::milliseconds(300)};
  std::vector<bool> told;
};

}  // namespace hushmode::devices
