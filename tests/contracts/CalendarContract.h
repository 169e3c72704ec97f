// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/EventKit.h"
#include "platform/Foundation.h"

#include <chrono>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

/// What holds for the calendars of every phone, wherever they are kept.
namespace hushmode::contracts {

/// An entry of a calendar, its times on the phone's clock: "2026-03-30 08:00", or "2026-03-30" where it lasts all day;
/// the end is then the day after its last one.
struct CalendarEntry {
  std::string uid, title, start, end;
  platform::EKEventStatus status = platform::EKEventStatus::Confirmed;
  int days = 1;  ///< It occurs at this time on so many days.
  /// One of the occurrences may be at another time.
  struct Moved {
    std::string from, start, end;
  };
  std::vector<Moved> moved = {};

  bool isAllDay() const { return start.size() == 10; }
};

/// A phone in Berlin, and the programs that its user edits calendars with. What they do has been noticed, and told,
/// when the call returns.
class CalendarsWorld {
 public:
  virtual ~CalendarsWorld() = default;
  virtual platform::EventKit& eventKit() = 0;
  virtual platform::NotificationCenter& notifications() = 0;
  /// Adds the entry, or replaces the one with its UID, in the calendar of that title, which is made if need be.
  virtual void put(const std::string& calendar, const CalendarEntry& entry) = 0;
  virtual void remove(const std::string& calendar, const std::string& uid) = 0;

