// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Turning a profile on and off by the calendar event that it follows.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

using platform::EKEventStatus;

class ProcessByEvent : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    clock("12:00");
    work = addProfile();
  }

  /// Makes the profile follow an event.
  Event follow(const Event& event) {
    setHm_profile(event, work);
    manager().scheduledEventsDict().record(work->identifier(), event);
    return event;
  }
  /// The same, applied through it.
  Event followApplied(const Event& event) {
    follow(event);
    applyProfile(event);
    return event;
  }
  void process() {
    story();
    manager().processScheduledEvent(work);
  }
  std::string switched() {
    process();
    if (count("TURNING PROFILE ON") == 1) return "on";
    return count("TURNING PROFILE OFF") == 1 ? "off" : "not at all";
  }

  Profile work;
};

TEST_F(ProcessByEvent, AnEventInProgressTurnsTheProfileOnUntilTheEventsEnd) {
  const Event now = follow(event("Now", at("11:00"), at("13:00")));
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
I Processing scheduled event: <EKEvent "Now" 11:00:00-13:00:00 UTC>
I [currentEvent.startDate timeIntervalSinceNow]: -3600.000000 & startTimeDiffInt: -3600
I [currentEvent.endDate timeIntervalSinceNow]: 3600.000000 & endTimeDiffInt: 3600
I ********************* TURNING PROFILE ON ******************
<apply>
I ************* Scheduling power wakeup at: 13:00:00 for reverting profile.
I ******** Scheduling timer for 13:00:00 ***************
timer arm t1 at 13:00:00
)");
  EXPECT_TRUE(hm_isProfileApplied(now));
}

TEST_F(ProcessByEvent, AnEventThatOutlastsTheWindowIsRevertedAtTheWindowsEnd) {
  follow(event("Long", at("11:00"), at("18:00")));
  process();
  EXPECT_EQ(armed(), "t1 at 17:00:00");
}

TEST_F(ProcessByEvent, AnAllDayProfileIsRevertedAtTheEventsEndAlsoTomorrow) {
  work->setAllDay(true);
  follow(event("Night", at("11:00"), at("28:00")));
  process();
  EXPECT_EQ(armed(), "t1 at 2024-05-15 04:00:00");
}

TEST_F(ProcessByEvent, AStartNineSecondsAheadIsNowAndTenIsNot) {
  follow(event("Soon", at("12:00:10"), at("13:00")));
  EXPECT_EQ(switched(), "not at all");
  follow(event("Soon", at("12:00:09.900"), at("13:00")));
  EXPECT_EQ(switched(), "on");
}

TEST_F(ProcessByEvent, TheWakeUpIsAskedForAlsoWhenADisabledProfileWasNotApplied) {
  const Event now = follow(event("Now", at("11:00"), at("13:00")));
  work->setEnabled(false);
  process();
  EXPECT_EQ(count("<apply>"), 0);
  EXPECT_FALSE(hm_isProfileApplied(now));
  EXPECT_EQ(armed(), "t1 at 13:00:00");
}

TEST_F(ProcessByEvent, AStatusThatTheFilterRefusesLeavesAllAsItIs) {
  follow(event("Now", at("11:00"), at("13:00")));
  work->setApplyProfileEventStatus(2);
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
I ********************* UNBALE TO TURN ON PROFILE, Profile Status: 2 & Event Status: 1 ******************
)");
  EXPECT_EQ(armed(), "");
}

TEST_F(ProcessByEvent, TheFilterHoldsTheTurningOffBackToo) {
  followApplied(event("Over", at("11:00"), at("11:59:58")));
  work->setApplyProfileEventStatus(2);
  EXPECT_EQ(switched(), "not at all");
  EXPECT_TRUE(work->isApplied());
}

TEST_F(ProcessByEvent, AStatusThatTheFilterWantsPasses) {
  follow(event("Now", at("11:00"), at("13:00"), {.status = EKEventStatus::Tentative}));
  work->setApplyProfileEventStatus(2);
  EXPECT_EQ(switched(), "on");
}

TEST_F(ProcessByEvent, WithoutAnEventTheProfilesTimerIsStoppedAndNothingApplied) {
  work->beginTimerForDate(at("15:00"));
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
W No event found for Profile with id 1000
I Processing scheduled event: (null)
I [currentEvent.startDate timeIntervalSinceNow]: 0.000000 & startTimeDiffInt: 0
I [currentEvent.endDate timeIntervalSinceNow]: 0.000000 & endTimeDiffInt: 0
I ********************* TURNING PROFILE ON ******************
I ************* Scheduling power wakeup at: (null) for reverting profile.
I ******** Scheduling timer for (null) ***************
timer invalidate t1
E Supplied Date '(null)' is invalid or in the past..
)");
  EXPECT_EQ(armed(), "");
  EXPECT_FALSE(work->isApplied());
}

