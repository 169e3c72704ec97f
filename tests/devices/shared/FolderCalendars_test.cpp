// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/FolderCalendars.h"

#include "tests/support/PhoneFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace hushmode {
namespace {

using Texts = std::vector<std::string>;

/// A phone whose calendars lie in a folder of its own.
class FolderCalendarsTest : public PhoneFixture {
 protected:
  FolderCalendarsTest() {
    write("Standup", "090000Z", "100000Z");
    folder.rescan();
    phone.eventKit().setSource(&folder);
    clearRecord();
  }
  ~FolderCalendarsTest() override {
    phone.eventKit().setSource(nullptr);
    std::filesystem::remove_all(root);
  }

  void write(const std::string& title, const std::string& start, const std::string& end) const {
    std::filesystem::create_directories(root / "Work");
    std::ofstream(root / "Work" / "event.ics") << "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:test\r\nBEGIN:VEVENT\r\n"
                                               << "UID:E1\r\nSUMMARY:" << title << "\r\nDTSTART:20240514T" << start
                                               << "\r\nDTEND:20240514T" << end << "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
  }
  std::vector<std::shared_ptr<platform::EKEvent>> events(const std::string& from, const std::string& to) const {
    return store->eventsMatchingPredicate(store->predicateForEventsWithStartDate(
        at(from), at(to), store->calendarsForEntityType(platform::EKEntityType::Event)));
  }

  static std::filesystem::path newFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "calendars-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder could be made");
    return name;
  }

  const std::filesystem::path root = newFolder();
  devices::FolderCalendars folder{root};
  const std::shared_ptr<platform::EKEventStore> store = phone.eventKit().makeEventStore();
};

TEST_F(FolderCalendarsTest, AreThePhonesCalendars) {
  const auto day = events("00:00", "23:59:59");
  ASSERT_EQ(day.size(), 1U);
  EXPECT_EQ(day[0]->title(), "Standup");
  EXPECT_EQ(day[0]->calendar()->calendarIdentifier(), "Work");
  EXPECT_EQ(day[0]->startDate(), at("09:00"));
  EXPECT_EQ(store->eventWithUniqueId("E1", at("09:00"))->endDate(), at("10:00"));
  EXPECT_EQ(store->eventWithUUID(day[0]->UUID())->uniqueId(), "E1");
  EXPECT_EQ(store->eventWithIdentifier(day[0]->eventIdentifier())->uniqueId(), "E1");
}

TEST_F(FolderCalendarsTest, OverlapASpanAsThePhonesOwnDo) {
  EXPECT_EQ(events("08:00", "09:00").size(), 1U) << "starts at the end of the span";
  EXPECT_EQ(events("08:00", "08:59:59.5").size(), 0U);
  EXPECT_EQ(events("09:59:59", "11:00").size(), 1U);
  EXPECT_EQ(events("10:00", "11:00").size(), 0U) << "ends at its beginning";
}

TEST_F(FolderCalendarsTest, FollowThePhonesZoneWhereTheirTimesDo) {
  write("Lunch, wherever I am", "120000", "130000");
  folder.rescan();
  const auto from = at("00:00"), to = at("23:59:59");
  const auto calendars = store->calendarsForEntityType(platform::EKEntityType::Event);
  const auto start = [&] {
    return store->eventsMatchingPredicate(store->predicateForEventsWithStartDate(from, to, calendars))
        .at(0)
        ->startDate();
  };
  EXPECT_EQ(start(), at("12:00"));
  phone.moveToTimeZone("Europe/Berlin");
  EXPECT_EQ(start(), at("12:00"));
  EXPECT_EQ(start() - from, 10 * 3600);
}

TEST_F(FolderCalendarsTest, AreReadAgainWhenTold) {
  EXPECT_FALSE(folder.rescan());
  write("A much longer standup", "093000Z", "110000Z");
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(texts(), Texts{"phone calendars read again"});
  EXPECT_EQ(events("00:00", "23:59:59")[0]->endDate(), at("11:00"));
}

}  // namespace
}  // namespace hushmode
