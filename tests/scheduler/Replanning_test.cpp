// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What sets off plans of all profiles: the host, the master switch, changes of the calendars.

#include "calendar/HMEventManager.h"
#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

using Replanning = SchedulerFixture;

TEST_F(Replanning, EveryActiveProfileIsPlannedInOrder) {
  clock("12:00");
  addProfile("One");
  addProfile("Disabled")->setEnabled(false);
  const auto ending = addProfile("Ending");
  addProfile("Last");
  ending->apply();
  ending->setEnabled(false);
  story();
  manager().schedulePowerEventsForProfiles();
  EXPECT_EQ(story(), R"(
I ***************** schedulePowerEventsForProfiles is called ********************
I **** Trying to schedule events for profile 'One'
W No event found for Profile with id 1000
I No events found to be scheduled for Profile 'One', between 08:00:00 & 17:00:00
I Got current event as: (null)
<revert>
I Profile 'Ending' not enabled. Hence returning from scheduling it...
I **** Trying to schedule events for profile 'Last'
W No event found for Profile with id 1003
I No events found to be scheduled for Profile 'Last', between 08:00:00 & 17:00:00
I Got current event as: (null)
)");
}

TEST_F(Replanning, WithTheMasterSwitchOffNothingIsPlannedNorReloaded) {
  const auto work = addProfile();
  setMasterSwitch(false);
  manager().schedulePowerEventsForProfiles();
  manager().schedulePowerEventsForProfiles(true);
  EXPECT_EQ(story(), R"(
I ***************** schedulePowerEventsForProfiles is called ********************
)");
  ASSERT_EQ(manager().profiles().size(), 1u);
  EXPECT_EQ(manager().profiles().front(), work);
}

TEST_F(Replanning, WithoutAReloadTheObjectsStayAndAnUnchangedEventIsIgnored) {
  clock("12:00");
  const auto work = addProfile();
  addEvent("Now", at("11:00"), at("13:00"));
  manager().schedulePowerEventsForProfiles(false);
  story();
  manager().schedulePowerEventsForProfiles(false);
  EXPECT_EQ(manager().profiles().front(), work);
  EXPECT_EQ(count("There is no change in the current scheduled event"), 1);
}

TEST_F(Replanning, AReloadReplacesTheObjectsAndProceedsInAnyCase) {
  clock("12:00");
  const auto work = addProfile();
  addEvent("Now", at("11:00"), at("13:00"));
  manager().schedulePowerEventsForProfiles(true);  // The file is missing, so nothing is left to plan.
  EXPECT_TRUE(manager().profiles().empty());
  manager().profiles().push_back(work);
  manager().schedulePowerEventsForProfiles(false);  // Applies, and thereby writes the file.
  ASSERT_TRUE(work->isApplied());
  story();
  manager().schedulePowerEventsForProfiles(true);
  ASSERT_EQ(manager().profiles().size(), 1u);
  EXPECT_NE(manager().profiles().front(), work);
  EXPECT_EQ(hm_profile(followed(work)), manager().profiles().front()) << "the event goes over to the new object";
  EXPECT_EQ(count("There is no change"), 0);
  EXPECT_EQ(count("<refresh>"), 1);
}

TEST_F(Replanning, AllAppliedProfilesAreRevertedQuietlyOnRequest) {
  const auto one = addProfile("One"), idle = addProfile("Idle"), two = addProfile("Two");
  one->apply();
  two->apply();
  two->setEnabled(false);
  story();
  manager().revertAppliedProfilesIfAny();
  EXPECT_EQ(story(), "\n<revert quietly>\n<revert quietly>\n");
  EXPECT_FALSE(one->isApplied() || idle->isApplied() || two->isApplied());
}

TEST_F(Replanning, WithAnEmptyListTheRequestReadsTheFileFirst) {
  addProfile()->apply();
  manager().profiles().clear();
  story();
  manager().revertAppliedProfilesIfAny();
  EXPECT_EQ(story(), "\n<revert quietly>\n");
  ASSERT_EQ(manager().profiles().size(), 1u);
  EXPECT_FALSE(manager().profiles().front()->isApplied());
}

