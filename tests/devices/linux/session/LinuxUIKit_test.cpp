// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/LinuxUIKit.h"

#include "tests/support/MockedService.h"
#include "tests/support/ServiceReports.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

constexpr int light = 1, dark = 2;
const std::string byPortal = "appearance: there, the desktop portal", bySettings = "appearance: there, GSettings";

class LinuxUIKitTest : public ::testing::Test {
 protected:
  LinuxUIKitTest() { settings->set_string("color-scheme", "default"); }

  void begin(std::chrono::milliseconds limit = BusClient::answerLimit) {
    appearance.emplace(connectTo("session"), reports.services, limit);
    uiKit.emplace(alerts, *appearance);
  }
  bool untilReported(const std::string& line) {
    return runUntil([&] { return !reports.lines.empty() && reports.lines.back() == line; });
  }
  bool untilStyle(int style) {
    return runUntil([&] { return uiKit->userInterfaceStyle() == style; });
  }

  Glib::RefPtr<Gio::Settings> settings = [] {
    Gio::init();
    return Gio::Settings::create("org.gnome.desktop.interface");
  }();
  Services others;
  NotificationAlerts alerts{Glib::RefPtr<Gio::DBus::Connection>(), others, {}};
  ServiceReports reports;
  std::optional<Appearance> appearance;
  std::optional<LinuxUIKit> uiKit;
};

class MockedPortal {
 public:
  explicit MockedPortal(unsigned scheme) {
    answerScheme("dbus.UInt32(" + std::to_string(scheme) + ", variant_level=1)");
  }

  MockedService& service() { return service_; }
  void answerScheme(const std::string& python) {
    service_.answer(path, interface, "Read", "ss", "v", "ret = " + python);
  }
  void tell(const std::string& group, const std::string& key, const std::string& value) {
    service_.control(path, "EmitSignal",
                     "('" + std::string(interface) + "', 'SettingChanged', 'ssv', [<'" + group + "'>, <'" + key +
                         "'>, <" + value + ">])");
  }

 private:
  static constexpr const char* path = "/org/freedesktop/portal/desktop";
  static constexpr const char* interface = "org.freedesktop.portal.Settings";

  MockedService service_{
      "session", "org.freedesktop.portal.Desktop", {"org.freedesktop.portal.Desktop", path, interface}};
};

TEST_F(LinuxUIKitTest, HasTheAppearanceOfGSettingsWithoutAPortal) {
  begin();
  ASSERT_TRUE(untilReported(bySettings));
  EXPECT_EQ(uiKit->userInterfaceStyle(), light);
  settings->set_string("color-scheme", "prefer-dark");
  EXPECT_EQ(uiKit->userInterfaceStyle(), dark);
  settings->set_string("color-scheme", "prefer-light");
  EXPECT_EQ(uiKit->userInterfaceStyle(), light);
}

TEST_F(LinuxUIKitTest, HasTheAppearanceOfThePortal) {
  MockedPortal portal(1);
  begin();
  ASSERT_TRUE(untilReported(byPortal));
  EXPECT_EQ(uiKit->userInterfaceStyle(), dark);
  portal.tell("org.freedesktop.appearance", "accent-color", "uint32 2");
  portal.tell("org.example", "color-scheme", "uint32 2");
  portal.tell("org.freedesktop.appearance", "color-scheme", "uint32 0");
  ASSERT_TRUE(untilStyle(light));
  portal.tell("org.freedesktop.appearance", "color-scheme", "<uint32 1>");
  EXPECT_TRUE(untilStyle(dark)) << "wrapped once more";
}

TEST_F(LinuxUIKitTest, GoesBackToGSettingsWhenThePortalTellsNothing) {
  settings->set_string("color-scheme", "prefer-dark");
  MockedPortal portal(2);
  begin();
  ASSERT_TRUE(untilReported(byPortal));
  EXPECT_EQ(uiKit->userInterfaceStyle(), light);
  portal.tell("org.freedesktop.appearance", "color-scheme", "'dark'");
  ASSERT_TRUE(untilReported(bySettings));
  EXPECT_EQ(uiKit->userInterfaceStyle(), dark);
  portal.tell("org.freedesktop.appearance", "color-scheme", "uint32 2");
  ASSERT_TRUE(untilReported(byPortal));
  portal.service().kill();
  ASSERT_TRUE(untilReported(bySettings));
  EXPECT_EQ(uiKit->userInterfaceStyle(), dark);
}

TEST_F(LinuxUIKitTest, AsksAPortalAgainThatDidNotAnswer) {
  MockedPortal portal(1);
  portal.service().hang();
  begin(200ms);
  ASSERT_TRUE(untilReported(bySettings));
  portal.service().goOn();
  EXPECT_TRUE(untilReported(byPortal));
  EXPECT_EQ(uiKit->userInterfaceStyle(), dark);
}

TEST_F(LinuxUIKitTest, HasTheGivenVersion) {
  begin();
  EXPECT_EQ(uiKit->systemVersion(), "13.0");
  EXPECT_EQ(LinuxUIKit(alerts, *appearance, "9.3").systemVersion(), "9.3");
}

TEST_F(LinuxUIKitTest, HasAnApplicationAndDraws) {
  begin();
  ASSERT_NE(uiKit->sharedApplication(), nullptr);
  uiKit->sharedApplication()->setSystemVolumeHUDEnabled(false);
  const auto context = uiKit->beginImageContext({4, 2}, false, 2.0);
  context->fillRect({1, 0, 0, 1}, {{0, 0}, {4, 2}});
  const auto image = context->image();
  EXPECT_EQ(image->size().width, 4);
  EXPECT_EQ(image->scale(), 2.0);
}

}  // namespace
}  // namespace hushmode::devices
