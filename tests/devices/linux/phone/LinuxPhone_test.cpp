// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/phone/LinuxPhone.h"

#include "devices/linux/core/SystemClock.h"
#include "platform/PersistentConnection.h"
#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "tests/devices/linux/core/MainContext.h"
#include "tests/devices/linux/core/TemporaryFolder.h"

#include <cmath>
#include <ctime>
#include <giomm/init.h>
#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Bus = Gio::DBus::BusType;

class LinuxPhoneTest : public ::testing::Test {
 protected:
  LinuxPhoneTest() {
    Gio::init();
    // Noon is near: no event of the test crosses midnight.
    const int hour = static_cast<int>(systemNow().secondsSince1970()) / 3600 % 24;
    ::setenv("TZ", ("Etc/GMT" + std::string(hour > 12 ? "+" : "-") + std::to_string(std::abs(hour - 12))).c_str(), 1);
    // Also where no service of the session is running, its volumes are not those of the machine.
    sessionBus = Gio::DBus::Connection::get_sync(Bus::SESSION);
    systemBus = Gio::DBus::Connection::get_sync(Bus::SYSTEM);
  }

  std::unique_ptr<LinuxPhone> make(bool withBuses) {
    const auto& root = folder.path();
    LinuxPhone::Options options{
        {{root / "config", root / "state", root / "data"}}, nullptr, nullptr, {}, root / "calendars", root / "icons"};
    if (withBuses) options.sessionBus = sessionBus, options.systemBus = systemBus;
    return std::make_unique<LinuxPhone>(options, services, LinuxPhoneEvents{},
                                        [this](Priority priority, const auto& line) {
                                          if (priority < Priority::Debug) told.push_back(line);
                                        });
  }

  /// A calendar with one event.
  void putEvent(platform::Date start, platform::Date end) {
    const auto utc = [](platform::Date date) {
      const auto seconds = static_cast<std::time_t>(date.secondsSince1970());
      char text[32];
      std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", std::gmtime(&seconds));
      return std::string(text);
    };
    folder.put(
        "calendars/work/one.ics",
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:test\r\nBEGIN:VEVENT\r\nUID:one\r\nSUMMARY:Interview\r\nDTSTAMP:" +
            utc(start) + "\r\nDTSTART:" + utc(start) + "\r\nDTEND:" + utc(end) + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
  }

  TemporaryFolder folder;
  Services services;
  std::vector<std::string> told;
  Glib::RefPtr<Gio::DBus::Connection> sessionBus, systemBus;
};

TEST_F(LinuxPhoneTest, WorksWithoutAnyBus) {
  const auto phone = make(false);
  const platform::Process process(*phone);
  const auto manager = HMProfilesManager::sharedManager();
  manager->schedulePowerEventsForProfiles(true);
  bool over = false;
  phone->coreFoundation().mainRunLoop().dispatchAsync([&] { over = true; });
  runMainContextUntil([&] { return over; });
  EXPECT_EQ(told, std::vector<std::string>());
  for (const char* service : {"networks", "sleep and lock", "screen"}) {
    EXPECT_TRUE(services.states().contains(service)) << service;
    EXPECT_FALSE(services.isAvailable(service)) << service;
  }
}

TEST_F(LinuxPhoneTest, FindsItsClassesByName) {
  const auto phone = make(true);
  for (const char* name : {"PCSimpleTimer", "VolumeControl", "TLAlert", "SpringBoard", "SBBacklightController",
                           "CCUIModuleInstanceManager", "AlarmManager", "LSStatusBarItem"}) {
    EXPECT_NE(phone->classNamed(name), nullptr) << name;
  }
  for (const char* name : {"AVController", "SBControlCenterController", "NoSuchClass", ""}) {
    EXPECT_EQ(phone->classNamed(name), nullptr) << name;
  }
  EXPECT_FALSE(phone->coreFoundation().dlopen("/lib/anything.dylib", 2));
}

TEST_F(LinuxPhoneTest, FallsSilentForAnEventAndComesBack) {
  const double now = std::ceil(systemNow().secondsSince1970());
  const platform::Date start(now + 2), end(now + 6);
  putEvent(start, end);
  const auto phone = make(true);
  runMainContextUntil([&] { return services.isAvailable("volumes") && services.isAvailable("calendar folder"); });
  platform::Process process(*phone);
  auto& control = *platform::find<platform::VolumeControl>()->sharedVolumeControl();
  control.setMediaVolume(0.5F);

  // Others may come from a calendar service.
  std::optional<std::string> calendar;
  for (const auto& each : phone->eventKit().makeEventStore()->calendarsForEntityType(platform::EKEntityType::Event)) {
    if (each->calendarIdentifier().starts_with("folder:")) calendar = each->calendarIdentifier();
  }
  ASSERT_TRUE(calendar);
  ASSERT_TRUE(phone->foundation().files().writeArrayToFileAtomically(
      {platform::Dictionary{{"identifier", 7},
                            {"title", "Work"},
                            {"enabled", true},
                            {"allDay", true},
                            {"playBackVolume", 0.2},
                            {"ringerVolume", 0.1},
                            {"calendarIdentifiers", platform::Array{*calendar}}}},
      HMProfilesManager::profilesPath));
  folder.put("config/com.quorvel.hushmode.plist",
             "<plist version=\"1.0\"><dict><key>com.quorvel.hushmode.enabled</key><true/></dict></plist>");
  const auto manager = HMProfilesManager::sharedManager();
  manager->schedulePowerEventsForProfiles(true);
  EXPECT_FALSE(manager->profiles().at(0)->isApplied());

  runMainContextUntil([&] { return manager->profiles().at(0)->isApplied(); });
  EXPECT_GE(systemNow(), start);
  EXPECT_LT(systemNow() - start, 0.5);
  float ringtone = -1;
  const auto volumes = phone->celestial().sharedAVSystemController();
  runMainContextUntil([&] {
    return std::abs(control.getMediaVolume() - 0.2F) < 0.01F && volumes->getVolume(ringtone, "Ringtone") &&
           std::abs(ringtone - 0.1F) < 0.01F;
  });
  runMainContextUntil([&] { return !manager->profiles().at(0)->isApplied(); });
  EXPECT_GE(systemNow(), end);
  runMainContextUntil([&] { return std::abs(control.getMediaVolume() - 0.5F) < 0.01F && !phone->pending(); });
  EXPECT_EQ(told, std::vector<std::string>());
}

TEST_F(LinuxPhoneTest, DropsWhatBelongedToTheProcess) {
  const auto phone = make(true);
  platform::RunLoop& loop = phone->coreFoundation().mainRunLoop();
  loop.dispatchAsync([] { FAIL(); });
  auto* timers = dynamic_cast<platform::PCSimpleTimer::Class*>(phone->classNamed("PCSimpleTimer"));
  timers->initWithFireDate(systemNow(), "", [](const auto&) { FAIL(); }, {})->scheduleInRunLoop(loop);
  phone->foundation().defaultNotificationCenter().addObserver(this, "name", nullptr, [](const auto&) { FAIL(); });
  phone->processEnded();
  phone->foundation().defaultNotificationCenter().post({"name", nullptr, {}});
  bool over = false;
  timers->initWithFireDate(systemNow().addingSeconds(0.01), "", [&](const auto&) { over = true; }, {})
      ->scheduleInRunLoop(loop);
  runMainContextUntil([&] { return over; });
}

}  // namespace
}  // namespace hushmode::devices
