// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The master switch in the settings file.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;

class MasterSwitch : public StoreTest {
 protected:
  void write(const Value& content) const { phone.files().memory().set(settingsPath, content); }
  void writeSwitch(const Value& value) const { write(Dictionary{{"com.quorvel.hushmode.enabled", value}}); }
};

TEST_F(MasterSwitch, IsOffWithoutAReadableFile) {
  phone.files().memory().remove(settingsPath);
  EXPECT_FALSE(HMProfilesManager::isHushmodeEnabled());
  write(Array{Dictionary{{"com.quorvel.hushmode.enabled", true}}});
  EXPECT_FALSE(HMProfilesManager::isHushmodeEnabled());
  write(platform::Data(4));
  EXPECT_FALSE(HMProfilesManager::isHushmodeEnabled());
}

TEST_F(MasterSwitch, IsOffWithoutItsExactKey) {
  write(Dictionary{});
  EXPECT_FALSE(HMProfilesManager::isHushmodeEnabled());
  write(Dictionary{{"com.quorvel.hushmode.Enabled", true}, {"enabled", true}});
  EXPECT_FALSE(HMProfilesManager::isHushmodeEnabled());
}

TEST_F(MasterSwitch, IsTheBooleanMeaningOfItsValue) {
  const struct {
    Value value;
    bool enabled;
  } cases[] = {
      {true, true},
      {false, false},
      {1, true},
      {0, false},
      {"YES", true},
      {"NO", false},
      {"on", false},
      {0.5, true},
      {Array{1}, false},
      {Dictionary{{"a", true}}, false},
      {platform::Date(9), false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.value.variant().index());
    writeSwitch(each.value);
    EXPECT_EQ(HMProfilesManager::isHushmodeEnabled(), each.enabled);
  }
}

TEST_F(MasterSwitch, IsReadAnewAtEveryQuestion) {
  writeSwitch(true);
  EXPECT_TRUE(HMProfilesManager::isHushmodeEnabled());
  writeSwitch(false);
  EXPECT_FALSE(HMProfilesManager::isHushmodeEnabled());
  writeSwitch(true);
  EXPECT_TRUE(HMProfilesManager::isHushmodeEnabled());
}

TEST_F(MasterSwitch, IsAskedForWithoutStartingTheManager) {
  writeSwitch(true);
  HMProfilesManager::isHushmodeEnabled();
  EXPECT_EQ(texts(), Texts());
}

}  // namespace
}  // namespace hushmode
