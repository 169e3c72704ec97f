// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HMProfile.h"
#include "platform/Process.h"
#include "platform/SpringBoard.h"
#include "tests/support/PartlyReal.h"

#include <gtest/gtest.h>
#include <memory>

namespace hushmode::contracts {

/// A phone, as far as its screen is concerned, and what its user does with it. All of it has settled on return.
class ScreenWorld {
 public:
  virtual ~ScreenWorld() = default;
  virtual platform::SpringBoard::Class* springBoardClass() = 0;
  virtual platform::SBBacklightController::Class* backlightClass() = 0;
  virtual void lock() = 0;
  virtual void unlock() = 0;
  /// The screen goes dark, or is lit, whoever does it.
  virtual void setLit(bool isLit) = 0;
  /// What the user sees, once all that was asked for has happened.
  virtual bool isLit() = 0;
};

/// What every screen does that can be lit and put out.
template <class World>
class ScreenContract : public ::testing::Test {
 protected:
  bool isLocked() { return world.springBoardClass()->sharedApplication()->isLocked(); }
  std::shared_ptr<platform::SBBacklightController> backlight() { return world.backlightClass()->sharedInstance(); }
  void wakeUp() {
    const auto profile = HMProfile::init();
    profile->setWakeUpScreen(true);
    profile->wakeUpScreenIfRequired();
  }

  World world;
  devices::SimulatedPhone rest{platform::Date(1'715'673'600)};
  PartlyReal device = [this] {
    PartlyReal partly(rest);
    partly.ownClasses = [this](std::string_view name) -> platform::Class* {
      if (name == platform::SpringBoard::className) return world.springBoardClass();
      if (name == platform::SBBacklightController::className) return world.backlightClass();
      return rest.classNamed(name);
    };
    return partly;
  }();
  platform::Process process{device};
};
TYPED_TEST_SUITE_P(ScreenContract);

TYPED_TEST_P(ScreenContract, TellsWhetherThePhoneIsLocked) {
  EXPECT_FALSE(this->isLocked());
  this->world.lock();
  EXPECT_TRUE(this->isLocked());
  this->world.unlock();
  EXPECT_FALSE(this->isLocked());
}

TYPED_TEST_P(ScreenContract, TellsWhetherTheScreenIsLit) {
  this->world.setLit(false);
  EXPECT_FALSE(this->backlight()->screenIsOn());
  this->world.setLit(true);
  EXPECT_TRUE(this->backlight()->screenIsOn());
}

TYPED_TEST_P(ScreenContract, IsLitAndPutOutAgain) {
  this->world.setLit(false);
  ASSERT_TRUE(this->backlight()->respondsTo("turnOnScreenFullyWithBacklightSource:"));
  this->backlight()->turnOnScreenFullyWithBacklightSource(1);
  EXPECT_TRUE(this->backlight()->screenIsOn());
  EXPECT_TRUE(this->world.isLit());
  ASSERT_TRUE(this->backlight()->respondsTo("_startFadeOutAnimationFromLockSource:"));
  this->backlight()->_startFadeOutAnimationFromLockSource(1);
  EXPECT_FALSE(this->backlight()->screenIsOn());
  EXPECT_FALSE(this->world.isLit());
}

TYPED_TEST_P(ScreenContract, IsLitForFiveSecondsByAProfile) {
  this->world.setLit(false);
  this->wakeUp();
  EXPECT_TRUE(this->world.isLit());
  this->rest.time().runFor(4.9);
  EXPECT_TRUE(this->world.isLit());
  this->rest.time().runFor(0.2);
  EXPECT_FALSE(this->world.isLit());
}

TYPED_TEST_P(ScreenContract, StaysLitWhenItWasBeforeAProfile) {
  this->world.setLit(true);
  this->wakeUp();
  this->rest.time().runFor(6);
  EXPECT_TRUE(this->world.isLit());
}

REGISTER_TYPED_TEST_SUITE_P(ScreenContract, TellsWhetherThePhoneIsLocked, TellsWhetherTheScreenIsLit,
                            IsLitAndPutOutAgain, IsLitForFiveSecondsByAProfile, StaysLitWhenItWasBeforeAProfile);

}  // namespace hushmode::contracts
