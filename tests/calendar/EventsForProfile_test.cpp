// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Today's events as one profile is given them.

#include "calendar/HMEventManager.h"
#include "tests/support/ProfilesFixture.h"

namespace hushmode {
namespace {

using platform::EKEventStatus;

/// A store that keeps the events that it has answered with.
class RememberingStore final : public platform::EKEventStore {
 public:
  using Event = std::shared_ptr<platform::EKEvent>;

  explicit RememberingStore(std::shared_ptr<platform::EKEventStore> real) : real_(std::move(real)) {}
  std::vector<std::shared_ptr<platform::EKCalendar>> calendarsForEntityType(
      platform::EKEntityType type) const override {
    return real_->calendarsForEntityType(type);
  }
  std::vector<Event> eventsMatchingPredicate(const platform::EKEventPredicate& predicate) const override {
    return answered = real_->eventsMatchingPredicate(predicate);
  }
  Event eventWithIdentifier(std::string_view identifier) const override {
    return real_->eventWithIdentifier(identifier);
  }
  Event eventWithUUID(std::string_view uuid) const override { return real_->eventWithUUID(uuid); }
  Event eventWithUniqueId(std::string_view uniqueId) const override { return real_->eventWithUniqueId(uniqueId); }
  Event eventWithUniqueId(std::string_view uniqueId, platform::Date occurrence) const override {
    return real_->eventWithUniqueId(uniqueId, occurrence);
  }

  mutable std::vector<Event> answered;

 private:
  std::shared_ptr<platform::EKEventStore> real_;
};

class EventsForProfile : public ProfilesFixture {
 protected:
  void SetUp() override { work = addProfile(); }

  std::optional<Events> events() const { return HMEventManager::sharedManager()->eventsForProfile(work); }
  /// The titles, separated by blanks; "none" when there is no list.
  std::string titles() const {
    const auto list = events();
    if (!list) return "none";
    std::string text;
    for (const Event& event : *list) text += (text.empty() ? "" : " ") + event->title().value_or("(null)");
    return text;
  }

