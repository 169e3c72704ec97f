// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Random days with the real host. HUSHMODE_SEED and HUSHMODE_DAYS play others, and more of them; a single day is played
// again by its own seed with HUSHMODE_DAYS=1. A day that fails is told with as few deeds as still make it fail, and
// with its record where HUSHMODE_RECORD is set.

#include "tests/properties/HostDay.h"
#include "tests/properties/Series.h"

#include <gtest/gtest.h>
#include <iostream>

namespace hushmode::properties {
namespace {

TEST(HostDays, LeaveThePhoneAsItsUserWantsIt) {
  const std::uint64_t first = fromEnvironment("HUSHMODE_SEED", 20240514), days = fromEnvironment("HUSHMODE_DAYS", 150);
  std::cout << "seeds " << first << " to " << first + days - 1 << std::endl;
  for (std::uint64_t seed = first; seed < first + days; ++seed) {
    const HostDay day(seed);
    if (faultsOf(day).empty()) continue;
    const HostDay least = shrunk(day);
    ADD_FAILURE() << "HUSHMODE_SEED=" << seed << " HUSHMODE_DAYS=1" << joined(faultsOf(least))
                  << "\nafter these deeds, " << textOf(least);
    std::vector<std::string> record;
    faultsOf(least, &record);
    if (std::getenv("HUSHMODE_RECORD")) std::cout << joined(record) << std::endl;
    return;
  }
}

}  // namespace
}  // namespace hushmode::properties
