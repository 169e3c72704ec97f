// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Planning a profile again while it is applied through an event: when the plan stops early, and what happens when the
// event has changed.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

class ShortCuts : public SchedulerFixture {
 protected:
  /// Applied through "Standup", 9:00 to 10:00, by the wake-up at its start; now it is 9:15.
  void SetUp() override {
    SchedulerFixture::SetUp();
    clock("08:30");
    work = addProfile();
    addEvent("Standup", at("09:00"), at("10:00"), {.uuid = "A"});
    plan(work);
    runTo("09:15");
    ASSERT_TRUE(work->isApplied());
    applied = followed(work);
    ASSERT_TRUE(hm_isProfileApplied(applied));
    story();
  }

  void replaceEvent(const char* uuid, Date start, Date end) {
    removeEvents();
    addEvent("Standup", start, end, {.uuid = uuid});
  }

  Profile work;
  Event applied;
};

TEST_F(ShortCuts, TheSameAppliedEventIsIgnored) {
  plan(work, false);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
I There is no change in the current scheduled event, hence ignoring the 'scheduleEvents:' call.
)");
  EXPECT_EQ(followed(work), applied);
}

TEST_F(ShortCuts, InAnyCaseTheSameAppliedEventIsStillIgnoredButTheSoundIsRefreshed) {
  plan(work, true);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
I No changes detected between the current event's profile and to be scheduled event's profile.
I Current profile is applied, and current time 09:15:00 is between start time 08:00:00 and end time 17:00:00. Hence ignoring the 'scheduleEvents:' call.
<refresh>
)");
  EXPECT_EQ(followed(work), applied);
}

TEST_F(ShortCuts, AnotherEventOfTheSameTimesIsIgnoredToo) {
  replaceEvent("B", at("09:00"), at("10:00"));
  plan(work, false);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
I No changes detected between the current event's profile and to be scheduled event's profile.
I Current profile is applied, and current time 09:15:00 is between start time 08:00:00 and end time 17:00:00. Hence ignoring the 'scheduleEvents:' call.
<refresh>
)");
}

TEST_F(ShortCuts, AnEventThatOverlapsTheAppliedOneTakesOverQuietly) {
  replaceEvent("A", at("09:00"), at("10:30"));
  plan(work, false);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 09:00:00 and end dates 10:30:00 with current time..
<revert quietly>
table 1000[0] := <EKEvent "Standup" 09:00:00-10:30:00 UTC>
I ******Scheduling power events for <EKEvent "Standup" 09:00:00-10:30:00 UTC>
I **** Calling 'getCurrentScheduledEventFromProfile' *************
I Processing scheduled event: <EKEvent "Standup" 09:00:00-10:30:00 UTC>
I [currentEvent.startDate timeIntervalSinceNow]: -900.000000 & startTimeDiffInt: -900
I [currentEvent.endDate timeIntervalSinceNow]: 4500.000000 & endTimeDiffInt: 4500
I ********************* TURNING PROFILE ON ******************
<apply>
I ************* Scheduling power wakeup at: 10:30:00 for reverting profile.
I ******** Scheduling timer for 10:30:00 ***************
timer invalidate t2
timer arm t3 at 10:30:00
)");
  EXPECT_FALSE(work->isSilent());
  EXPECT_FALSE(hm_isProfileApplied(applied));
  EXPECT_TRUE(hm_isProfileApplied(followed(work)));
}

TEST_F(ShortCuts, AnEventThatStartsAtTheAppliedOnesEndOverlapsIt) {
  replaceEvent("B", at("10:00"), at("11:00"));
  plan(work, false);
  EXPECT_EQ(count("<revert quietly>"), 1);
}

TEST_F(ShortCuts, AnEventThatStartsAfterTheAppliedOneRevertsItAloud) {
  replaceEvent("B", at("10:00:01"), at("11:00"));
  plan(work, false);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 10:00:01 and end dates 11:00:00 with current time..
table 1000[0] := <EKEvent "Standup" 10:00:01-11:00:00 UTC>
I ******Scheduling power events for <EKEvent "Standup" 10:00:01-11:00:00 UTC>
I ******** Scheduling power wakeup at: 10:00:01 for applying profile.
I ******** Scheduling timer for 10:00:01 ***************
timer invalidate t2
timer arm t3 at 10:00:01
<revert>
)");
}

