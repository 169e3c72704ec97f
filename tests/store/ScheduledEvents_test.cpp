// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The table of the events that profiles follow.

#include "store/ScheduledEvents.h"

#include <gtest/gtest.h>

namespace hushmode {
namespace {

using platform::Date;
using platform::EKEvent;
using platform::EKEventDetails;
using Event = ScheduledEvents::Event;

/// Events of one calendar entry: a new object at each call, as each query of the store makes.
Event event() {
  static const auto details = std::make_shared<const EKEventDetails>();
  return std::make_shared<EKEvent>(details, Date(100), Date(200));
}

TEST(ScheduledEvents, HasNoListBeforeTheFirstRecording) {
  ScheduledEvents table;
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.find(1), nullptr);
  table.remove(1, event());
  EXPECT_EQ(table.find(1), nullptr) << "removing makes no list";
}

TEST(ScheduledEvents, HoldsTheEventRecordedLastForEachIdentifier) {
  ScheduledEvents table;
  const Event first = event(), second = event(), other = event();
  table.record(1, first);
  table.record(2, other);
  table.record(1, second);
  ASSERT_TRUE(table.find(1));
  EXPECT_EQ(*table.find(1), ScheduledEvents::List{second});
  EXPECT_EQ(*table.find(2), ScheduledEvents::List{other});
  EXPECT_EQ(table.size(), 2U);
}

TEST(ScheduledEvents, KeepsAnEmptyListAfterTheRemoval) {
  ScheduledEvents table;
  const Event recorded = event();
  table.record(1, recorded);
  table.remove(1, recorded);
  ASSERT_TRUE(table.find(1));
  EXPECT_TRUE(table.find(1)->empty());
  EXPECT_FALSE(table.empty());
}

TEST(ScheduledEvents, RemovesTheVeryEventAndNotAnotherObjectOfTheSameEntry) {
  ScheduledEvents table;
  const Event former = event(), anew = event();
  table.record(1, former);
  table.record(1, anew);
  table.remove(1, former);
  EXPECT_EQ(*table.find(1), ScheduledEvents::List{anew});
}

TEST(ScheduledEvents, CanRemoveAnEventGivenOutOfTheListItself) {
  ScheduledEvents table;
  table.record(1, event());
  table.remove(1, table.find(1)->front());
  EXPECT_TRUE(table.find(1)->empty());
}

TEST(ScheduledEvents, TellsEachRecordingAfterItWasMade) {
  ScheduledEvents table;
  std::vector<std::pair<std::int64_t, Event>> told;
  table.onRecord = [&](std::int64_t identifier, const Event& recorded) {
    EXPECT_EQ(table.find(identifier)->front(), recorded);
    told.emplace_back(identifier, recorded);
  };
  const Event first = event(), second = event();
  table.record(7, first);
  table.record(7, second);
  table.remove(7, second);
  EXPECT_EQ(told, (std::vector<std::pair<std::int64_t, Event>>{{7, first}, {7, second}}));
}

}  // namespace
}  // namespace hushmode
