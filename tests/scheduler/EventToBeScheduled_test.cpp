// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The choice among the events of a profile, with what it logs on the way.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

class EventToBeScheduled : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    clock("12:00");
    work = addProfile();
    story();
  }

  std::string chosen(const Events& events) {
    for (const Event& event : events) setHm_profile(event, work);
    const Event event = manager().eventToBeScheduled(events);
    return event ? event->title().value_or("(null)") : "none";
  }

  Profile work;
};

constexpr auto cancelled = platform::EKEventStatus::Canceled;

TEST_F(EventToBeScheduled, NoEventsAndNoListAreTheSame) {
  EXPECT_EQ(manager().eventToBeScheduled(std::nullopt), nullptr);
  EXPECT_EQ(manager().eventToBeScheduled(Events()), nullptr);
  EXPECT_EQ(story(), "\n");
}

TEST_F(EventToBeScheduled, TheFirstEventThatQualifiesWins) {
  EXPECT_EQ(chosen({event("Over", at("09:00"), at("10:00")), event("Later", at("15:00"), at("16:00")),
                    event("Soon", at("13:00"), at("14:00"))}),
            "Later");
  EXPECT_EQ(story(), R"(
bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
bare ***** Checking whether the event start date: 15:00:00 and end dates 16:00:00 with current time..
)");
}

TEST_F(EventToBeScheduled, AnEventInProgressWinsIfItComesFirst) {
  EXPECT_EQ(chosen({event("Now", at("11:00"), at("13:00")), event("After hours", at("18:00"), at("19:00"))}), "Now");
}

TEST_F(EventToBeScheduled, AnEventAfterTheWindowWinsOverALaterOneInProgress) {
  EXPECT_EQ(chosen({event("After hours", at("18:00"), at("19:00")), event("Now", at("11:00"), at("13:00"))}),
            "After hours");
}

TEST_F(EventToBeScheduled, AmongEqualStartsTheFirstWinsWhileTheyQualifyAtOnce) {
  EXPECT_EQ(chosen({event("One", at("14:00"), at("15:00")), event("Two", at("14:00"), at("15:00"))}), "One");
}

TEST_F(EventToBeScheduled, OfAnAllDayProfileTheEarliestStartWinsAndAmongEqualsTheLast) {
  work->setAllDay(true);
  EXPECT_EQ(chosen({event("Late", at("15:00"), at("16:00")), event("One", at("14:00"), at("15:00")),
                    event("Over", at("08:00"), at("09:00")), event("Two", at("14:00"), at("14:30")),
                    event("Evening", at("20:00"), at("21:00"))}),
            "Two");
}

TEST_F(EventToBeScheduled, OfAnAllDayProfileAnEventThatStartsNowQualifies) {
  work->setAllDay(true);
  EXPECT_EQ(chosen({event("Late", at("15:00"), at("16:00")), event("Now", at("12:00"), at("13:00"))}), "Now");
}

TEST_F(EventToBeScheduled, OfAnAllDayProfileEventsThatAreOverLeaveNothing) {
  work->setAllDay(true);
  EXPECT_EQ(chosen({event("Over", at("08:00"), at("09:00"))}), "none");
}

TEST_F(EventToBeScheduled, CancelledEventsAreLoggedInBothPasses) {
  EXPECT_EQ(
      chosen({event("Off", at("13:00"), at("14:00"), {.status = cancelled}), event("Over", at("09:00"), at("10:00"))}),
      "none");
  EXPECT_EQ(story(), R"(
I **** 3. Event 'Off' is cancelled, hence ignoring it.
bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
I **** 4. Event 'Off' is cancelled, hence ignoring it.
)");
}

TEST_F(EventToBeScheduled, TheSecondPassIsOnlyTriedAfterAnEmptyFirst) {
  EXPECT_EQ(
      chosen({event("Off", at("13:00"), at("14:00"), {.status = cancelled}), event("Soon", at("13:00"), at("14:00"))}),
      "Soon");
  EXPECT_EQ(count("**** 4."), 0);
}

TEST_F(EventToBeScheduled, AnAllDayEventThatIsNotIgnoredBlocksAllOthers) {
  EXPECT_EQ(
      chosen({event("Holiday", at("00:00"), at("24:00"), {.allDay = true}), event("Soon", at("13:00"), at("14:00")),
              event("Off", at("13:00"), at("14:00"), {.status = cancelled})}),
      "none");
  EXPECT_EQ(story(), "\n") << "neither the others nor the second pass are looked at";
}

TEST_F(EventToBeScheduled, AnAllDayEventBehindOneThatQualifiesDoesNotMatter) {
  EXPECT_EQ(
      chosen({event("Soon", at("13:00"), at("14:00")), event("Holiday", at("00:00"), at("24:00"), {.allDay = true})}),
      "Soon");
}

TEST_F(EventToBeScheduled, AnIgnoredAllDayEventIsPassedOver) {
  work->setAllDayEventsIgnored(true);
  EXPECT_EQ(
      chosen({event("Holiday", at("00:00"), at("24:00"), {.allDay = true}), event("Soon", at("13:00"), at("14:00"))}),
      "Soon");
  EXPECT_EQ(chosen({event("Holiday", at("00:00"), at("24:00"), {.allDay = true})}), "none") << "it began before now";
}

TEST_F(EventToBeScheduled, AnIgnoredAllDayEventSurvivesWhenItStartsNowOrLater) {
  work->setAllDayEventsIgnored(true);
  EXPECT_EQ(chosen({event("Tomorrow", at("24:00"), at("48:00"), {.allDay = true})}), "Tomorrow");
  EXPECT_EQ(chosen({event("This minute", at("12:00"), at("36:00"), {.allDay = true})}), "This minute");
}

TEST_F(EventToBeScheduled, AnEventWithoutATitleIsLoggedAsNone) {
  EXPECT_EQ(chosen({event(std::nullopt, at("13:00"), at("14:00"), {.status = cancelled})}), "none");
  EXPECT_EQ(count("**** 3. Event '(null)' is cancelled, hence ignoring it."), 1);
}

}  // namespace
}  // namespace hushmode
