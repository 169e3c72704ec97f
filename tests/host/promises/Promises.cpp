#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(LongPromises);

TEST_P(LongPromises, AreKept) { expectKept(live()); }

TEST_P(Promises, AreKept) { expectKept(live()); }

TEST_P(Promises, AreKeptWhenTheHostDiesAtAnyStep) {
  const std::size_t entries = live().entries;
  ASSERT_GT(entries, 5U);
  for (std::size_t n = 1; n <= entries; ++n) {
    SCOPED_TRACE("death at entry " + std::to_string(n) + " of " + std::to_string(entries));
    const Life life = live(n);
    EXPECT_TRUE(life.died);
    expectKept(life);
    if (HasFailure()) return;
  }
}

}  // namespace hushmode::simulation