  const devices::TimeZone& zone() const { return *zone_; }
  std::int64_t instant(const std::string& text) const {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    const int read = std::sscanf(text.c_str(), "%d-%d-%d %d:%d", &year, &month, &day, &hour, &minute);
    if (read != 3 && read != 5) throw std::invalid_argument("no time: " + text);
    const std::chrono::sys_days date = std::chrono::year(year) / month / day;
    return zone_->utcFromLocal(date.time_since_epoch().count() * std::int64_t{86'400} + hour * 3600 + minute * 60);
  }
  platform::Date date(const std::string& text) const { return platform::Date(static_cast<double>(instant(text))); }

  const std::shared_ptr<const devices::TimeZone> zone_ = devices::TimeZone::named("Europe/Berlin");
};

template <class World>
class CalendarContract : public ::testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  CalendarContract() { count(store); }
  ~CalendarContract() override { world.notifications().removeObserver(this); }

  /// Counts the notices of changes that have this store as their sender.
  void count(const std::shared_ptr<platform::EKEventStore>& sender) {
    world.notifications().addObserver(this, platform::EKEventStore::changedNotification, sender,
                                      [this, key = sender.get()](const platform::Notification& notification) {
                                        ++notices[key];
                                        EXPECT_EQ(notification.sender.get(), key);
                                      });
  }
  std::vector<std::shared_ptr<platform::EKEvent>> events(const std::string& from, const std::string& to) {
    return store->eventsMatchingPredicate(store->predicateForEventsWithStartDate(
        world.date(from), world.date(to), store->calendarsForEntityType(platform::EKEntityType::Event)));
  }
  /// "03-30 08:00 to 03-30 09:00 Title", with "(all day)" where it is, and the status unless it is confirmed.
  Texts texts(const std::string& from, const std::string& to) {
    constexpr const char* kStatus[] = {" (no status)", "", " (tentative)", " (cancelled)"};
    Texts list;
    for (const auto& event : events(from, to)) {
      list.push_back(clock(event->startDate()) + " to " + clock(event->endDate()) + " " + event->title().value_or("-") +
                     (event->isAllDay() ? " (all day)" : "") + kStatus[static_cast<int>(event->status())]);
    }
    return list;
  }
  std::string clock(platform::Date date) const {
    const auto wall = world.zone().localFromUtc(static_cast<std::int64_t>(date.secondsSince1970()));
    const std::chrono::sys_seconds time{std::chrono::seconds(wall)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day civil(day);
    const long minutes = static_cast<long>((time - day).count()) / 60;
    char text[40];
    std::snprintf(text, sizeof text, "%02u-%02u %02ld:%02ld", static_cast<unsigned>(civil.month()),
                  static_cast<unsigned>(civil.day()), minutes / 60, minutes % 60);
    return text;
  }

  World world;
  std::map<const platform::EKEventStore*, int> notices;
  const std::shared_ptr<platform::EKEventStore> store = world.eventKit().makeEventStore();
};

TYPED_TEST_SUITE_P(CalendarContract);

TYPED_TEST_P(CalendarContract, AnEventThatIsAddedIsFound) {
  EXPECT_TRUE(this->events("2026-03-30", "2026-03-31").empty());
  this->world.put("Work", {"standup", "Stand-up, daily; short", "2026-03-30 08:00", "2026-03-30 08:15"});
  const auto events = this->events("2026-03-30", "2026-03-31");
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0]->title(), "Stand-up, daily; short");
  EXPECT_EQ(events[0]->startDate(), this->world.date("2026-03-30 08:00"));
  EXPECT_EQ(events[0]->endDate(), this->world.date("2026-03-30 08:15"));
  EXPECT_EQ(events[0]->status(), platform::EKEventStatus::Confirmed);
  EXPECT_EQ(events[0]->uniqueId(), "standup");
  EXPECT_FALSE(events[0]->isAllDay());
  ASSERT_TRUE(events[0]->calendar());
  EXPECT_EQ(events[0]->calendar()->title(), "Work");
  for (const auto& found : {this->store->eventWithUniqueId("standup"), this->store->eventWithUUID(events[0]->UUID()),
                            this->store->eventWithIdentifier(events[0]->eventIdentifier()),
                            this->store->eventWithUniqueId("standup", this->world.date("2026-03-30 08:00"))}) {
    ASSERT_TRUE(found);
    EXPECT_EQ(found->startDate(), events[0]->startDate());
  }
  EXPECT_FALSE(this->store->eventWithUniqueId("standup", this->world.date("2026-03-30 08:01")));
}

TYPED_TEST_P(CalendarContract, AnEventThatIsMovedIsFoundWhereItIsNow) {
  this->world.put("Work", {"e", "Meeting", "2026-03-30 08:00", "2026-03-30 09:00"});
  const auto before = this->events("2026-03-30", "2026-03-31");
  ASSERT_EQ(before.size(), 1U);
  this->world.put("Work", {"e", "Meeting", "2026-03-30 17:00", "2026-03-30 18:30"});
  EXPECT_EQ(this->texts("2026-03-30", "2026-03-31"), (std::vector<std::string>{"03-30 17:00 to 03-30 18:30 Meeting"}));
  EXPECT_EQ(before[0]->startDate(), this->world.date("2026-03-30 08:00")) << "an event is a snapshot";
  EXPECT_EQ(this->store->eventWithUUID(before[0]->UUID())->startDate(), this->world.date("2026-03-30 17:00"));
}

TYPED_TEST_P(CalendarContract, AnEventThatIsCancelledSaysSo) {
  CalendarEntry entry{"e", "Meeting", "2026-03-30 08:00", "2026-03-30 09:00"};
  this->world.put("Work", entry);
  entry.status = platform::EKEventStatus::Tentative;
  this->world.put("Work", entry);
  EXPECT_EQ(this->texts("2026-03-30", "2026-03-31"),
            (std::vector<std::string>{"03-30 08:00 to 03-30 09:00 Meeting (tentative)"}));
  entry.status = platform::EKEventStatus::Canceled;
  this->world.put("Work", entry);
  EXPECT_EQ(this->texts("2026-03-30", "2026-03-31"),
            (std::vector<std::string>{"03-30 08:00 to 03-30 09:00 Meeting (cancelled)"}));
}

TYPED_TEST_P(CalendarContract, AnEventThatIsRemovedIsGone) {
  this->world.put("Work", {"e", "Meeting", "2026-03-30 08:00", "2026-03-30 09:00"});
  this->world.put("Work", {"f", "Other", "2026-03-30 08:00", "2026-03-30 09:00"});
  this->world.remove("Work", "e");
  EXPECT_EQ(this->texts("2026-03-30", "2026-03-31"), (std::vector<std::string>{"03-30 08:00 to 03-30 09:00 Other"}));
  EXPECT_FALSE(this->store->eventWithUUID("e"));
}

TYPED_TEST_P(CalendarContract, ADayLastsFromMidnightToMidnightOnThePhonesClock) {
  this->world.put("Work", {"e", "Clocks go forward", "2026-03-29", "2026-03-30"});
  const auto events = this->events("2026-03-29", "2026-03-30");
  ASSERT_EQ(events.size(), 1U);
  EXPECT_TRUE(events[0]->isAllDay());
  EXPECT_EQ(events[0]->startDate(), this->world.date("2026-03-29"));
  EXPECT_EQ(events[0]->endDate() - events[0]->startDate(), 23 * 3600);
  EXPECT_TRUE(this->texts("2026-03-30", "2026-03-31").empty());
  EXPECT_TRUE(this->texts("2026-03-28", "2026-03-28 23:59").empty());
}

TYPED_TEST_P(CalendarContract, ARepeatingEventOccursAtTheSameHourAndWhereOneOfItWasMoved) {
  CalendarEntry entry{"e", "Stand-up", "2026-03-28 08:00", "2026-03-28 08:15"};
  entry.days = 3;
  this->world.put("Work", entry);
  EXPECT_EQ(this->texts("2026-03-27", "2026-04-10"),
            (std::vector<std::string>{"03-28 08:00 to 03-28 08:15 Stand-up", "03-29 08:00 to 03-29 08:15 Stand-up",
                                      "03-30 08:00 to 03-30 08:15 Stand-up"}));
  entry.moved = {{"2026-03-29 08:00", "2026-03-29 19:00", "2026-03-29 20:00"}};
  this->world.put("Work", entry);
  EXPECT_EQ(this->texts("2026-03-27", "2026-04-10"),
            (std::vector<std::string>{"03-28 08:00 to 03-28 08:15 Stand-up", "03-29 19:00 to 03-29 20:00 Stand-up",
                                      "03-30 08:00 to 03-30 08:15 Stand-up"}));
  std::set<std::string> uuids;
  for (const auto& event : this->events("2026-03-27", "2026-04-10")) uuids.insert(event->UUID());
  EXPECT_EQ(uuids.size(), 1U);
  EXPECT_FALSE(this->store->eventWithUniqueId("e", this->world.date("2026-03-29 08:00")));
  EXPECT_TRUE(this->store->eventWithUniqueId("e", this->world.date("2026-03-29 19:00")));
  this->world.remove("Work", "e");
  EXPECT_TRUE(this->texts("2026-03-27", "2026-04-10").empty());
}

TYPED_TEST_P(CalendarContract, ASpanHasWhatOverlapsItAndWhatStartsAtItsEnd) {
  this->world.put("Work", {"e", "Meeting", "2026-03-30 08:00", "2026-03-30 09:00"});
  EXPECT_EQ(this->events("2026-03-30 07:00", "2026-03-30 08:00").size(), 1U);
  EXPECT_EQ(this->events("2026-03-30 07:00", "2026-03-30 07:59").size(), 0U);
  EXPECT_EQ(this->events("2026-03-30 08:59", "2026-03-30 10:00").size(), 1U);
  EXPECT_EQ(this->events("2026-03-30 09:00", "2026-03-30 10:00").size(), 0U);
}

TYPED_TEST_P(CalendarContract, EventsComeByStartThenEnd) {
  this->world.put("Work", {"late", "d", "2026-03-30 12:00", "2026-03-30 13:00"});
  this->world.put("Work", {"long", "c", "2026-03-30 08:00", "2026-03-30 11:00"});
  this->world.put("Work", {"b", "b", "2026-03-30 08:00", "2026-03-30 09:00"});
  this->world.put("Work", {"a", "a", "2026-03-30 08:00", "2026-03-30 09:00"});
  std::string order;
  for (const auto& event : this->events("2026-03-30", "2026-03-31")) order += event->title().value_or("-");
  EXPECT_EQ(order, "abcd");
}

TYPED_TEST_P(CalendarContract, CalendarsHaveIdentifiersOfTheirOwnAndAreAskedByThem) {
  this->world.put("Work", {"e", "Meeting", "2026-03-30 08:00", "2026-03-30 09:00"});
  this->world.put("Private", {"f", "Dentist", "2026-03-30 10:00", "2026-03-30 11:00"});
  const auto calendars = this->store->calendarsForEntityType(platform::EKEntityType::Event);
  std::set<std::string> identifiers;
  std::map<std::string, std::shared_ptr<platform::EKCalendar>> byTitle;
  for (const auto& calendar : calendars) {
    EXPECT_TRUE(identifiers.empty() || *identifiers.rbegin() < calendar->calendarIdentifier()) << "in this order";
    identifiers.insert(calendar->calendarIdentifier());
    byTitle[calendar->title()] = calendar;
  }
  ASSERT_TRUE(byTitle.contains("Work"));
  ASSERT_TRUE(byTitle.contains("Private"));
  EXPECT_TRUE(byTitle["Private"]->allowsContentModifications());
  EXPECT_FALSE(byTitle["Private"]->source()->title().empty());
  const auto events = this->store->eventsMatchingPredicate(this->store->predicateForEventsWithStartDate(
      this->world.date("2026-03-30"), this->world.date("2026-03-31"), {byTitle["Private"]}));
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0]->uniqueId(), "f");
  EXPECT_TRUE(this->store->calendarsForEntityType(platform::EKEntityType::Reminder).empty());
}

