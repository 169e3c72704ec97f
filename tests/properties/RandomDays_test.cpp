// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Random days. HUSHMODE_SEED plays another series, HUSHMODE_DAYS more or fewer of them; a single day is
// played again by its own seed with HUSHMODE_DAYS=1.

#include "tests/properties/RandomDay.h"
#include "tests/properties/Series.h"

#include <gtest/gtest.h>
#include <iostream>

namespace hushmode::properties {
namespace {

const std::uint64_t firstSeed = fromEnvironment("HUSHMODE_SEED", 20240514);

TEST(RandomDays, BreakNoRule) {
  const std::uint64_t days = fromEnvironment("HUSHMODE_DAYS", 250);
  std::cout << "seeds " << firstSeed << " to " << firstSeed + days - 1 << std::endl;
  std::size_t recorded = 0;
  for (std::uint64_t seed = firstSeed; seed < firstSeed + days; ++seed) {
    RandomDay day(seed);
    day.play();
    recorded += day.recorded();
    ASSERT_TRUE(day.violations().empty()) << "HUSHMODE_SEED=" << seed << " HUSHMODE_DAYS=1" << joined(day.violations())
                                          << "\nafter these steps:" << joined(day.steps());
  }
  // Days on which nothing happens would prove nothing.
  EXPECT_GT(recorded, days * 50);
}

TEST(RandomDays, AreTheSameEveryTime) {
  for (std::uint64_t seed = firstSeed; seed < firstSeed + 25; ++seed) {
    std::vector<std::string> records[2];
    for (auto& record : records) {
      RandomDay day(seed);
      day.setOnEntry([&](const devices::RecordEntry& entry) { record.push_back(entry.localTime() + entry.text()); });
      day.play();
    }
    ASSERT_EQ(records[0], records[1]) << "HUSHMODE_SEED=" << seed;
  }
}

}  // namespace
}  // namespace hushmode::properties
