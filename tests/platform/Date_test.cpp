// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Instants.

#include "platform/Date.h"

#include <gtest/gtest.h>

namespace hushmode::platform {
namespace {

TEST(Date, DiffersFromAnotherByDoubleSeconds) {
  EXPECT_EQ(Date(10.75) - Date(10), 0.75);
  EXPECT_EQ(Date(10) - Date(10.75), -0.75);
  EXPECT_EQ(Date(10).addingSeconds(-0.5), Date(9.5));
}

TEST(Date, ComparesExactly) {
  EXPECT_LT(Date(1715677200), Date(1715677200.000001));
  EXPECT_NE(Date(0.1).addingSeconds(0.2), Date(0.3));
}

TEST(SameInstant, HoldsOnlyForTwoPresentEqualDates) {
  EXPECT_TRUE(sameInstant(Date(1), Date(1)));
  EXPECT_FALSE(sameInstant(Date(1), Date(2)));
  EXPECT_FALSE(sameInstant(std::nullopt, Date(1)));
  EXPECT_FALSE(sameInstant(Date(1), std::nullopt));
  EXPECT_FALSE(sameInstant(std::nullopt, std::nullopt));
}

}  // namespace
}  // namespace hushmode::platform
