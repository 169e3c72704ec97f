// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "effects/SystemVolume.h"

#include <cmath>
#include <gtest/gtest.h>

namespace hushmode {
namespace {

TEST(OverwrittenByFloat, KeepsTheHighHalfAndTakesTheReadingsBitsAsTheLowHalf) {
  const struct {
    const char* name;
    float reading;
    double expected;
    float inSinglePrecision;
  } cases[] = {
      {"silence", 0.0F, 0.099999964237213135, 0.0999999642F},
      {"half", 0.5F, 0.099999978905543685, 0.0999999791F},
      {"full", 1.0F, 0.099999979021959007, 0.0999999791F},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    EXPECT_EQ(overwrittenByFloat(0.1, each.reading), each.expected);
    EXPECT_EQ(static_cast<float>(overwrittenByFloat(0.1, each.reading)), each.inSinglePrecision);
  }
}

TEST(OverwrittenByFloat, NeverLeavesTheNeighbourhoodOfATenthWhateverTheVolume) {
  for (int step = 0; step <= 1000; ++step) {
    const float volume = static_cast<float>(step) / 1000;
    SCOPED_TRACE(volume);
    EXPECT_LT(std::abs(overwrittenByFloat(0.1, volume) - 0.1), 1e-7);
  }
}

TEST(OverwrittenByFloat, DiffersFromATenthInSinglePrecisionForEveryVolumeThatIsRead) {
  for (int step = 0; step <= 1000; ++step) {
    const float volume = static_cast<float>(step) / 1000;
    SCOPED_TRACE(volume);
    EXPECT_NE(static_cast<float>(overwrittenByFloat(0.1, volume)), 0.1F);
  }
}

}  // namespace
}  // namespace hushmode
