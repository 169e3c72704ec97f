// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A profile's list of calendars: filled once with all there are, when nobody ever chose any.

#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

class CalendarList : public CoreTest {
 protected:
  const std::shared_ptr<HMProfile> profile = HMProfile::init();
};

TEST_F(CalendarList, HoldsAllCalendarsOfAllAccountsOnFirstRead) {
  phone.calendars().addCalendar("cal-1", "Work", "Company");
  phone.calendars().addCalendar("cal-2", "Home", "Family");
  phone.calendars().addCalendar("cal-3", "Travel", "Company");
  Texts identifiers = profile->calendarIdentifiers();
  std::sort(identifiers.begin(), identifiers.end());
  EXPECT_EQ(identifiers, (Texts{"cal-1", "cal-2", "cal-3"}));
}

TEST_F(CalendarList, KeepsTheCalendarsOfOneAccountTogetherAndInOrder) {
  phone.calendars().addCalendar("cal-1", "Work", "Company");
  phone.calendars().addCalendar("cal-2", "Home", "Family");
  phone.calendars().addCalendar("cal-3", "Travel", "Company");
  const Texts identifiers = profile->calendarIdentifiers();
  const auto work = std::find(identifiers.begin(), identifiers.end(), "cal-1");
  ASSERT_TRUE(work != identifiers.end() && work + 1 != identifiers.end());
  EXPECT_EQ(*(work + 1), "cal-3");
}

TEST_F(CalendarList, LeavesOutCalendarsThatCannotBeWrittenTo) {
  phone.calendars().addCalendar("cal-1", "Work");
  phone.calendars().addCalendar("cal-2", "Holidays", "Subscribed", false);
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-1"});
}

TEST_F(CalendarList, IsFilledOnceAndDoesNotFollowLaterCalendars) {
  phone.calendars().addCalendar("cal-1", "Work");
  profile->calendarIdentifiers();
  phone.calendars().addCalendar("cal-2", "Home");
  phone.calendars().removeCalendar("cal-1");
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-1"});
}

TEST_F(CalendarList, IsKeptAlsoWhenThereWasNothingToFillItWith) {
  EXPECT_EQ(profile->calendarIdentifiers(), Texts());
  phone.calendars().addCalendar("cal-1", "Work");
  EXPECT_EQ(profile->calendarIdentifiers(), Texts());
}

TEST_F(CalendarList, StaysEmptyWhenItIsEmptyAndNotAbsent) {
  phone.calendars().addCalendar("cal-1", "Work");
  profile->setCalendarIdentifiers(Texts());
  EXPECT_EQ(profile->calendarIdentifiers(), Texts());
}

TEST_F(CalendarList, IsFilledAgainAfterItWasTakenAway) {
  phone.calendars().addCalendar("cal-1", "Work");
  profile->setCalendarIdentifiers(Texts{"cal-9"});
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-9"});
  profile->setCalendarIdentifiers(std::nullopt);
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-1"});
}

}  // namespace
}  // namespace hushmode
