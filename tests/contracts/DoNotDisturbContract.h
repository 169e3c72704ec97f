// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ControlCenter.h"

#include <algorithm>
#include <gtest/gtest.h>

/// What holds for the Do Not Disturb module of every phone with a system from 12 on.
///
/// A `World` is a phone with Do Not Disturb off, and its user:
///   platform::Class* classNamed(std::string_view) - looks a class up;
///   void userSwitches(bool on)                    - the phone's user, or another program, switches it;
///   bool isPhoneQuiet()                           - what the rest of the phone sees, once all has settled.
namespace hushmode::contracts {

template <class World>
class DoNotDisturbContract : public ::testing::Test {
 protected:
  /// The module, looked up anew as the library does at each use.
  std::shared_ptr<platform::CCUIToggleModule> module() {
    auto* managerClass = dynamic_cast<platform::CCUIModuleInstanceManager::Class*>(
        world.classNamed(platform::CCUIModuleInstanceManager::className));
    if (!managerClass) return nullptr;
    for (const auto& instance : managerClass->sharedInstance()->moduleInstances()) {
      if (instance->moduleIdentifier().find("DoNotDisturb") != std::string::npos) return instance->module();
    }
    return nullptr;
  }

  World world;
};

TYPED_TEST_SUITE_P(DoNotDisturbContract);

TYPED_TEST_P(DoNotDisturbContract, ATapSwitchesOver) {
  ASSERT_TRUE(this->module());
  EXPECT_FALSE(this->module()->isSelected());
  this->module()->buttonTapped(nullptr, nullptr);
  EXPECT_TRUE(this->module()->isSelected());
  EXPECT_TRUE(this->world.isPhoneQuiet());
  this->module()->buttonTapped(nullptr, nullptr);
  EXPECT_FALSE(this->module()->isSelected());
  EXPECT_FALSE(this->world.isPhoneQuiet());
}

TYPED_TEST_P(DoNotDisturbContract, TheLastOfManyTapsHolds) {
  for (int tap = 0; tap < 7; ++tap) this->module()->buttonTapped(nullptr, nullptr);
  EXPECT_TRUE(this->module()->isSelected());
  EXPECT_TRUE(this->world.isPhoneQuiet());
}

TYPED_TEST_P(DoNotDisturbContract, SettingItSelectedAgainChangesNothing) {
  this->module()->setSelected(true);
  this->module()->setSelected(true);
  EXPECT_TRUE(this->module()->isSelected());
  EXPECT_TRUE(this->world.isPhoneQuiet());
  this->module()->setSelected(false);
  EXPECT_FALSE(this->module()->isSelected());
  EXPECT_FALSE(this->world.isPhoneQuiet());
}

TYPED_TEST_P(DoNotDisturbContract, WhatTheUserSwitchesShows) {
  this->world.userSwitches(true);
  EXPECT_TRUE(this->world.isPhoneQuiet());
  EXPECT_TRUE(this->module()->isSelected());
  this->world.userSwitches(false);
  EXPECT_FALSE(this->world.isPhoneQuiet());
  EXPECT_FALSE(this->module()->isSelected());
}

TYPED_TEST_P(DoNotDisturbContract, TheUserCanEndWhatWasSwitchedOnHereAndItCanBeSwitchedOnAgain) {
  this->module()->buttonTapped(nullptr, nullptr);
  ASSERT_TRUE(this->world.isPhoneQuiet());
  this->world.userSwitches(false);
  EXPECT_FALSE(this->world.isPhoneQuiet());
  EXPECT_FALSE(this->module()->isSelected());
  this->module()->buttonTapped(nullptr, nullptr);
  EXPECT_TRUE(this->world.isPhoneQuiet());
  EXPECT_TRUE(this->module()->isSelected());
}

TYPED_TEST_P(DoNotDisturbContract, TheButtonOfTheViewCanBeTapped) {
  const auto view = this->module()->view();
  ASSERT_TRUE(view);
  EXPECT_TRUE(this->world.classNamed(platform::CCUIButtonModuleView::className));
  const auto subviews = view->subviews();
  const auto button = std::find_if(subviews.begin(), subviews.end(), [](const auto& each) {
    return std::dynamic_pointer_cast<platform::CCUIButtonModuleView>(each) != nullptr;
  });
  ASSERT_NE(button, subviews.end());
  EXPECT_EQ((*button)->superview(), view);
  this->module()->buttonTapped(*button, nullptr);
  EXPECT_TRUE(this->module()->isSelected());
}

REGISTER_TYPED_TEST_SUITE_P(DoNotDisturbContract, ATapSwitchesOver, TheLastOfManyTapsHolds,
                            SettingItSelectedAgainChangesNothing, WhatTheUserSwitchesShows,
                            TheUserCanEndWhatWasSwitchedOnHereAndItCanBeSwitchedOnAgain, TheButtonOfTheViewCanBeTapped);

}  // namespace hushmode::contracts