TEST_F(ProcessByEvent, WithoutAnEventAFilterSeesTheStatusNone) {
  work->setApplyProfileEventStatus(1);
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
W No event found for Profile with id 1000
I ********************* UNBALE TO TURN ON PROFILE, Profile Status: 1 & Event Status: 0 ******************
)");
}

TEST_F(ProcessByEvent, AnAllDayEventAppliesAnIdleProfileUntilTheWindowsEnd) {
  follow(event("Holiday", at("00:00"), at("24:00"), {.allDay = true}));
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
I ********************* TURNING PROFILE ON ******************
<apply>
I ************* Scheduling power wakeup at: 17:00:00 for reverting profile.
I ******** Scheduling timer for 17:00:00 ***************
timer arm t1 at 17:00:00
)");
}

TEST_F(ProcessByEvent, AnAllDayEventLeavesAnAppliedProfileAlone) {
  follow(event("Holiday", at("00:00"), at("24:00"), {.allDay = true}));
  work->apply();
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
)");
}

TEST_F(ProcessByEvent, AnAllDayEventThatIsIgnoredAppliesNothing) {
  follow(event("Holiday", at("00:00"), at("24:00"), {.allDay = true}));
  work->setAllDayEventsIgnored(true);
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
)");
}

TEST_F(ProcessByEvent, AnAllDayEventIsFilteredByStatus) {
  follow(event("Holiday", at("00:00"), at("24:00"), {.allDay = true}));
  work->setApplyProfileEventStatus(3);
  EXPECT_EQ(switched(), "not at all");
  EXPECT_EQ(count("Profile Status: 3 & Event Status: 1"), 1);
}

TEST_F(ProcessByEvent, AnEventThatEndedTurnsTheProfileOffPlansAfreshAndOnlyThenIsRemoved) {
  addEvent("Review", at("15:00"), at("16:00"));
  followApplied(event("Over", at("11:00"), at("11:59:57")));
  process();
  EXPECT_EQ(story(), R"(
I **** Calling 'getCurrentScheduledEventFromProfile' *************
I Processing scheduled event: <EKEvent "Over" 11:00:00-11:59:57 UTC>
I [currentEvent.startDate timeIntervalSinceNow]: -3600.000000 & startTimeDiffInt: -3600
I [currentEvent.endDate timeIntervalSinceNow]: -3.000000 & endTimeDiffInt: -3
I ********************* TURNING PROFILE OFF ******************
<revert>
I Calling schedule evetns from processScheduledEvent:
I ***************** schedulePowerEventsForProfiles is called ********************
I **** Trying to schedule events for profile 'Work'
bare ***** Checking whether the event start date: 15:00:00 and end dates 16:00:00 with current time..
table 1000[0] := <EKEvent "Review" 15:00:00-16:00:00 UTC>
I ******Scheduling power events for <EKEvent "Review" 15:00:00-16:00:00 UTC>
I ******** Scheduling power wakeup at: 15:00:00 for applying profile.
I ******** Scheduling timer for 15:00:00 ***************
timer arm t1 at 15:00:00
I ******** Removing <EKEvent "Over" 11:00:00-11:59:57 UTC> from scheduled list (<EKEvent "Review" 15:00:00-16:00:00 UTC>)
)");
  ASSERT_NE(followed(work), nullptr) << "what the plan recorded anew stays";
  EXPECT_EQ(followed(work)->title(), "Review");
}

TEST_F(ProcessByEvent, TurningOffPlansEveryActiveProfile) {
  const auto gym = addProfile("Gym");
  followApplied(event("Over", at("11:00"), at("11:59:57")));
  process();
  EXPECT_EQ(count("**** Trying to schedule events for profile 'Gym'"), 1);
}

TEST_F(ProcessByEvent, AnEventLongOverTurnsOffWhatWasAppliedThroughItAndNothingElse) {
  followApplied(event("Over", at("09:00"), at("10:00")));
  EXPECT_EQ(switched(), "off");
  follow(event("Over", at("09:00"), at("10:00")));
  EXPECT_EQ(switched(), "not at all");
}

TEST_F(ProcessByEvent, AnAppliedEventThatGoesOnInsideTheWindowIsLeftAlone) {
  followApplied(event("Now", at("11:00"), at("13:00")));
  EXPECT_EQ(switched(), "not at all");
  EXPECT_TRUE(work->isApplied());
}

TEST_F(ProcessByEvent, AnAppliedEventThatGoesOnToTheWindowsEndOrBeyondIsTurnedOff) {
  followApplied(event("To the end", at("11:00"), at("17:00")));
  EXPECT_EQ(switched(), "off");
  followApplied(event("Beyond", at("11:00"), at("18:00")));
  EXPECT_EQ(switched(), "off");
}

TEST_F(ProcessByEvent, ACancelledEventIsNotInProgress) {
  follow(event("Off", at("11:00"), at("13:00"), {.status = EKEventStatus::Canceled}));
  EXPECT_EQ(switched(), "not at all");
}

}  // namespace
}  // namespace hushmode
