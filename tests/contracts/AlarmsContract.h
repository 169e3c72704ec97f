// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/MobileTimer.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// What holds for the list of alarms of every phone.
///
/// A `World` is a phone without alarms:
///   platform::Class* classNamed(std::string_view name)   - looks a class up;
///   void userSetsAlarms(std::vector<std::string> titles) - in the place of all that there were;
///   std::vector<std::string> titles()                    - of the alarms that the phone's user sees.
namespace hushmode::contracts {

template <class World>
class AlarmsContract : public ::testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  std::shared_ptr<platform::AlarmManager> manager() {
    return dynamic_cast<platform::AlarmManager::Class&>(*world.classNamed(platform::AlarmManager::className))
        .sharedManager();
  }
  Texts loaded() {
    Texts titles;
    for (const auto& alarm : manager()->alarms()) titles.push_back(alarm->title());
    return titles;
  }

  World world;
};

TYPED_TEST_SUITE_P(AlarmsContract);

TYPED_TEST_P(AlarmsContract, AlarmsAreSeenAfterTheyWereLoaded) {
  this->world.userSetsAlarms({"Wake up", "Hush ModeMe+7", "Wake up"});
  EXPECT_TRUE(this->loaded().empty());
  this->manager()->loadAlarms();
  EXPECT_EQ(this->loaded(), (std::vector<std::string>{"Wake up", "Hush ModeMe+7", "Wake up"}));
  this->world.userSetsAlarms({"Tea"});
  EXPECT_EQ(this->loaded().size(), 3u);
  this->manager()->loadAlarms();
  EXPECT_EQ(this->loaded(), std::vector<std::string>{"Tea"});
}

TYPED_TEST_P(AlarmsContract, EveryNameOfTheTitleGivesIt) {
  this->world.userSetsAlarms({"Grüße+3"});
  this->manager()->loadAlarms();
  const auto alarm = this->manager()->alarms().at(0);
  for (const char* selector : {"title", "rawTitle", "uiTitle"}) EXPECT_TRUE(alarm->respondsTo(selector));
  EXPECT_EQ(alarm->title(), "Grüße+3");
  EXPECT_EQ(alarm->rawTitle(), "Grüße+3");
  EXPECT_EQ(alarm->uiTitle(), "Grüße+3");
  EXPECT_EQ(alarm->description(), "<Alarm \"Grüße+3\">");
}

TYPED_TEST_P(AlarmsContract, ARemovedAlarmIsGoneAtOnceAndForGood) {
  this->world.userSetsAlarms({"A", "B", "C"});
  this->manager()->loadAlarms();
  this->manager()->removeAlarm(this->manager()->alarms().at(1));
  EXPECT_EQ(this->loaded(), (std::vector<std::string>{"A", "C"}));
  EXPECT_EQ(this->world.titles(), (std::vector<std::string>{"A", "C"}));
  this->manager()->loadAlarms();
  EXPECT_EQ(this->loaded(), (std::vector<std::string>{"A", "C"}));
}

TYPED_TEST_P(AlarmsContract, OfTwoAlarmsOfOneTitleOneIsRemoved) {
  this->world.userSetsAlarms({"A", "A"});
  this->manager()->loadAlarms();
  this->manager()->removeAlarm(this->manager()->alarms().at(0));
  EXPECT_EQ(this->loaded(), std::vector<std::string>{"A"});
  EXPECT_EQ(this->world.titles(), std::vector<std::string>{"A"});
}

TYPED_TEST_P(AlarmsContract, AnAlarmThatIsNotInTheListAnyMoreIsNotRemovedAgain) {
  this->world.userSetsAlarms({"A", "A", "A"});
  this->manager()->loadAlarms();
  const auto alarm = this->manager()->alarms().at(0);
  this->manager()->removeAlarm(alarm);
  this->manager()->removeAlarm(alarm);
  this->manager()->removeAlarm(nullptr);
  EXPECT_EQ(this->world.titles(), (std::vector<std::string>{"A", "A"}));
  const auto stale = this->manager()->alarms().at(0);
  this->manager()->loadAlarms();
  this->manager()->removeAlarm(stale);
  EXPECT_EQ(this->world.titles(), (std::vector<std::string>{"A", "A"}));
}

TYPED_TEST_P(AlarmsContract, AllCanBeRemovedWhileAListOfThemIsWalked) {
  this->world.userSetsAlarms({"A", "B", "C", "D"});
  this->manager()->loadAlarms();
  for (const auto& alarm : this->manager()->alarms()) this->manager()->removeAlarm(alarm);
  EXPECT_TRUE(this->loaded().empty());
  EXPECT_TRUE(this->world.titles().empty());
}

REGISTER_TYPED_TEST_SUITE_P(AlarmsContract, AlarmsAreSeenAfterTheyWereLoaded, EveryNameOfTheTitleGivesIt,
                            ARemovedAlarmIsGoneAtOnceAndForGood, OfTwoAlarmsOfOneTitleOneIsRemoved,
                            AnAlarmThatIsNotInTheListAnyMoreIsNotRemovedAgain, AllCanBeRemovedWhileAListOfThemIsWalked);

}  // namespace hushmode::contracts
