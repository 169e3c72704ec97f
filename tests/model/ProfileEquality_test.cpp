// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Two questions about a pair of profiles that are no comparisons: `isEqual` and `hasChanged`.

#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

class ProfileEquality : public CoreTest {
 protected:
  static std::shared_ptr<HMProfile> profile(std::int64_t identifier) {
    const auto made = HMProfile::init();
    made->setIdentifier(identifier);
    made->setStartTime("8:00 AM");
    made->setEndTime("5:00 PM");
    made->setCalendarIdentifiers(Texts{"cal-A", "cal-B"});
    return made;
  }
};

TEST_F(ProfileEquality, HoldsForAnyTwoProfilesAndTakesOverTheOthersIdentifier) {
  const auto receiver = profile(5), argument = profile(9);
  argument->setTitle("Other");
  EXPECT_TRUE(receiver->isEqual(argument));
  EXPECT_EQ(receiver->identifier(), 9);
  EXPECT_EQ(argument->identifier(), 9);
  EXPECT_EQ(receiver->title(), std::nullopt) << "nothing but the identifier is taken over";
}

TEST_F(ProfileEquality, FailsForAnIdentifierOfZeroAndTakesItOverAllTheSame) {
  const auto receiver = profile(5);
  EXPECT_FALSE(receiver->isEqual(profile(0)));
  EXPECT_EQ(receiver->identifier(), 0);
  EXPECT_FALSE(receiver->isEqual(receiver)) << "not even with itself";
}

TEST_F(ProfileEquality, HoldsForANegativeIdentifier) { EXPECT_TRUE(profile(5)->isEqual(profile(-1))); }

TEST_F(ProfileEquality, OfAnythingElseIsIdentityAndLeavesTheIdentifier) {
  const auto receiver = profile(5);
  EXPECT_FALSE(receiver->isEqual(nullptr));
  EXPECT_FALSE(receiver->isEqual(std::make_shared<platform::Object>()));
  EXPECT_EQ(receiver->identifier(), 5);
}

class ProfileChange : public ProfileEquality {};

TEST_F(ProfileChange, IsNoneBetweenProfilesWithTheSameWindowAndCalendars) {
  const auto scheduled = profile(5), other = profile(9);
  other->setTitle("Other");
  other->setRingerVolume(1);
  other->setEnabled(true);
  other->setWifiNetworks(Texts{"Home"});
  other->setApplyProfileEventStatus(2);
  EXPECT_FALSE(scheduled->hasChanged(other));
  EXPECT_EQ(scheduled->identifier(), 9) << "it begins with isEqual";
}

TEST_F(ProfileChange, IsNoneWithTheProfileItself) {
  const auto one = profile(5);
  EXPECT_FALSE(one->hasChanged(one));
}

TEST_F(ProfileChange, IsADifferentStartOrEndOfTheWindow) {
  const auto later = profile(9), longer = profile(9);
  later->setStartTime("8:01 AM");
  longer->setEndTime("5:01 PM");
  EXPECT_TRUE(profile(5)->hasChanged(later));
  EXPECT_TRUE(profile(5)->hasChanged(longer));
}

TEST_F(ProfileChange, IsNotSeenWhenTheOtherHasTheIdentifierZero) {
  const auto other = profile(0);
  other->setStartTime("9:00 AM");
  const auto scheduled = profile(5);
  EXPECT_FALSE(scheduled->hasChanged(other));
  EXPECT_EQ(scheduled->identifier(), 0);
}

TEST_F(ProfileChange, IsNoneAgainstNoProfile) {
  const auto scheduled = profile(5);
  EXPECT_FALSE(scheduled->hasChanged(nullptr));
  EXPECT_EQ(scheduled->identifier(), 5);
}

TEST_F(ProfileChange, ComparesTheDatesThatTheProfilesKeepNotTheirTimes) {
  const auto scheduled = profile(5), other = profile(9);
  scheduled->startDate();
  scheduled->setStartTime("9:00 AM");
  EXPECT_FALSE(scheduled->hasChanged(other));
}

TEST_F(ProfileChange, LeavesTheEndAloneWhenTheStartsDiffer) {
  const auto scheduled = profile(5), other = profile(9);
  other->setStartTime("9:00 AM");
  EXPECT_TRUE(scheduled->hasChanged(other));
  scheduled->setEndTime("6:00 PM");
  EXPECT_EQ(scheduled->endDate(), today(18)) << "the end was asked for, and so kept, although the starts decided";
}

TEST_F(ProfileChange, IsACalendarThatOnlyThisProfileHas) {
  const auto other = profile(9);
  other->setCalendarIdentifiers(Texts{"cal-B"});
  EXPECT_TRUE(profile(5)->hasChanged(other));
  other->setCalendarIdentifiers(Texts{"cal-A", "cal-b"});
  EXPECT_TRUE(profile(5)->hasChanged(other));
}

TEST_F(ProfileChange, IsNotACalendarThatOnlyTheOtherHas) {
  const auto other = profile(9);
  other->setCalendarIdentifiers(Texts{"cal-C", "cal-B", "cal-A"});
  EXPECT_FALSE(profile(5)->hasChanged(other));
}

TEST_F(ProfileChange, FillsTheListsThatItReadsAndNoOther) {
  phone.calendars().addCalendar("cal-A", "A");
  const auto scheduled = profile(5), other = profile(9);
  scheduled->setCalendarIdentifiers(std::nullopt);
  other->setCalendarIdentifiers(std::nullopt);
  EXPECT_FALSE(scheduled->hasChanged(other));
  phone.calendars().addCalendar("cal-Z", "Z");
  EXPECT_EQ(scheduled->calendarIdentifiers(), Texts{"cal-A"});
  EXPECT_EQ(other->calendarIdentifiers(), Texts{"cal-A"});

  scheduled->setCalendarIdentifiers(Texts());
  other->setCalendarIdentifiers(std::nullopt);
  EXPECT_FALSE(scheduled->hasChanged(other));
  phone.calendars().removeCalendar("cal-Z");
  EXPECT_EQ(other->calendarIdentifiers(), Texts{"cal-A"}) << "with nothing to look for, the other's list is not read";
}

}  // namespace
}  // namespace hushmode
