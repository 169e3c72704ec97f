// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Which calendar is asked: the user's own for the bounds of days, a Gregorian one for clock times.

#include "model/DayHelpers.h"
#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

using platform::Calendar;
using platform::Date;
using platform::DateComponents;

/// A calendar that counts the questions it is asked.
class CountingCalendar final : public Calendar {
 public:
  explicit CountingCalendar(const Calendar& real) : real_(real) {}
  DateComponents componentsOfDate(Date date) const override {
    ++questions;
    return real_.componentsOfDate(date);
  }
  Date dateFromComponents(const DateComponents& components) const override {
    ++questions;
    return real_.dateFromComponents(components);
  }
  Date dateByAddingDays(Date date, int days) const override {
    ++questions;
    return real_.dateByAddingDays(date, days);
  }

  mutable int questions = 0;

 private:
  const Calendar& real_;
};

/// What a phone offers, with two calendars in the place of its own.
class FoundationOfTwoCalendars final : public platform::Foundation {
 public:
  explicit FoundationOfTwoCalendars(platform::Foundation& real)
      : users(real.currentCalendar()), gregorian(real.gregorianCalendar()), real_(real) {}

  Date now() const override { return real_.now(); }
  const Calendar& currentCalendar() const override { return users; }
  const Calendar& gregorianCalendar() const override { return gregorian; }
  platform::PropertyListFiles& files() override { return real_.files(); }
  platform::UserDefaults& standardUserDefaults() override { return real_.standardUserDefaults(); }
  platform::NotificationCenter& defaultNotificationCenter() override { return real_.defaultNotificationCenter(); }
  std::shared_ptr<platform::Bundle> bundleWithPath(std::string_view path) override {
    return real_.bundleWithPath(path);
  }
  std::shared_ptr<platform::Bundle> mainBundle() override { return real_.mainBundle(); }
  std::shared_ptr<platform::NSTimer> timerWithTimeInterval(
      double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) override {
    return real_.timerWithTimeInterval(seconds, std::move(action));
  }
  platform::SystemLog& systemLog() override { return real_.systemLog(); }
  std::shared_ptr<platform::NSDateFormatter> makeDateFormatter() override { return real_.makeDateFormatter(); }

  CountingCalendar users, gregorian;

 private:
  platform::Foundation& real_;
};

class DeviceOfTwoCalendars final : public platform::Device {
 public:
  explicit DeviceOfTwoCalendars(platform::Device& real) : calendars(real.foundation()), real_(real) {}

  platform::Foundation& foundation() override { return calendars; }
  platform::CoreFoundation& coreFoundation() override { return real_.coreFoundation(); }
  platform::EventKit& eventKit() override { return real_.eventKit(); }
  platform::MobileWiFi& mobileWiFi() override { return real_.mobileWiFi(); }
  platform::Celestial& celestial() override { return real_.celestial(); }
  platform::AudioToolbox& audioToolbox() override { return real_.audioToolbox(); }
  platform::UIKit& uiKit() override { return real_.uiKit(); }
  platform::Class* classNamed(std::string_view name) override { return real_.classNamed(name); }
  void processEnded() override { real_.processEnded(); }

  FoundationOfTwoCalendars calendars;

 private:
  platform::Device& real_;
};

TEST_F(CoreTest, TheWindowsClockTimesAreGregorianWhateverCalendarTheUserPrefers) {
  killProcess();
  DeviceOfTwoCalendars device(phone);
  const platform::Process process(device);
  const auto profile = HMProfile::init();
  profile->setStartTime("8:00 AM");
  EXPECT_EQ(profile->startDate(), today(8));
  EXPECT_GT(device.calendars.gregorian.questions, 0);
  EXPECT_EQ(device.calendars.users.questions, 0);
}

TEST_F(CoreTest, TheBoundsOfDaysFollowTheUsersCalendar) {
  killProcess();
  DeviceOfTwoCalendars device(phone);
  const platform::Process process(device);
  EXPECT_EQ(hm_beginningOfDay(today(10)), today(0));
  EXPECT_EQ(hm_endOfDay(today(10)), today(23, 59, 59));
  EXPECT_GT(device.calendars.users.questions, 0);
  EXPECT_EQ(device.calendars.gregorian.questions, 0);
}

}  // namespace
}  // namespace hushmode
