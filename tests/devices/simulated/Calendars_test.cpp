// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/support/PhoneFixture.h"

#include <memory>

namespace hushmode {
namespace {

using platform::EKEvent;
using platform::EKEventStatus;
using platform::EKEventStore;
using Texts = std::vector<std::string>;

class CalendarsTest : public PhoneFixture {
 protected:
  std::vector<std::shared_ptr<platform::EKCalendar>> all() const {
    return store->calendarsForEntityType(platform::EKEntityType::Event);
  }
  std::vector<std::shared_ptr<EKEvent>> events(const std::string& from, const std::string& to) const {
    return store->eventsMatchingPredicate(store->predicateForEventsWithStartDate(at(from), at(to), all()));
  }
  Texts uids(const std::string& from, const std::string& to) const {
    Texts list;
    for (const auto& event : events(from, to)) list.push_back(event->uniqueId());
    return list;
  }
  void add(const char* uid, const char* start, const char* end, const char* calendar = "cal-A") {
    phone.calendars().add({uid, calendar, uid, at(start), at(end)});
  }

  const std::shared_ptr<EKEventStore> store = phone.eventKit().makeEventStore();
};

TEST_F(CalendarsTest, ListsItsCalendarsByIdentifier) {
  phone.calendars().addCalendar("cal-C", "Holidays", "Web", false);
  phone.calendars().addCalendar("cal-A", "Work", "Office");
  add("event", "09:00", "10:00", "cal-B");
  const auto calendars = all();
  ASSERT_EQ(calendars.size(), 3U);
  EXPECT_EQ(calendars[0]->title(), "Work");
  EXPECT_EQ(calendars[0]->source()->title(), "Office");
  EXPECT_TRUE(calendars[0]->allowsContentModifications());
  EXPECT_EQ(calendars[1]->calendarIdentifier(), "cal-B");
  EXPECT_FALSE(calendars[2]->allowsContentModifications());
  EXPECT_TRUE(store->calendarsForEntityType(platform::EKEntityType::Reminder).empty());
}

TEST_F(CalendarsTest, FindsWhatOverlapsTheSpan) {
  const struct {
    const char* name;
    const char* start;
    const char* end;
    bool found;  ///< In 10:00 to 12:00.
  } cases[] = {
      {"before", "08:00", "09:00", false},
      {"ends when the span begins", "09:00", "10:00", false},
      {"reaches into it", "09:00", "10:01", true},
      {"inside", "10:30", "11:00", true},
      {"around it", "09:00", "13:00", true},
      {"exactly it", "10:00", "12:00", true},
      {"starts at its end", "12:00", "13:00", true},
      {"after", "12:01", "13:00", false},
      {"an instant at its beginning", "10:00", "10:00", true},
      {"an instant inside", "11:00", "11:00", true},
      {"an instant at its end", "12:00", "12:00", true},
      {"an instant before", "09:59", "09:59", false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    add("event", each.start, each.end);
    EXPECT_EQ(!events("10:00", "12:00").empty(), each.found);
    phone.calendars().remove("event");
  }
}

TEST_F(CalendarsTest, OrdersByStartThenEndThenCalendarThenIdentifier) {
  add("z", "10:00", "11:00", "cal-A");
  add("a", "10:00", "11:00", "cal-B");
  add("b", "10:00", "11:00", "cal-A");
  add("longer", "10:00", "12:00", "cal-A");
  add("earlier", "09:00", "13:00", "cal-B");
  EXPECT_EQ(uids("00:00", "23:59:59"), (Texts{"earlier", "b", "z", "a", "longer"}));
}

TEST_F(CalendarsTest, AsksOnlyTheNamedCalendars) {
  add("a", "10:00", "11:00", "cal-A");
  add("b", "10:00", "11:00", "cal-B");
  const auto calendars = all();
  const auto find = [&](const std::vector<std::shared_ptr<platform::EKCalendar>>& asked) {
    return store->eventsMatchingPredicate(store->predicateForEventsWithStartDate(at("00:00"), at("23:00"), asked));
  };
  EXPECT_TRUE(find({}).empty());
  ASSERT_EQ(find({calendars[1]}).size(), 1U);
  EXPECT_EQ(find({calendars[1]})[0]->uniqueId(), "b");
  EXPECT_EQ(find({calendars[1], nullptr, calendars[0]}).size(), 2U);
  phone.calendars().addCalendar("cal-B", "Renamed");
  EXPECT_EQ(find({calendars[1]}).size(), 1U) << "a calendar from before its change";
}

TEST_F(CalendarsTest, AnswersSnapshotsThatNothingChanges) {
  add("event", "09:00", "10:00");
  const auto before = events("00:00", "23:00");
  EXPECT_NE(events("00:00", "23:00")[0], before[0]) << "new objects at every query";
  phone.calendars().move("event", at("11:00"), at("12:00"));
  phone.calendars().cancel("event");
  phone.calendars().setTitle("event", std::nullopt);
  const auto after = events("00:00", "23:00");
  EXPECT_EQ(before[0]->startDate(), at("09:00"));
  EXPECT_EQ(before[0]->status(), EKEventStatus::Confirmed);
  EXPECT_EQ(before[0]->title(), "event");
  EXPECT_EQ(after[0]->startDate(), at("11:00"));
  EXPECT_EQ(after[0]->endDate(), at("12:00"));
  EXPECT_EQ(after[0]->status(), EKEventStatus::Canceled);
  EXPECT_EQ(after[0]->title(), std::nullopt);
  EXPECT_EQ(after[0]->UUID(), before[0]->UUID());
}

TEST_F(CalendarsTest, FindsSingleEvents) {
  add("twice", "13:00", "14:00");
  add("twice", "09:00", "10:00");
  EXPECT_EQ(store->eventWithUniqueId("twice")->startDate(), at("09:00")) << "the first occurrence";
  EXPECT_EQ(store->eventWithUUID("twice")->startDate(), at("09:00"));
  EXPECT_EQ(store->eventWithIdentifier("cal-A:twice")->startDate(), at("09:00"));
  EXPECT_EQ(store->eventWithUniqueId("twice", at("13:00"))->endDate(), at("14:00"));
  EXPECT_EQ(store->eventWithUniqueId("twice", at("12:00")), nullptr);
  EXPECT_EQ(store->eventWithUniqueId("none"), nullptr);
  EXPECT_EQ(store->eventWithUUID("none"), nullptr);
  EXPECT_EQ(store->eventWithIdentifier("none"), nullptr);
}

TEST_F(CalendarsTest, TellsEachStoreOfEveryChangeFromTheRunLoop) {
  std::vector<std::shared_ptr<platform::Object>> senders;
  phone.notifications().addObserver(this, EKEventStore::changedNotification, nullptr,
                                    [&](const platform::Notification& change) { senders.push_back(change.sender); });
  const auto second = phone.eventKit().makeEventStore();
  add("event", "09:00", "10:00");
  EXPECT_TRUE(senders.empty());
  runFor(0);
  EXPECT_EQ(senders, (std::vector<std::shared_ptr<platform::Object>>{store, second}));
  phone.calendars().removeCalendar("cal-A");
  EXPECT_EQ(texts(), (Texts{"phone event added event", "phone calendar removed cal-A"}));
  EXPECT_TRUE(events("00:00", "23:00").empty());
}

TEST_F(CalendarsTest, RecordsEachChangeAsAStep) {
  phone.calendars().addCalendar("cal-A", "A");
  add("event", "09:00", "10:00");
  phone.calendars().move("event", at("11:00"), at("12:00"));
  phone.calendars().cancel("event");
  phone.calendars().setTitle("event", "Renamed");
  phone.calendars().remove("event");
  EXPECT_EQ(texts(), (Texts{"phone calendar added cal-A", "phone event added event", "phone event moved event",
                            "phone event status event 3", "phone event renamed event", "phone event removed event"}));
}

TEST_F(CalendarsTest, RefusesEventsThatCannotBe) {
  EXPECT_THROW(add("event", "10:00", "09:00"), std::invalid_argument);
  add("event", "09:00", "10:00");
  EXPECT_THROW(phone.calendars().move("event", at("10:00"), at("09:00")), std::invalid_argument);
  EXPECT_THROW(phone.calendars().cancel("none"), std::out_of_range);
  EXPECT_THROW(phone.calendars().remove("none"), std::out_of_range);
}

TEST_F(CalendarsTest, CanComeFromAnotherSource) {
  add("event", "09:00", "10:00");
  devices::MemoryCalendars other;
  other.add({"other", "cal-X", "Other", at("09:00"), at("10:00")});
  EXPECT_EQ(uids("00:00", "23:00"), Texts{"event"});
  phone.eventKit().setSource(&other);
  EXPECT_EQ(uids("00:00", "23:00"), Texts{"other"});
  other.remove("other");
  EXPECT_EQ(uids("00:00", "23:00"), Texts()) << "its changes are noticed";
  phone.eventKit().setSource(nullptr);
  EXPECT_EQ(uids("00:00", "23:00"), Texts{"event"});
}

}  // namespace
}  // namespace hushmode
