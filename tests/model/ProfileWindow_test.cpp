// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The daily window: its bounds, how long they are kept, and what lies inside.

#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

#include <stdexcept>

namespace hushmode {
namespace {

using platform::Date;

class ProfileWindow : public CoreTest {
 protected:
  std::shared_ptr<HMProfile> timed(const char* start, const char* end) {
    const auto profile = HMProfile::init();
    profile->setStartTime(start);
    profile->setEndTime(end);
    return profile;
  }
  std::shared_ptr<HMProfile> allDay() {
    const auto profile = timed("8:00 AM", "5:00 PM");
    profile->setAllDay(true);
    return profile;
  }
};

TEST_F(ProfileWindow, ReadsATimeOfDayAsAnInstantOfToday) {
  const struct {
    const char* time;
    Date date;
  } cases[] = {
      {"12:00 AM", today(0)},
      {"12:15 PM", today(12, 15)},
      {"12:00 PM", today(12)},
      {"8:00 AM", today(8)},
      {"5:00 PM", today(17)},
      {"5:00 pm", today(17)},
      {"8:05 AM and more", today(8, 5)},
      {"17:00", today(0)},
      {"14:30", today(0, 30)},
      {"5:00 XM", today(0)},
      {"8:05  AM", today(0, 5)},
      {"8: 05 AM", today(0)},
      {"x:y AM", today(0)},
      {"8:75 AM", today(9, 15)},
      {"13:00 PM", berlinSummer(5, 15, 1)},
      {"30:00 AM", berlinSummer(5, 15, 6)},
      {"8:-5 AM", today(8)},
  };
  const auto profile = HMProfile::init();
  for (const auto& each : cases) {
    SCOPED_TRACE(each.time);
    EXPECT_EQ(profile->dateFromTime(each.time), each.date);
  }
}

TEST_F(ProfileWindow, ReadsAnAbsentTimeAsMidnight) {
  EXPECT_EQ(HMProfile::init()->dateFromTime(std::nullopt), today(0));
  EXPECT_EQ(HMProfile::init()->startDate(), today(0));
  EXPECT_EQ(HMProfile::init()->endDate(), today(0));
}

TEST_F(ProfileWindow, FaultsOnATimeWithoutAColonAndKeepsNothing) {
  const auto profile = timed("8.00 AM", "5:00 PM");
  EXPECT_THROW(profile->startDate(), std::out_of_range);
  profile->setStartTime("8:00 AM");
  EXPECT_EQ(profile->startDate(), today(8));
}

TEST_F(ProfileWindow, HasNoSecondsWhateverTheClockShows) {
  phone.time().runUntil(today(10, 31, 59.75));
  EXPECT_EQ(HMProfile::init()->dateFromTime("8:00 AM"), today(8));
  EXPECT_EQ(HMProfile::init()->todayModifiedWithHours("8", "0", "AM"), today(8));
}

TEST_F(ProfileWindow, IsOfTheLocalDayNotTheOneInUtc) {
  phone.time().runUntil(berlinSummer(5, 15, 0, 30));  // Still 14 May in UTC.
  EXPECT_EQ(HMProfile::init()->dateFromTime("8:00 AM"), berlinSummer(5, 15, 8));
}

TEST_F(ProfileWindow, TakesTheOffsetOfTheHourOnADayOfTheTimeChange) {
  phone.jumpClockTo(Date(1711836000));  // 2024-03-30 23:00 in Berlin, winter time.
  phone.time().runFor(3 * 3600);        // 31 March, after the jump from 2:00 to 3:00.
  EXPECT_EQ(HMProfile::init()->dateFromTime("1:00 AM"), Date(1711843200));
  EXPECT_EQ(HMProfile::init()->dateFromTime("8:00 AM"), Date(1711864800));
}

TEST_F(ProfileWindow, IncludesBothItsBounds) {
  const auto profile = timed("8:00 AM", "5:00 PM");
  EXPECT_TRUE(profile->isDateBetweenProfileStartAndEndDate(today(8)));
  EXPECT_TRUE(profile->isDateBetweenProfileStartAndEndDate(today(17)));
  EXPECT_TRUE(profile->isDateBetweenProfileStartAndEndDate(today(12)));
  EXPECT_FALSE(profile->isDateBetweenProfileStartAndEndDate(today(7, 59, 59.999)));
  EXPECT_FALSE(profile->isDateBetweenProfileStartAndEndDate(today(17, 0, 0.001)));
  EXPECT_FALSE(profile->isDateBetweenProfileStartAndEndDate(berlinSummer(5, 15, 12)));
}

TEST_F(ProfileWindow, IsEmptyWhenItEndsBeforeItStarts) {
  const auto profile = timed("10:00 PM", "6:00 AM");
  EXPECT_EQ(profile->startDate(), today(22));
  EXPECT_EQ(profile->endDate(), today(6));
  for (int quarter = 0; quarter <= 2 * 24 * 4; ++quarter) {
    EXPECT_FALSE(profile->isDateBetweenProfileStartAndEndDate(today(0).addingSeconds(quarter * 900.0))) << quarter;
  }
}

TEST_F(ProfileWindow, OfAnAllDayProfileContainsEveryDate) {
  EXPECT_TRUE(allDay()->isDateBetweenProfileStartAndEndDate(berlinSummer(5, 21, 12)));
  EXPECT_TRUE(allDay()->isDateBetweenProfileStartAndEndDate(Date(0)));
  EXPECT_TRUE(allDay()->isDateBetweenProfileStartAndEndDate(today(23, 59, 59.5)));
}

TEST_F(ProfileWindow, OfAnAllDayProfileIsTodayWhateverItsTimes) {
  EXPECT_EQ(allDay()->startDate(), today(0));
  EXPECT_EQ(allDay()->endDate(), today(23, 59, 59));
}

TEST_F(ProfileWindow, KeepsYesterdaysDatesPastMidnightUnlessAllDay) {
  const auto profile = timed("8:00 AM", "5:00 PM"), whole = allDay();
  for (const auto& each : {profile, whole}) each->startDate(), each->endDate();
  phone.time().runUntil(berlinSummer(5, 15, 0, 0, 1));
  EXPECT_EQ(profile->startDate(), today(8));
  EXPECT_EQ(profile->endDate(), today(17));
  EXPECT_EQ(whole->startDate(), berlinSummer(5, 15));
  EXPECT_EQ(whole->endDate(), berlinSummer(5, 15, 23, 59, 59));
}

TEST_F(ProfileWindow, KeepsItsDatesWhenTheTimesAreEdited) {
  const auto profile = timed("8:00 AM", "5:00 PM");
  profile->startDate();
  profile->setStartTime("9:00 AM");
  profile->setEndTime("6:00 PM");
  EXPECT_EQ(profile->startDate(), today(8));
  EXPECT_EQ(profile->endDate(), today(18)) << "the end was not asked for before the edit";
}

TEST_F(ProfileWindow, NeitherReadsNorWritesTheKeptDatesWhileAllDay) {
  const auto profile = timed("8:00 AM", "5:00 PM");
  profile->startDate();
  profile->setAllDay(true);
  EXPECT_EQ(profile->startDate(), today(0));
  EXPECT_EQ(profile->endDate(), today(23, 59, 59));
  profile->setAllDay(false);
  profile->setEndTime("4:00 PM");
  EXPECT_EQ(profile->startDate(), today(8));
  EXPECT_EQ(profile->endDate(), today(16)) << "the all-day end must not have been kept";
}

TEST_F(ProfileWindow, CanBeOverwritten) {
  const auto profile = timed("8:00 AM", "5:00 PM");
  profile->setStartDate(today(1));
  profile->setEndDate(today(2));
  EXPECT_EQ(profile->startDate(), today(1));
  EXPECT_EQ(profile->endDate(), today(2));
  profile->setStartDate(std::nullopt);
  EXPECT_EQ(profile->startDate(), today(8));
}

TEST_F(ProfileWindow, CutsAnEventsIntervalDownToItself) {
  const struct {
    Date eventStart, eventEnd, start, end;
  } cases[] = {
      {today(7), today(9), today(8), today(9)},
      {today(16), today(18), today(16), today(17)},
      {today(8), today(17), today(8), today(17)},
      {today(18), today(19), today(18), today(17)},
      {today(6), today(7), today(8), today(7)},
      {today(9), today(10), today(9), today(10)},
      {today(7, 59, 59.5), today(17, 0, 0.5), today(8), today(17)},
      {today(7), today(18), today(8), today(17)},
  };
  const auto profile = timed("8:00 AM", "5:00 PM");
  for (const auto& each : cases) {
    SCOPED_TRACE(testing::Message() << each.eventStart - today(0) << " to " << each.eventEnd - today(0));
    const auto [start, end] = profile->gimmeIntersectionDates(each.eventStart, each.eventEnd);
    EXPECT_EQ(start, each.start);
    EXPECT_EQ(end, each.end);
  }
}

TEST_F(ProfileWindow, DerivesTheCreationDateFromTheIdentifierOnce) {
  const auto profile = HMProfile::init();
  profile->setIdentifier(1700000000);
  EXPECT_EQ(profile->createdDate(), Date(1700000000));
  profile->setIdentifier(5);
  EXPECT_EQ(profile->createdDate(), Date(1700000000));
  profile->setCreatedDate(Date(7));
  EXPECT_EQ(profile->createdDate(), Date(7));
}

TEST_F(ProfileWindow, LogsNothing) {
  const auto profile = timed("8:00 AM", "nothing:like a time");
  clearRecord();
  profile->startDate();
  profile->endDate();
  profile->isDateBetweenProfileStartAndEndDate(today(9));
  EXPECT_EQ(texts(), Texts());
}

}  // namespace
}  // namespace hushmode