TEST_F(Replanning, ProfilesOfOneIdentifierAreEachReverted) {
  const auto first = addProfile(), twin = addProfile();
  twin->setIdentifier(first->identifier());
  first->apply();
  manager().profiles() = {first, twin};
  twin->apply();  // Takes the first one's place.
  manager().profiles() = {first, twin};
  story();
  manager().revertAppliedProfilesIfAny();
  EXPECT_EQ(story(), "\n<revert quietly>\n<revert quietly>\n");
  EXPECT_FALSE(first->isApplied() || twin->isApplied());
}

TEST_F(Replanning, TheMasterSwitchTurnedOffRevertsAloud) {
  const auto work = addProfile();
  work->apply();
  setMasterSwitch(false);
  story();
  manager().handleHushmodeEnabledOrDisabled();
  EXPECT_EQ(story(), "\n<revert>\n");
  EXPECT_FALSE(work->isApplied());
  manager().handleHushmodeEnabledOrDisabled();
  EXPECT_EQ(story(), "\n") << "nothing is applied any more";
}

TEST_F(Replanning, TheMasterSwitchTurnedOnDoesNothingByItself) {
  addProfile()->apply();
  story();
  manager().handleHushmodeEnabledOrDisabled();
  EXPECT_EQ(story(), "\n");
}

TEST_F(Replanning, ThreeCalendarChangesASecondApartAreOnePlanTwoAndAHalfSecondsAfterTheThird) {
  addProfile();
  HMEventManager::sharedManager();
  for (const char* title : {"One", "Two", "Three"}) {
    if (*title != 'O') runFor(1);
    addEvent(title, at("20:00"), at("21:00"));
  }
  runTo("08:00:04.499");
  EXPECT_EQ(count("Handling event store changes"), 0);
  EXPECT_NE(manager().eventStoreUpdateTimer(), nullptr);
  runTo("08:00:04.500");
  EXPECT_EQ(count("Handling event store changes"), 1);
  EXPECT_EQ(manager().eventStoreUpdateTimer(), nullptr);
  runTo("08:01");
  EXPECT_EQ(count("Handling event store changes"), 1);
}

TEST_F(Replanning, ACalendarChangePlansWithoutAReloadAndIgnoresAnUnchangedEvent) {
  clock("12:00");
  const auto work = addProfile();
  addEvent("Now", at("11:00"), at("13:00"));
  plan(work);
  addEvent("Evening", at("20:00"), at("21:00"));
  story();
  runFor(3);
  EXPECT_EQ(manager().profiles().front(), work);
  EXPECT_EQ(story(), R"(
I ***************** Handling event store changes ********************
I ***************** schedulePowerEventsForProfiles is called ********************
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 11:00:00 and end dates 13:00:00 with current time..
I There is no change in the current scheduled event, hence ignoring the 'scheduleEvents:' call.
)");
}

TEST_F(Replanning, AnEventThatIsCancelledWhileAppliedIsReverted) {
  clock("12:00");
  const auto work = addProfile();
  addEvent("Now", at("11:00"), at("13:00"));
  plan(work);
  ASSERT_TRUE(work->isApplied());
  phone.calendars().cancel("Now");
  runFor(3);
  EXPECT_FALSE(work->isApplied());
  EXPECT_EQ(followed(work), nullptr);
}

TEST_F(Replanning, BeforeTheFirstUseOfTheCalendarsNobodyListens) {
  addProfile();
  addEvent("One", at("20:00"), at("21:00"));
  runFor(10);
  EXPECT_EQ(story(), "\n");
}

TEST_F(Replanning, TheDebounceEndsWithTheProcess) {
  addProfile();
  HMEventManager::sharedManager();
  addEvent("One", at("20:00"), at("21:00"));
  runFor(1);
  restartProcess();
  story();
  runFor(10);
  EXPECT_EQ(story(), "\n");
}

}  // namespace
}  // namespace hushmode
