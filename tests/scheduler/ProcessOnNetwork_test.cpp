// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Turning a profile on and off while the phone is on one of its networks, and what remains when it is on another.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

class ProcessOnNetwork : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    work = addProfile();
    work->addToWiFiNetwork("Home");
    phone.wifi().join("Home");
  }

  void process() {
    story();
    manager().processScheduledEvent(work);
  }
  /// Processes at that time, and tells whether the profile was switched "on", "off", or "not at all".
  std::string switched(const std::string& clockTime) {
    clock(clockTime);
    process();
    if (count("TURNING PROFILE ON") == 1) return "on";
    return count("TURNING PROFILE OFF") == 1 ? "off" : "not at all";
  }

  Profile work;
};

TEST_F(ProcessOnNetwork, AStartNineSecondsAheadTurnsTheProfileOnUntilItsEnd) {
  clock("07:59:51");
  process();
  EXPECT_EQ(story(), R"(
I ********* Checking whether the network *** 'Home' *** is in enabled list or not.
I startTimeDiff: 9.000000 & startTimeDiffInt: 9
I endTimeDiff: 32409.000000 & endTimeDiffInt: 32409
I ********************* TURNING PROFILE ON ******************
I Applying profile: <HMProfile Work>
<apply>
I Scheduling power wakeup at: 17:00:00 for reverting profile.
I ******** Scheduling timer for 17:00:00 ***************
timer arm t1 at 17:00:00
)");
  EXPECT_TRUE(work->isApplied());
}

TEST_F(ProcessOnNetwork, AStartTenSecondsAheadDoesNot) {
  clock("07:59:50");
  process();
  EXPECT_EQ(story(), R"(
I ********* Checking whether the network *** 'Home' *** is in enabled list or not.
I startTimeDiff: 10.000000 & startTimeDiffInt: 10
I endTimeDiff: 32410.000000 & endTimeDiffInt: 32410
)");
  EXPECT_FALSE(work->isApplied());
}

TEST_F(ProcessOnNetwork, AStartTenSecondsAheadTurnsAnAppliedProfileOff) {
  work->apply();
  EXPECT_EQ(switched("07:59:50"), "off");
  EXPECT_EQ(armed(), "t1 at 08:00:00");
}

TEST_F(ProcessOnNetwork, TheStartsBandReachesFourSecondsBack) {
  EXPECT_EQ(switched("08:00:05"), "not at all");
  EXPECT_EQ(switched("08:00:04.999"), "on");
}

TEST_F(ProcessOnNetwork, AnEndFiveSecondsAgoLeavesAnIdleProfileAlone) {
  EXPECT_EQ(switched("17:00:05"), "not at all");
  EXPECT_EQ(count("<revert"), 0);
}

TEST_F(ProcessOnNetwork, AnEndFourSecondsAgoTurnsTheProfileOffAndAsksForItsStart) {
  clock("17:00:04");
  work->beginTimerForDate(at("18:00"));
  process();
  EXPECT_EQ(story(), R"(
I ********* Checking whether the network *** 'Home' *** is in enabled list or not.
I startTimeDiff: -32404.000000 & startTimeDiffInt: -32404
I endTimeDiff: -4.000000 & endTimeDiffInt: -4
I ********************* TURNING PROFILE OFF ******************
<revert>
I Scheduling power wakeup for 'WiFi' at: 08:00:00 for applying profile.
I ******** Scheduling timer for 08:00:00 ***************
timer invalidate t1
E Supplied Date '08:00:00' is invalid or in the past..
)");
  EXPECT_EQ(armed(), "") << "today's start is past";
}

TEST_F(ProcessOnNetwork, AnEndFourSecondsAgoIsArmedForTheStartOfAWindowOverMidnight) {
  work->setStartTime("10:00 PM");
  work->setEndTime("6:00 AM");
  EXPECT_EQ(switched("06:00:04"), "off");
  EXPECT_EQ(armed(), "t1 at 22:00:00");
}