TEST_F(ShortCuts, AMovedStartIsNoticedAlsoWhenTheEntryIsTheSame) {
  replaceEvent("A", at("08:45"), at("10:00"));
  plan(work, false);
  EXPECT_EQ(count("There is no change"), 0);
  EXPECT_EQ(count("No changes detected"), 0);
  EXPECT_EQ(count("<apply>"), 1) << "applied anew, through the new object";
  EXPECT_EQ(count("<revert"), 0) << "it starts before the applied one, so nothing overlaps";
}

TEST_F(ShortCuts, AnEventThroughWhichNothingIsAppliedIsPlannedAnew) {
  setHm_isProfileApplied(applied, false);
  plan(work, false);
  EXPECT_EQ(count("There is no change"), 0);
  EXPECT_EQ(count("No changes detected"), 0);
  EXPECT_NE(followed(work), applied);
}

TEST_F(ShortCuts, AChangeOfStatusAloneIsNotSeen) {
  removeEvents();
  addEvent("Standup", at("09:00"), at("10:00"), {.status = platform::EKEventStatus::Tentative, .uuid = "A"});
  work->setApplyProfileEventStatus(1);
  plan(work, false);
  EXPECT_EQ(count("There is no change"), 1);
}

TEST_F(ShortCuts, ADirectRevertLeavesTheEventMarkedAndThePlanStops) {
  work->revert();
  story();
  plan(work, false);
  EXPECT_EQ(count("There is no change"), 1);
  EXPECT_FALSE(work->isApplied());
  story();
  plan(work, true);
  EXPECT_EQ(count("******* Profile is not applied, hence not checking on Sound related settings."), 1);
  EXPECT_EQ(count("<refresh>"), 1);
  EXPECT_FALSE(work->isApplied());
}

TEST_F(ShortCuts, EditingTheWindowWhileItsEventIsAppliedChangesNothing) {
  work->setStartDate(at("09:10"));
  plan(work, true);
  EXPECT_EQ(count("Seems profiles are changed, hence not ignoring the schedule events call."), 0);
  EXPECT_EQ(count("No changes detected"), 1) << "both events carry the same profile";
}

TEST_F(ShortCuts, WithNothingAppliedASilenceCarriedOverIsCleared) {
  setHm_isProfileApplied(applied, false);
  work->setSilent(true);
  story();
  plan(work, false);
  EXPECT_FALSE(work->isSilent());
  EXPECT_EQ(count("setSilent is called......"), 1);
  EXPECT_EQ(count("<revert quietly>"), 0);
}

class ShortCutsBeyondTheWindow : public SchedulerFixture {};

TEST_F(ShortCutsBeyondTheWindow, AnUnchangedEventThatOutlastsTheWindowIsRevertedQuietly) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Workshop", at("09:00"), at("18:00"));
  plan(work);
  runTo("16:59");
  ASSERT_TRUE(work->isApplied());
  story();
  runTo("17:01");
  EXPECT_EQ(story(), R"(
timer fire t2 (17:00:00)
I ************** schedulePowerEvent: t2 *****************
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 09:00:00 and end dates 18:00:00 with current time..
I No changes detected between the current event's profile and to be scheduled event's profile.
<revert quietly>
table 1000[0] := <EKEvent "Workshop" 09:00:00-18:00:00 UTC>
I ******Scheduling power events for <EKEvent "Workshop" 09:00:00-18:00:00 UTC>
I ******* Event <EKEvent "Workshop" 09:00:00-18:00:00 UTC> seems to be out dated, hence not scheduling it.
)");
  EXPECT_FALSE(work->isApplied());
  EXPECT_EQ(armed(), "");
}

TEST_F(ShortCutsBeyondTheWindow, AWakeUpExactlyAtTheWindowsEndFindsItStillOpenAndTheProfileStays) {
  phone.wakeTimers().setLatency(0);
  clock("08:30");
  const auto work = addProfile();
  addEvent("Workshop", at("09:00"), at("18:00"));
  plan(work);
  runTo("17:01");
  EXPECT_TRUE(work->isApplied());
  EXPECT_EQ(count("Current profile is applied, and current time 17:00:00"), 1);
  EXPECT_EQ(armed(), "");
}

}  // namespace
}  // namespace hushmode
