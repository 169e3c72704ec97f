// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/host/promises/Promises.h"

#include <cstdlib>

namespace hushmode::simulation {

namespace {

/// Of the entries at which the host can die only every third is tried, beginning where the promise's name says: with so
/// many promises each kind of entry comes up. HUSHMODE_DEATHS=all tries them all, which takes minutes.
std::size_t stride() {
  const char* wanted = std::getenv("HUSHMODE_DEATHS");
  return wanted && std::string(wanted) == "all" ? 1 : 3;
}

}  // namespace

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(LongPromises);

TEST_P(LongPromises, AreKept) { expectKept(live()); }

TEST_P(Promises, AreKept) { expectKept(live()); }

TEST_P(Promises, AreKeptWhenTheHostDiesAtAnyStep) {
  const std::size_t entries = live().entries;
  ASSERT_GT(entries, 5U);
  for (std::size_t n = 1 + GetParam().name.size() % stride(); n <= entries; n += stride()) {
    SCOPED_TRACE("death at entry " + std::to_string(n) + " of " + std::to_string(entries));
    const Life life = live(n);
    EXPECT_TRUE(life.died);
    expectKept(life);
    if (HasFailure()) return;
  }
}

}  // namespace hushmode::simulation
