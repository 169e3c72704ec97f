// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/JoinedCalendars.h"

#include "devices/simulated/MemoryCalendars.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace hushmode::devices {
namespace {

using platform::Date;
using Texts = std::vector<std::string>;

class JoinedCalendarsTest : public testing::Test {
 protected:
  MemoryCalendars& addSource() {
    auto source = std::make_unique<MemoryCalendars>();
    MemoryCalendars& added = *source;
    joined.add(std::move(source));
    return added;
  }
  Texts identifiers() const {
    Texts list;
    for (const CalendarInfo& info : joined.calendars()) list.push_back(info.identifier);
    return list;
  }
  /// "calendar: uid", the calendar by its place in the joined list.
  Texts events() const {
    Texts list;
    for (const CalendarOccurrence& occurrence : joined.occurrences(Date(0), Date(1000), *utc)) {
      list.push_back(joined.calendars()[occurrence.calendar].identifier + ": " + occurrence.details->uniqueId);
    }
    return list;
  }

  std::shared_ptr<const TimeZone> utc = TimeZone::utc();
  JoinedCalendars joined;
};

TEST_F(JoinedCalendarsTest, HaveNothingWithoutASource) {
  EXPECT_TRUE(joined.calendars().empty());
  EXPECT_TRUE(events().empty());
  EXPECT_FALSE(joined.withUUID("x", *utc));
}

TEST_F(JoinedCalendarsTest, AreOrderedByIdentifierWhateverTheirSource) {
  MemoryCalendars& first = addSource();
  MemoryCalendars& second = addSource();
  first.add({"1", "d", "1", Date(10), Date(20)});
  second.add({"2", "c", "2", Date(10), Date(20)});
  first.add({"3", "b", "3", Date(10), Date(20)});
  second.add({"4", "a", "4", Date(10), Date(20)});
  EXPECT_EQ(identifiers(), (Texts{"a", "b", "c", "d"}));
  EXPECT_EQ(events(), (Texts{"d: 1", "b: 3", "c: 2", "a: 4"}));
  first.removeCalendar("b");
  EXPECT_EQ(identifiers(), (Texts{"a", "c", "d"}));
  EXPECT_EQ(events(), (Texts{"d: 1", "c: 2", "a: 4"}));
}

TEST_F(JoinedCalendarsTest, FindAnEntryInTheFirstCalendarThatHasIt) {
  MemoryCalendars& first = addSource();
  MemoryCalendars& second = addSource();
  first.add({"both", "b", "later", Date(30), Date(40)});
  second.add({"both", "a", "sooner", Date(10), Date(20)});
  for (const auto& found :
       {joined.withUUID("both", *utc), joined.withUniqueId("both", *utc), joined.withIdentifier("a:both", *utc)}) {
    ASSERT_TRUE(found);
    EXPECT_EQ(found->details->title, "sooner");
    EXPECT_EQ(found->calendar, 0U);
  }
  EXPECT_EQ(joined.withUniqueId("both", Date(30), *utc)->calendar, 1U);
  EXPECT_EQ(joined.withIdentifier("b:both", *utc)->details->title, "later");
  EXPECT_FALSE(joined.withUniqueId("both", Date(31), *utc));
}

TEST_F(JoinedCalendarsTest, TellEachChangeOnceTheyAnswerAccordingly) {
  Texts told;
  joined.setChangeHandler(
      [&](const platform::Dictionary&) { told.push_back(std::to_string(joined.calendars().size())); });
  MemoryCalendars& source = addSource();
  source.addCalendar("a", "A");
  source.addCalendar("b", "B");
  EXPECT_EQ(told, (Texts{"0", "1", "2"}));
}

}  // namespace
}  // namespace hushmode::devices