  Profile work;
};

TEST_F(EventsForProfile, WithoutCalendarsThereIsNone) {
  addEvent("Standup", at("09:00"), at("10:00"));
  work->setCalendarIdentifiers(std::vector<std::string>{});
  EXPECT_EQ(events(), std::nullopt);
}

TEST_F(EventsForProfile, WithDeletedCalendarsOnlyThereIsNone) {
  addEvent("Standup", at("09:00"), at("10:00"));
  work->setCalendarIdentifiers(std::vector<std::string>{"gone", "long gone"});
  EXPECT_EQ(events(), std::nullopt);
}

TEST_F(EventsForProfile, WithoutAProfileThereIsNone) {
  EXPECT_EQ(HMEventManager::sharedManager()->eventsForProfile(nullptr), std::nullopt);
}

TEST_F(EventsForProfile, CalendarsWithoutEventsTodayGiveAnEmptyList) {
  phone.calendars().addCalendar("cal-A", "A");
  addEvent("Tomorrow", at("24:00"), at("25:00"));
  addEvent("Yesterday", at("00:00").addingSeconds(-3600), at("00:00"));
  ASSERT_NE(events(), std::nullopt);
  EXPECT_TRUE(events()->empty());
}

TEST_F(EventsForProfile, OnlyTheNamedCalendarsCount) {
  addEvent("Mine", at("09:00"), at("10:00"));
  addEvent("Other", at("11:00"), at("12:00"), {.calendar = "cal-B"});
  EXPECT_EQ(titles(), "Mine");
  work->setCalendarIdentifiers(std::vector<std::string>{"cal-B", "gone", "cal-A"});
  EXPECT_EQ(titles(), "Mine Other");
}

TEST_F(EventsForProfile, EventsKeepTheStoresOrderAndCarryTheProfile) {
  addEvent("Second", at("10:00"), at("11:00"));
  addEvent("First", at("09:00"), at("10:00"));
  EXPECT_EQ(titles(), "First Second");
  const std::optional<Events> list = events();
  for (const Event& event : *list) EXPECT_EQ(hm_profile(event), work);
}

TEST_F(EventsForProfile, TheEventsThatTheWindowDropsCarryTheProfileTooButNotTheCancelledOnes) {
  const auto store = std::make_shared<RememberingStore>(HMEventManager::sharedManager()->eventStore());
  HMEventManager::sharedManager()->setEventStore(store);
  clock("12:00");
  addEvent("Early", at("06:00"), at("07:00"));
  addEvent("Off", at("13:00"), at("14:00"), {.status = EKEventStatus::Canceled});
  EXPECT_EQ(titles(), "");
  ASSERT_EQ(store->answered.size(), 2u);
  EXPECT_EQ(hm_profile(store->answered[0]), work);
  EXPECT_EQ(hm_profile(store->answered[1]), nullptr);
}

TEST_F(EventsForProfile, EveryCallMakesNewObjectsWithoutAMark) {
  addEvent("Standup", at("09:00"), at("10:00"));
  const Event first = events()->front();
  setHm_isProfileApplied(first, true);
  const Event second = events()->front();
  EXPECT_NE(first, second);
  EXPECT_FALSE(hm_isProfileApplied(second));
}

TEST_F(EventsForProfile, AllEventsOfTodayCountForAnAllDayProfile) {
  clock("12:00");
  work->setAllDay(true);
  addEvent("Night", at("00:00"), at("01:00"));
  addEvent("Holiday", at("00:00"), at("24:00"), {.allDay = true});
  addEvent("Trip", at("00:00").addingSeconds(-86400), at("48:00"));
  addEvent("Midnight", at("23:59:59"), at("24:30"));
  EXPECT_EQ(titles(), "Trip Night Holiday Midnight");
}

TEST_F(EventsForProfile, TheDaysLastSecondIsNotAskedFor) {
  work->setAllDay(true);
  addEvent("Too late", at("23:59:59.500"), at("24:30"));
  EXPECT_EQ(titles(), "");
}

TEST_F(EventsForProfile, CancelledEventsAreSkippedWithALineEach) {
  addEvent("Off", at("09:00"), at("10:00"), {.status = EKEventStatus::Canceled});
  addEvent("On", at("09:00"), at("10:00"));
  const struct {
    bool allDay;
    const char* message;
    std::int64_t line;
  } cases[] = {{true, "**** 1. Event 'Off' is cancelled, hence ignoring it.", 95},
               {false, "**** 2. Event 'Off' is cancelled, hence ignoring it.", 104}};
  for (const auto& c : cases) {
    work->setAllDay(c.allDay);
    clearRecord();
    EXPECT_EQ(titles(), "On");
    ASSERT_EQ(phone.record().entries().size(), 1u) << "nothing else is logged";
    const platform::Dictionary& fields = phone.record().entries().front().fields;
    EXPECT_EQ(*fields.find("message"), c.message);
    EXPECT_EQ(*fields.find("line"), c.line);
    EXPECT_EQ(*fields.find("level"), "information");
    EXPECT_EQ(*fields.find("method"), "eventsForProfile:");
  }
}

TEST_F(EventsForProfile, TheOtherStatusesAllCountWhateverTheFilter) {
  addEvent("None", at("09:00"), at("10:00"), {.status = EKEventStatus::None});
  addEvent("Tentative", at("10:00"), at("11:00"), {.status = EKEventStatus::Tentative});
  work->setApplyProfileEventStatus(1);
  EXPECT_EQ(titles(), "None Tentative");
}

TEST_F(EventsForProfile, AnEventBeforeTheWindowCountsUntilItEnds) {
  addEvent("Early", at("06:00"), at("07:00"));
  clock("06:30");
  EXPECT_EQ(titles(), "Early");
  clock("07:30");
  EXPECT_EQ(titles(), "");
}

TEST_F(EventsForProfile, AnEventAfterTheWindowAndOneThatCoversItCountAllDay) {
  addEvent("Evening", at("18:00"), at("19:00"));
  addEvent("Cover", at("07:00"), at("18:00"));
  for (const char* now : {"06:00", "12:00", "18:30", "22:00"}) {
    clock(now);
    EXPECT_EQ(titles(), "Cover Evening") << now;
  }
}

TEST_F(EventsForProfile, AnEventInsideTheWindowCountsUntilItEnds) {
  addEvent("Review", at("09:00"), at("10:00"));
  clock("09:59:59.999");
  EXPECT_EQ(titles(), "Review");
  clock("10:00");
  EXPECT_EQ(titles(), "");
}

TEST_F(EventsForProfile, AnEventOfExactlyTheWindowCountsAlsoAfterIt) {
  addEvent("Shift", at("08:00"), at("17:00"));
  clock("20:00");
  EXPECT_EQ(titles(), "Shift");
}

TEST_F(EventsForProfile, AnAllDayEventIsAnEventLikeAnyOther) {
  addEvent("Holiday", at("00:00"), at("24:00"), {.allDay = true});
  work->setAllDayEventsIgnored(true);
  EXPECT_EQ(titles(), "Holiday");
}

TEST_F(EventsForProfile, TodayIsTheCurrentDayAlsoForAWindowOfYesterday) {
  addEvent("Today", at("09:00"), at("10:00"));
  addEvent("Tomorrow", at("33:00"), at("34:00"));
  EXPECT_EQ(titles(), "Today");  // The window is now that of this day, for good.
  phone.time().jumpTo(at("32:30"));
  EXPECT_EQ(titles(), "Tomorrow") << "after yesterday's window, by the fourth clause";
}

TEST_F(EventsForProfile, ATimeWithoutAColonIsAFault) {
  addEvent("Standup", at("09:00"), at("10:00"));
  work->setStartTime("8 AM");
  EXPECT_THROW(events(), std::out_of_range);
}

}  // namespace
}  // namespace hushmode
