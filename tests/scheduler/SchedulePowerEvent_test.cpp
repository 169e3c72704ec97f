// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Applying now or arming the wake-up, for an event that was chosen.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

class SchedulePowerEvent : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    clock("12:00");
    work = addProfile();
    story();
  }

  /// Schedules an event that carries the profile, as a plan does.
  void schedule(const Event& event) {
    setHm_profile(event, work);
    manager().schedulePowerEvent(work, event);
  }
  /// The same with the profile applied, but not through this event.
  void scheduleApplied(const Event& event) {
    work->apply();
    story();
    schedule(event);
  }

  Profile work;
};

TEST_F(SchedulePowerEvent, WithoutAnEventNothingIsScheduled) {
  manager().schedulePowerEvent(work, nullptr);
  EXPECT_EQ(story(), R"(
W No event found for Profile with id 1000
E ****************** Event is nil, hence returning ****************
)");
}

TEST_F(SchedulePowerEvent, WithoutAnEventTheOneThatIsFollowedIsTaken) {
  addEvent("Review", at("15:00"), at("16:00"));
  plan(work);
  story();
  manager().schedulePowerEvent(work, nullptr);
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 15:00:00-16:00:00 UTC>
I ******** Scheduling power wakeup at: 15:00:00 for applying profile.
I ******** Scheduling timer for 15:00:00 ***************
timer invalidate t1
timer arm t2 at 15:00:00
)");
}

TEST_F(SchedulePowerEvent, ACancelledEventIsIgnored) {
  schedule(event("Off", at("11:00"), at("13:00"), {.status = platform::EKEventStatus::Canceled}));
  EXPECT_EQ(story(), R"(
I **** 5. Event 'Off' is cancelled, hence ignoring it.
)");
}

TEST_F(SchedulePowerEvent, AnAllDayEventIsProcessedAtOnceOrIgnored) {
  const Event holiday = event("Holiday", at("00:00"), at("24:00"), {.allDay = true});
  schedule(holiday);
  EXPECT_EQ(story(), R"(
I Scheduling event now is: <EKEvent "Holiday" 00:00:00-00:00:00 UTC>
I **** Calling 'getCurrentScheduledEventFromProfile' *************
W No event found for Profile with id 1000
I Processing scheduled event: (null)
I [currentEvent.startDate timeIntervalSinceNow]: 0.000000 & startTimeDiffInt: 0
I [currentEvent.endDate timeIntervalSinceNow]: 0.000000 & endTimeDiffInt: 0
I ********************* TURNING PROFILE ON ******************
I ************* Scheduling power wakeup at: (null) for reverting profile.
I ******** Scheduling timer for (null) ***************
E Supplied Date '(null)' is invalid or in the past..
)");
  work->setAllDayEventsIgnored(true);
  schedule(holiday);
  EXPECT_EQ(story(), "\n");
}