TYPED_TEST_P(CalendarContract, EveryChangeIsToldToEveryStore) {
  const auto second = this->world.eventKit().makeEventStore();
  this->count(second);
  CalendarEntry entry{"e", "Meeting", "2026-03-30 08:00", "2026-03-30 09:00"};
  const std::vector<std::function<void()>> changes = {
      [&] { this->world.put("Work", entry); },
      [&] {
        entry.status = platform::EKEventStatus::Canceled;
        this->world.put("Work", entry);
      },
      [&] { this->world.remove("Work", "e"); },
  };
  for (const auto& change : changes) {
    this->notices.clear();
    change();
    EXPECT_GE(this->notices[this->store.get()], 1);
    EXPECT_GE(this->notices[second.get()], 1);
  }
}

REGISTER_TYPED_TEST_SUITE_P(CalendarContract, AnEventThatIsAddedIsFound, AnEventThatIsMovedIsFoundWhereItIsNow,
                            AnEventThatIsCancelledSaysSo, AnEventThatIsRemovedIsGone,
                            ADayLastsFromMidnightToMidnightOnThePhonesClock,
                            ARepeatingEventOccursAtTheSameHourAndWhereOneOfItWasMoved,
                            ASpanHasWhatOverlapsItAndWhatStartsAtItsEnd, EventsComeByStartThenEnd,
                            CalendarsHaveIdentifiersOfTheirOwnAndAreAskedByThem, EveryChangeIsToldToEveryStore);

}  // namespace hushmode::contracts
