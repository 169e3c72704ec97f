// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The calendars that matter at this moment.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

class ActiveCalendars : public StoreTest {
 protected:
  /// An enabled profile of that window; all-day when it has none.
  static Profile enabled(std::int64_t identifier, const char* start, const char* end, Texts calendars) {
    const Profile made = profile(identifier);
    made->setEnabled(true);
    made->setAllDay(!start);
    if (start) made->setStartTime(start);
    if (end) made->setEndTime(end);
    made->setCalendarIdentifiers(std::move(calendars));
    return made;
  }
  static Profile allDay(std::int64_t identifier, Texts calendars) {
    return enabled(identifier, nullptr, nullptr, std::move(calendars));
  }
  static Texts sorted(Texts texts) {
    std::sort(texts.begin(), texts.end());
    return texts;
  }
};

TEST_F(ActiveCalendars, AreThoseOfAllDayProfilesEachOnce) {
  manager().profiles() = {allDay(1, {"cal-B", "cal-A"}), allDay(2, {"cal-A", "cal-C", "cal-C"})};
  EXPECT_EQ(sorted(manager().calendarIdentifiers()), (Texts{"cal-A", "cal-B", "cal-C"}));
}

TEST_F(ActiveCalendars, AreThoseOfWindowsThatAreOpenBothBoundsIncluded) {
  manager().profiles() = {
      enabled(1, "10:00 AM", "11:00 AM", {"opens now"}),        enabled(2, "9:00 AM", "10:00 AM", {"closes now"}),
      enabled(3, "11:00 AM", "12:00 PM", {"opens in an hour"}), enabled(4, "8:00 AM", "9:59 AM", {"closed"}),
      enabled(5, "10:00 PM", "11:00 AM", {"never open"}),
  };
  EXPECT_EQ(sorted(manager().calendarIdentifiers()), (Texts{"closes now", "opens now"}));
}

TEST_F(ActiveCalendars, AreOfActiveProfilesOnly) {
  manager().profiles() = {allDay(1, {"enabled"}), allDay(2, {"disabled"})};
  manager().profiles()[1]->setEnabled(false);
  const Profile leftover = HMProfile::initWithDictionary(
      {{"identifier", 3}, {"applied", true}, {"allDay", true}, {"calendarIdentifiers", platform::Array{"applied"}}});
  manager().profiles().push_back(leftover);
  EXPECT_EQ(sorted(manager().calendarIdentifiers()), (Texts{"applied", "enabled"}));
}

TEST_F(ActiveCalendars, AreAllCalendarsForAProfileThatNeverChose) {
  phone.calendars().addCalendar("cal-1", "Work");
  phone.calendars().addCalendar("cal-2", "Home");
  manager().profiles() = {allDay(1, {})};
  EXPECT_EQ(manager().calendarIdentifiers(), Texts());
  manager().profiles()[0]->setCalendarIdentifiers(std::nullopt);
  EXPECT_EQ(sorted(manager().calendarIdentifiers()), (Texts{"cal-1", "cal-2"}));
}

TEST_F(ActiveCalendars, ReadNoWindowOfAProfileWithoutCalendars) {
  manager().profiles() = {enabled(1, "no time", "no time", {}), allDay(2, {"cal-A"})};
  EXPECT_EQ(manager().calendarIdentifiers(), Texts{"cal-A"}) << "its faulty times must not be read";
}

}  // namespace
}  // namespace hushmode