TEST_F(SchedulePowerEvent, InTheWindowAWakeUpIsArmedForTheEventsStart) {
  schedule(event("Review", at("15:00"), at("16:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 15:00:00-16:00:00 UTC>
I ******** Scheduling power wakeup at: 15:00:00 for applying profile.
I ******** Scheduling timer for 15:00:00 ***************
timer arm t1 at 15:00:00
)");
}

TEST_F(SchedulePowerEvent, InTheWindowAnAppliedProfileIsRevertedAfterArming) {
  scheduleApplied(event("Review", at("15:00"), at("16:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 15:00:00-16:00:00 UTC>
I ******** Scheduling power wakeup at: 15:00:00 for applying profile.
I ******** Scheduling timer for 15:00:00 ***************
timer arm t1 at 15:00:00
<revert>
)");
}

TEST_F(SchedulePowerEvent, InTheWindowAnEventThatIsOverIsOutDated) {
  schedule(event("Review", at("09:00"), at("10:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 09:00:00-10:00:00 UTC>
I ********* Event <EKEvent "Review" 09:00:00-10:00:00 UTC> seems to be out dated, hence not scheduling it.
)");
}

TEST_F(SchedulePowerEvent, InTheWindowTheProfileOfAnEventThatIsOverIsReverted) {
  scheduleApplied(event("Review", at("09:00"), at("10:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 09:00:00-10:00:00 UTC>
I ********* Event <EKEvent "Review" 09:00:00-10:00:00 UTC> seems to be out dated, hence not scheduling it.
<revert>
)");
}

TEST_F(SchedulePowerEvent, InTheWindowAnEventIsProcessedFromItsStartToItsEnd) {
  for (const auto& inProgress : {event("Starts", at("12:00"), at("13:00")), event("Ends", at("11:00"), at("12:00"))}) {
    SCOPED_TRACE(inProgress->description());
    schedule(inProgress);
    EXPECT_EQ(count("**** Calling 'getCurrentScheduledEventFromProfile' *************"), 1);
    story();
  }
}

TEST_F(SchedulePowerEvent, AnAllDayProfileFollowsTheEventWhateverItsTimesSay) {
  work->setAllDay(true);
  schedule(event("Concert", at("20:00"), at("22:00")));
  EXPECT_EQ(armed(), "t1 at 20:00:00");
}

TEST_F(SchedulePowerEvent, AnAllDayProfileFollowsTheEventInTheDaysLastSecondToo) {
  work->setAllDay(true);
  clock("23:59:59.500");
  schedule(event("Concert", at("24:30"), at("25:00")));
  EXPECT_EQ(armed(), "t1 at 2024-05-15 00:30:00");
}

TEST_F(SchedulePowerEvent, BeforeTheWindowAWakeUpIsArmedForTheWindowsStart) {
  work->setStartTime("2:00 PM");
  scheduleApplied(event("Review", at("11:00"), at("15:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 11:00:00-15:00:00 UTC>
I ****** Profile's start ime is not crossed, hence scheduling power wakeup at: 14:00:00 for applying profile.
I ******** Scheduling timer for 14:00:00 ***************
timer arm t1 at 14:00:00
<revert>
)");
  EXPECT_FALSE(work->isApplied());
}

TEST_F(SchedulePowerEvent, BeforeTheWindowAnIdleProfileIsNotReverted) {
  work->setStartTime("2:00 PM");
  schedule(event("Review", at("15:00"), at("16:00")));
  EXPECT_EQ(count("<revert"), 0);
  EXPECT_EQ(armed(), "t1 at 14:00:00");
}

TEST_F(SchedulePowerEvent, AfterTheWindowNothingIsArmed) {
  work->setEndTime("11:00 AM");
  schedule(event("Review", at("18:00"), at("19:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 18:00:00-19:00:00 UTC>
I ******* Event <EKEvent "Review" 18:00:00-19:00:00 UTC> seems to be out dated, hence not scheduling it.
)");
}

TEST_F(SchedulePowerEvent, AfterTheWindowAProfileThatIsStillAppliedIsReverted) {
  work->setEndTime("11:00 AM");
  scheduleApplied(event("Review", at("09:00"), at("10:00")));
  EXPECT_EQ(story(), R"(
I ******Scheduling power events for <EKEvent "Review" 09:00:00-10:00:00 UTC>
I ******* Event <EKEvent "Review" 09:00:00-10:00:00 UTC> seems to be out dated, hence not scheduling it.
I ******** Seems event is running/out, but the profile is still applied hence reverting it.
<revert>
)");
}

TEST_F(SchedulePowerEvent, AWindowOverMidnightIsNeverOpen) {
  work->setStartTime("10:00 PM");
  work->setEndTime("6:00 AM");
  schedule(event("Review", at("11:00"), at("13:00")));
  EXPECT_EQ(armed(), "t1 at 22:00:00");
}

TEST_F(SchedulePowerEvent, AWindowOverMidnightIsStillAwaitedInTheMomentOfItsStart) {
  work->setStartTime("12:00 PM");
  work->setEndTime("6:00 AM");
  schedule(event("Review", at("11:00"), at("13:00")));
  EXPECT_EQ(armed(), "t1 at 12:00:00");
  runTo("12:00:01");
  EXPECT_EQ(armed(), "") << "a moment later it has passed";
}

TEST_F(SchedulePowerEvent, TheWakeUpGoesToTheProfileThatTheEventCarries) {
  const auto other = addProfile("Gym");
  const Event review = event("Review", at("15:00"), at("16:00"));
  setHm_profile(review, other);
  manager().schedulePowerEvent(work, review);
  EXPECT_NE(other->timer(), nullptr);
  EXPECT_EQ(work->timer(), nullptr);
}

}  // namespace
}  // namespace hushmode