TEST_F(ProcessOnNetwork, AnEndLessThanASecondAheadIsNow) {
  EXPECT_EQ(switched("16:59:59"), "not at all");
  EXPECT_EQ(switched("16:59:59.100"), "off");
}

TEST_F(ProcessOnNetwork, InTheMiddleOfItsWindowAnAppliedProfileIsTurnedOff) {
  work->apply();
  EXPECT_EQ(switched("12:00"), "off");
  EXPECT_FALSE(work->isApplied());
}

TEST_F(ProcessOnNetwork, AnAllDayProfileIsAppliedAndNothingElse) {
  work->setAllDay(true);
  process();
  EXPECT_EQ(story(), R"(
I ********* Checking whether the network *** 'Home' *** is in enabled list or not.
<apply>
)");
}

class ProcessOnForeignNetwork : public ProcessOnNetwork {
 protected:
  /// Noon on another network; the profile follows a review that is still to come.
  void SetUp() override {
    ProcessOnNetwork::SetUp();
    clock("12:00");
    phone.wifi().join("Cafe");
    review = event("Review", at("15:00"), at("16:00"));
    manager().scheduledEventsDict().record(work->identifier(), review);
  }

  Event review;
};

TEST_F(ProcessOnForeignNetwork, AnAppliedProfileThatTheCalendarLeavesAloneIsRevertedAndItsEventRemoved) {
  work->apply();
  process();
  EXPECT_EQ(story(), R"(
I ********* Checking whether the network *** 'Cafe' *** is in enabled list or not.
I **** Calling 'getCurrentScheduledEventFromProfile' *************
I Processing scheduled event: <EKEvent "Review" 15:00:00-16:00:00 UTC>
I [currentEvent.startDate timeIntervalSinceNow]: 10800.000000 & startTimeDiffInt: 10800
I [currentEvent.endDate timeIntervalSinceNow]: 14400.000000 & endTimeDiffInt: 14400
<revert>
I ******** Removing <EKEvent "Review" 15:00:00-16:00:00 UTC> from scheduled list (<EKEvent "Review" 15:00:00-16:00:00 UTC>)
)");
  EXPECT_EQ(followed(work), nullptr);
}

TEST_F(ProcessOnForeignNetwork, AnIdleProfileIsLeftAlone) {
  process();
  EXPECT_EQ(count("<revert"), 0);
  EXPECT_EQ(followed(work), review);
}

TEST_F(ProcessOnForeignNetwork, AnEventThatTurnsTheProfileOnOutweighsTheRevert) {
  manager().scheduledEventsDict().record(work->identifier(), event("Now", at("11:00"), at("13:00")));
  work->apply();
  process();
  EXPECT_EQ(count("TURNING PROFILE ON"), 1);
  EXPECT_EQ(count("<revert"), 0);
}

TEST_F(ProcessOnForeignNetwork, AStatusThatTheFilterRefusesHoldsTheRevertBackToo) {
  work->apply();
  work->setApplyProfileEventStatus(2);
  process();
  EXPECT_EQ(count("UNBALE TO TURN ON PROFILE"), 1);
  EXPECT_EQ(count("<revert"), 0);
  EXPECT_TRUE(work->isApplied());
}

TEST_F(ProcessOnForeignNetwork, AnAllDayEventHoldsTheRevertBack) {
  manager().scheduledEventsDict().record(work->identifier(),
                                         event("Holiday", at("00:00"), at("24:00"), {.allDay = true}));
  work->apply();
  process();
  EXPECT_EQ(story(), R"(
I ********* Checking whether the network *** 'Cafe' *** is in enabled list or not.
I **** Calling 'getCurrentScheduledEventFromProfile' *************
)");
  EXPECT_TRUE(work->isApplied());
}

TEST_F(ProcessOnForeignNetwork, NoNetworkAtAllIsAForeignOne) {
  phone.wifi().leave();
  work->apply();
  process();
  EXPECT_EQ(count("network *** '(null)' ***"), 1);
  EXPECT_EQ(count("<revert>"), 1);
}

}  // namespace
}  // namespace hushmode
