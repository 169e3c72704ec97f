// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StatusBar.h"

#include <gtest/gtest.h>
#include <memory>
#include <string_view>

/// What holds for the status bar of every phone.
///
/// A `World` is a phone without an icon, whose status bar can be had:
///   platform::Class* classNamed(std::string_view name) - looks a class up;
///   bool isIconVisible()                               - what the phone's user sees, once all has settled.
namespace hushmode::contracts {

template <class World>
class StatusIconContract : public ::testing::Test {
 protected:
  /// As the library makes it.
  std::shared_ptr<platform::LSStatusBarItem> makeItem() {
    auto item = dynamic_cast<platform::LSStatusBarItem::Class&>(*world.classNamed(platform::LSStatusBarItem::className))
                    .initWithIdentifier("com.quorvel.hushmode", 2);
    item->setImageName("Profile");
    return item;
  }

  World world;
};

TYPED_TEST_SUITE_P(StatusIconContract);

TYPED_TEST_P(StatusIconContract, ThereIsNoIconWithoutAnItem) { EXPECT_FALSE(this->world.isIconVisible()); }

TYPED_TEST_P(StatusIconContract, AnItemIsVisibleAtFirst) {
  const auto item = this->makeItem();
  EXPECT_TRUE(this->world.isIconVisible());
}

TYPED_TEST_P(StatusIconContract, ItIsHiddenAndShown) {
  const auto item = this->makeItem();
  for (const bool visible : {false, true, true, false, false, true}) {
    item->setVisible(visible);
    EXPECT_EQ(this->world.isIconVisible(), visible);
  }
}

TYPED_TEST_P(StatusIconContract, TheLastOfQuickChangesHolds) {
  const auto item = this->makeItem();
  for (const bool visible : {false, true, false, true, false}) item->setVisible(visible);
  EXPECT_FALSE(this->world.isIconVisible());
}

TYPED_TEST_P(StatusIconContract, AnItemHiddenAtOnceIsNotSeen) {
  const auto item = this->makeItem();
  item->setVisible(false);
  EXPECT_FALSE(this->world.isIconVisible());
}

TYPED_TEST_P(StatusIconContract, ALaterItemTakesTheIconOver) {
  const auto first = this->makeItem();
  const auto second = this->makeItem();
  second->setVisible(false);
  EXPECT_FALSE(this->world.isIconVisible());
  second->setVisible(true);
  EXPECT_TRUE(this->world.isIconVisible());
}

REGISTER_TYPED_TEST_SUITE_P(StatusIconContract, ThereIsNoIconWithoutAnItem, AnItemIsVisibleAtFirst, ItIsHiddenAndShown,
                            TheLastOfQuickChangesHolds, AnItemHiddenAtOnceIsNotSeen, ALaterItemTakesTheIconOver);

}  // namespace hushmode::contracts
