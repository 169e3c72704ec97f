// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The removal of all alarms of the system's own.

#include "store/HMProfilesManager.h"
#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using Texts = std::vector<std::string>;

struct UnloadAlarms : PhoneFixture {
  /// The titles of what the removal answers.
  static Texts unload() {
    Texts titles;
    for (const auto& each : HMProfilesManager::unloadAllHushmodeAlarms()) titles.push_back(each->title());
    return titles;
  }
};

std::string check(const std::string& title, const char* hasPrefix) {
  return "log I Checking title: '" + title +
         "' is Hush Mode owned or not, title.length > 0: 1 && [title hasPrefix:Hush Mode+]: " + hasPrefix;
}

TEST_F(UnloadAlarms, RemovesTheOwnOneOfThreeAndAnswersAllThree) {
  phone.alarms().setStored({"Wake up", "Hush ModeMe+42", "Hush Mode+42"});
  EXPECT_EQ(unload(), (Texts{"Wake up", "Hush ModeMe+42", "Hush Mode+42"}));
  EXPECT_EQ(phone.alarms().stored(), (Texts{"Wake up", "Hush Mode+42"}));
  ASSERT_EQ(texts(), (Texts{"fx loadAlarms", check("Wake up", "0"), check("Hush ModeMe+42", "0"),
                            "log I Removing alarm: <Alarm \"Hush ModeMe+42\"> from alarms",
                            "fx removeAlarm title=\"Hush ModeMe+42\"", check("Hush Mode+42", "1")}));
  const auto& removal = phone.record().entries()[3];
  EXPECT_EQ(*removal.fields.find("line"), platform::Value(144));
  EXPECT_EQ(*removal.fields.find("method"), platform::Value("unloadAllHushmodeAlarms"));
}

TEST_F(UnloadAlarms, RemovesNeighboursAndTwinsToo) {
  phone.alarms().setStored({"Hush ModeMe+1", "Hush ModeMe+2", "Hush ModeMe+2", "Wake up", "Hush ModeMe+3"});
  EXPECT_EQ(unload().size(), 5U);
  EXPECT_EQ(phone.alarms().stored(), Texts{"Wake up"});
}

TEST_F(UnloadAlarms, ReadsTheAlarmsAnewEveryTime) {
  EXPECT_EQ(unload(), Texts());
  phone.alarms().setStored({"Hush ModeMe+1"});
  EXPECT_EQ(unload(), Texts{"Hush ModeMe+1"});
  EXPECT_EQ(unload(), Texts());
}

TEST_F(UnloadAlarms, OfNoAlarmsLogsNothingAndAnswersNothing) {
  EXPECT_EQ(unload(), Texts());
  EXPECT_EQ(texts({devices::kind::log}), Texts());
}

TEST_F(UnloadAlarms, WithoutTheAlarmManagersClassDoesNothing) {
  phone.alarms().setStored({"Hush ModeMe+1"});
  phone.classes().removeClass("AlarmManager");
  EXPECT_EQ(unload(), Texts());
  EXPECT_EQ(texts(), Texts());
  EXPECT_EQ(phone.alarms().stored(), Texts{"Hush ModeMe+1"});
}

TEST_F(UnloadAlarms, WorksOnEveryTitleThatASystemMayKnow) {
  for (const char* absent : {"title", "rawTitle"}) {
    SCOPED_TRACE(absent);
    phone.classes().removeSelector("Alarm", absent);
    phone.alarms().setStored({"Hush ModeMe+1", "Wake up"});
    EXPECT_EQ(HMProfilesManager::unloadAllHushmodeAlarms().size(), 2U);
    EXPECT_EQ(phone.alarms().stored(), Texts{"Wake up"});
  }
}

}  // namespace
}  // namespace hushmode
