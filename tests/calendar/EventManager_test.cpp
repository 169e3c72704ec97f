// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The calendars and events of the phone, and who hears of their changes.

#include "calendar/HMEventManager.h"
#include "tests/support/ProfilesFixture.h"

namespace hushmode {
namespace {

class EventManager : public ProfilesFixture {
 protected:
  static std::shared_ptr<HMEventManager> events() { return HMEventManager::sharedManager(); }

  static std::string names(const HMEventManager::Calendars& calendars) {
    std::string text;
    for (const auto& calendar : calendars) text += (text.empty() ? "" : " ") + calendar->calendarIdentifier();
    return text;
  }
};

TEST_F(EventManager, ThereIsOneForAProcess) {
  const auto manager = events();
  EXPECT_EQ(events(), manager);
  EXPECT_NE(HMEventManager::init(), manager);
  restartProcess();
  EXPECT_NE(events(), manager);
}

TEST_F(EventManager, ItsFirstUseStartsTheProfilesManagerToo) {
  restartProcess();
  clearRecord();
  events();
  EXPECT_EQ(phone.notifications().observerCount(), 2u) << "the volume's and the calendars'";
}

TEST_F(EventManager, AChangeOfTheCalendarsReachesTheProfilesManager) {
  events();
  ASSERT_EQ(manager().eventStoreUpdateTimer(), nullptr);
  addEvent("Standup", at("09:00"), at("10:00"));
  runFor(0);
  EXPECT_NE(manager().eventStoreUpdateTimer(), nullptr);
}

TEST_F(EventManager, AChangeOfAnotherStoreDoesNot) {
  events();
  phone.notifications().deliver(
      {std::string(platform::EKEventStore::changedNotification), phone.eventKit().makeEventStore(), {}});
  EXPECT_EQ(manager().eventStoreUpdateTimer(), nullptr);
}

TEST_F(EventManager, CalendarsAreFoundInTheStoresOrderEachOnce) {
  for (const char* name : {"B", "A", "C"}) phone.calendars().addCalendar(name, name);
  EXPECT_EQ(names(events()->calendars()), "A B C");
  EXPECT_EQ(names(events()->allCalendars({"B", "A"})), "A B");
  EXPECT_EQ(names(events()->allCalendars({"C", "C", "gone"})), "C");
  EXPECT_EQ(names(events()->allCalendars({"c", "A "})), "") << "exactly";
  EXPECT_TRUE(events()->allCalendars({}).empty());
}

TEST_F(EventManager, ReadOnlyCalendarsCanBeFollowedButAreInNoGroup) {
  phone.calendars().addCalendar("A", "Mine", "Home", true);
  phone.calendars().addCalendar("B", "Holidays", "Web", false);
  EXPECT_EQ(names(events()->allCalendars({"B"})), "B");
  const auto groups = events()->groupedCalendars();
  ASSERT_EQ(groups.size(), 1u) << "an account without writable calendars has no group";
  EXPECT_EQ(groups[0].first, "Home");
}

TEST_F(EventManager, WritableCalendarsAreGroupedByAccountTitle) {
  phone.calendars().addCalendar("A", "Mine", "Home", true);
  phone.calendars().addCalendar("B", "Team", "Work", true);
  phone.calendars().addCalendar("C", "Ours", "Home", true);
  std::map<std::string, std::string> groups;
  for (const auto& [account, calendars] : events()->groupedCalendars()) groups[account] = names(calendars);
  EXPECT_EQ(groups, (std::map<std::string, std::string>{{"Home", "A C"}, {"Work", "B"}}));
}

TEST_F(EventManager, AProfileWithoutAListFollowsAllWritableCalendarsOfTheMomentItIsAsked) {
  phone.calendars().addCalendar("A", "Mine", "Home", true);
  phone.calendars().addCalendar("B", "Holidays", "Web", false);
  const auto work = addProfile();
  work->setCalendarIdentifiers(std::nullopt);
  EXPECT_EQ(work->calendarIdentifiers(), std::vector<std::string>{"A"});
  phone.calendars().addCalendar("C", "New", "Home", true);
  EXPECT_EQ(work->calendarIdentifiers(), std::vector<std::string>{"A"}) << "filled once";
  work->setCalendarIdentifiers(std::vector<std::string>{});
  EXPECT_TRUE(work->calendarIdentifiers().empty()) << "an empty list is a list";
}

TEST_F(EventManager, TodaysEventsAreThoseOfProfilesOpenNowUnfiltered) {
  clock("12:00");
  addEvent("Over", at("09:00"), at("10:00"));
  addEvent("Off", at("13:00"), at("14:00"), {.status = platform::EKEventStatus::Canceled});
  addEvent("Tomorrow", at("33:00"), at("34:00"));
  addEvent("Closed", at("13:00"), at("14:00"), {.calendar = "cal-B"});
  addProfile();
  const auto closed = addProfile("Evening");
  closed->setStartTime("6:00 PM");
  closed->setEndTime("8:00 PM");
  closed->setCalendarIdentifiers(std::vector<std::string>{"cal-B"});
  const auto today = events()->eventsForToday();
  ASSERT_EQ(today.size(), 2u);
  EXPECT_EQ(today[0]->title(), "Over");
  EXPECT_EQ(today[1]->title(), "Off");
  EXPECT_EQ(hm_profile(today[0]), nullptr) << "not bound to anybody";
  clock("18:30");
  ASSERT_EQ(events()->eventsForToday().size(), 1u);
  EXPECT_EQ(events()->eventsForToday()[0]->title(), "Closed");
}

TEST_F(EventManager, WithNoProfileOpenThereAreNoEvents) {
  addEvent("Standup", at("09:00"), at("10:00"));
  EXPECT_TRUE(events()->eventsForToday().empty());
}

TEST_F(EventManager, EventsAreLookedUpByEachOfTheirKeys) {
  addEvent("Standup", at("09:00"), at("10:00"), {.uuid = "s"});
  addEvent("Standup", at("33:00"), at("34:00"), {.uuid = "s"});
  const auto byUUID = events()->eventWithUUID("s");
  ASSERT_NE(byUUID, nullptr);
  EXPECT_EQ(byUUID->UUID(), "s");
  const auto byIdentifier = events()->eventByIdentifier(byUUID->eventIdentifier());
  ASSERT_NE(byIdentifier, nullptr);
  EXPECT_EQ(byIdentifier->eventIdentifier(), byUUID->eventIdentifier());
  const auto byUniqueId = events()->eventWithUniqueId(byUUID->uniqueId());
  ASSERT_NE(byUniqueId, nullptr);
  EXPECT_EQ(byUniqueId->startDate(), at("09:00"));
  const auto occurrence = events()->eventWithUniqueId(byUUID->uniqueId(), at("33:00"));
  ASSERT_NE(occurrence, nullptr);
  EXPECT_EQ(occurrence->startDate(), at("33:00"));
}

TEST_F(EventManager, UnknownKeysFindNothing) {
  addEvent("Standup", at("09:00"), at("10:00"), {.uuid = "s"});
  EXPECT_EQ(events()->eventWithUUID("x"), nullptr);
  EXPECT_EQ(events()->eventByIdentifier("s"), nullptr) << "the key of another look-up";
  EXPECT_EQ(events()->eventWithUniqueId("x"), nullptr);
  EXPECT_EQ(events()->eventWithUniqueId("s", at("09:01")), nullptr);
}

}  // namespace
}  // namespace hushmode
