// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What a plan of one profile ends in: nothing, a revert, a wake-up, an apply, or one of the short-cuts.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

using EventScheduling = SchedulerFixture;

TEST_F(EventScheduling, ADisabledAppliedProfileIsRevertedAndNothingIsScheduled) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  work->apply();
  work->setEnabled(false);
  story();
  plan(work);
  EXPECT_EQ(story(), R"(
<revert>
I Profile 'Work' not enabled. Hence returning from scheduling it...
)");
  EXPECT_FALSE(work->isApplied());
  EXPECT_TRUE(manager().scheduledEventsDict().empty());
}

TEST_F(EventScheduling, ADisabledProfileThatIsNotAppliedOnlyLogs) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  work->setEnabled(false);
  plan(work);
  EXPECT_EQ(story(), R"(
I Profile 'Work' not enabled. Hence returning from scheduling it...
)");
}

TEST_F(EventScheduling, PlanningNoProfileIsNothing) {
  clock("08:30");
  addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(nullptr);
  EXPECT_EQ(story(), "\n");
  EXPECT_TRUE(manager().scheduledEventsDict().empty());
}

TEST_F(EventScheduling, AFiredTimerOfADeletedProfilePlansNothing) {
  clock("08:30");
  const auto work = addProfile();
  addProfile("Gym");
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);
  manager().deleteProfile(work, nullptr, nullptr);
  story();
  runTo("09:00:01");
  EXPECT_EQ(story(), R"(
timer fire t1 (09:00:00)
I ************** schedulePowerEvent: t1 *****************
)");
}

TEST_F(EventScheduling, AFiredTimerPlansWhateverTheMasterSwitchSays) {
  clock("08:30");
  plan(addProfile());
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(manager().profiles().front());
  setMasterSwitch(false);
  runTo("09:00:01");
  EXPECT_TRUE(manager().profiles().front()->isApplied());
}

TEST_F(EventScheduling, OffItsNetworksAndOutsideItsWindowAnAppliedProfileIsOnlyRefreshed) {
  clock("07:00");
  const auto work = addProfile();
  work->addToWiFiNetwork("Home");
  work->apply();
  story();
  plan(work);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
I Checking whether the network *** '(null)' *** is in enabled list or not.
<refresh>
I Scheduling power wakeup for 'WiFi' at: 08:00:00 for applying profile Work.
I ******** Scheduling timer for 08:00:00 ***************
timer arm t1 at 08:00:00
)");
  EXPECT_TRUE(work->isApplied());
}

TEST_F(EventScheduling, OffItsNetworksAndOutsideItsWindowAnIdleProfileIsNotRefreshed) {
  clock("07:00");
  const auto work = addProfile();
  work->addToWiFiNetwork("Home");
  plan(work);
  EXPECT_EQ(count("<refresh>"), 0);
  EXPECT_EQ(count("setSilent is called......"), 0);
}

TEST_F(EventScheduling, WithNothingToFollowAnIdleProfileIsLeftAlone) {
  clock("08:30");
  const auto work = addProfile();
  plan(work);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
W No event found for Profile with id 1000
I No events found to be scheduled for Profile 'Work', between 08:00:00 & 17:00:00
I Got current event as: (null)
)");
  EXPECT_EQ(manager().scheduledEventsDict().find(work->identifier()), nullptr) << "asking makes no entry";
}

TEST_F(EventScheduling, WithNothingToFollowAnyMoreTheProfileIsRevertedAndItsEntryCleared) {
  clock("07:00");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);                                // t1: the window's start
  work->scheduleTimerForProfileStartDate();  // t2 and t3: the window's bounds
  work->apply();
  removeEvents();
  story();
  plan(work);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
I No events found to be scheduled for Profile 'Work', between 08:00:00 & 17:00:00
<revert>
I Got current event as: <EKEvent "Standup" 09:00:00-10:00:00 UTC>
timer invalidate t2
timer invalidate t3
I ******** Removing <EKEvent "Standup" 09:00:00-10:00:00 UTC> from scheduled list (<EKEvent "Standup" 09:00:00-10:00:00 UTC>)
)");
  EXPECT_EQ(armed(), "t1 at 08:00:00") << "the general timer runs on";
  const auto* list = manager().scheduledEventsDict().find(work->identifier());
  ASSERT_NE(list, nullptr) << "the entry stays, empty";
  EXPECT_TRUE(list->empty());
}

TEST_F(EventScheduling, AfterItsEntryWasClearedThereIsNoWarning) {
  clock("07:00");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);
  removeEvents();
  plan(work);
  story();
  plan(work);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
I No events found to be scheduled for Profile 'Work', between 08:00:00 & 17:00:00
I Got current event as: (null)
)");
}

TEST_F(EventScheduling, AnAllDayEventIsNeverScheduledUnlessIgnoredAndTheProfileIsReverted) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Holiday", at("00:00"), at("24:00"), {.allDay = true});
  addEvent("Standup", at("09:00"), at("10:00"));
  work->apply();
  story();
  plan(work);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
W No event found for Profile with id 1000
I No events found to be scheduled for Profile 'Work', between 08:00:00 & 17:00:00
<revert>
I Got current event as: (null)
)");
}

TEST_F(EventScheduling, EveryPlanReplacesTheFirstElementOfTheEntry) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);
  const Event first = followed(work);
  plan(work);
  const Event second = followed(work);
  EXPECT_NE(first, second) << "a query makes new objects";
  EXPECT_EQ(manager().scheduledEventsDict().find(work->identifier())->size(), 1u);
  EXPECT_EQ(hm_profile(second), work);
}

TEST_F(EventScheduling, TheCurrentEventIsBoundToTheProfileObjectThatAsks) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);
  const auto reloaded = HMProfile::init();
  reloaded->setIdentifier(work->identifier());
  const Event current = manager().getCurrentScheduledEventFromProfile(reloaded);
  ASSERT_EQ(current, followed(work));
  EXPECT_EQ(hm_profile(current), reloaded);
}

TEST_F(EventScheduling, OnlyTheVeryObjectIsRemovedFromTheEntry) {
  clock("08:30");
  const auto work = addProfile();
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);
  const Event old = followed(work);
  plan(work);
  story();
  manager().removeEventFromScheduledList(work, old);
  EXPECT_EQ(manager().scheduledEventsDict().find(work->identifier())->size(), 1u) << "the same entry, another object";
  manager().removeEventFromScheduledList(work, followed(work));
  EXPECT_TRUE(manager().scheduledEventsDict().find(work->identifier())->empty());
  manager().removeEventFromScheduledList(addProfile("Gym"), old);
  EXPECT_EQ(story(), R"(
I ******** Removing <EKEvent "Standup" 09:00:00-10:00:00 UTC> from scheduled list (<EKEvent "Standup" 09:00:00-10:00:00 UTC>)
I ******** Removing <EKEvent "Standup" 09:00:00-10:00:00 UTC> from scheduled list (<EKEvent "Standup" 09:00:00-10:00:00 UTC>)
I ******** Removing <EKEvent "Standup" 09:00:00-10:00:00 UTC> from scheduled list (null)
)");
}

}  // namespace
}  // namespace hushmode
