// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "effects/VolumeMarks.h"

#include <gtest/gtest.h>
#include <memory>

namespace hushmode {
namespace {

class AnyObject final : public platform::Object {};

struct VolumeMarks : testing::Test {
  std::shared_ptr<platform::Object> object = std::make_shared<AnyObject>();
  std::shared_ptr<platform::Object> other = std::make_shared<AnyObject>();
};

TEST_F(VolumeMarks, ReadAsFalseAndZeroWhenAbsent) {
  EXPECT_FALSE(hm_ChangedViaHWButtons(object));
  EXPECT_EQ(hm_ChangedCounter(object), 0);
}

TEST_F(VolumeMarks, AreKeptApartFromEachOtherAndOnTheirOwnObject) {
  setHm_ChangedViaHWButtons(object, true);
  setHm_ChangedCounter(object, 7);
  EXPECT_TRUE(hm_ChangedViaHWButtons(object));
  EXPECT_EQ(hm_ChangedCounter(object), 7);
  setHm_ChangedViaHWButtons(object, false);
  EXPECT_FALSE(hm_ChangedViaHWButtons(object));
  EXPECT_EQ(hm_ChangedCounter(object), 7);
  EXPECT_EQ(hm_ChangedCounter(other), 0);
}

TEST_F(VolumeMarks, CountBelowZero) {
  setHm_ChangedCounter(object, -3);
  EXPECT_EQ(hm_ChangedCounter(object), -3);
}

TEST_F(VolumeMarks, OfNoObjectReadAsAbsentAndCannotBeSet) {
  setHm_ChangedViaHWButtons(nullptr, true);
  setHm_ChangedCounter(nullptr, 1);
  EXPECT_FALSE(hm_ChangedViaHWButtons(nullptr));
  EXPECT_EQ(hm_ChangedCounter(nullptr), 0);
}

}  // namespace
}  // namespace hushmode
