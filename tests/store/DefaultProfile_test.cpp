// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The profile that people start from, and the title that it gets.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

class DefaultTitle : public StoreTest {
 protected:
  std::string among(std::initializer_list<const char*> titles) {
    manager().profiles().clear();
    std::int64_t identifier = 1;
    for (const char* title : titles) manager().profiles().push_back(profile(identifier++, title));
    return manager().defaultProfileTitle();
  }
};

TEST_F(DefaultTitle, IsTheFirstFreeOneInTheSequence) {
  EXPECT_EQ(among({}), "Profile");
  EXPECT_EQ(among({"Profile"}), "Profile - 1");
  EXPECT_EQ(among({"Profile", "Profile - 1"}), "Profile - 2");
  EXPECT_EQ(among({"Profile - 2", "Profile"}), "Profile - 1") << "a gap is filled";
  EXPECT_EQ(among({"Profile - 1", "Work"}), "Profile") << "the bare text comes first";
  EXPECT_EQ(among({"profile", "Profile -1"}), "Profile");
}

TEST_F(DefaultTitle, HasNoUpperLimit) {
  manager().profiles() = {profile(1, "Profile")};
  for (int n = 1; n <= 120; ++n) manager().profiles().push_back(profile(n + 1, "Profile - " + std::to_string(n)));
  EXPECT_EQ(manager().defaultProfileTitle(), "Profile - 121");
}

TEST_F(DefaultTitle, IsInTheLanguageOfThePreferenceBundle) {
  phone.foundation().setBundle(
      "/Library/PreferenceBundles/HushmodePreferences.bundle",
      std::make_shared<devices::SimulatedBundle>("com.quorvel.HushmodePreferences",
                                                 devices::SimulatedBundle::StringTable{{"Profile", "Profil %@ 100%"}}));
  EXPECT_EQ(among({"Profile"}), "Profil %@ 100%");
  EXPECT_EQ(among({"Profil %@ 100%"}), "Profil %@ 100% - 1");
}

class DefaultProfile : public StoreTest {};

TEST_F(DefaultProfile, HasTheSettingsThatPeopleStartFrom) {
  manager().profiles() = {profile(1, "Profile")};
  const Profile made = HMProfile::defaultProfile();
  EXPECT_EQ(made->identifier(), 1715673600);
  EXPECT_EQ(made->title(), "Profile - 1");
  EXPECT_TRUE(made->isEnabled());
  EXPECT_TRUE(made->isAllDay());
  EXPECT_EQ(made->ringerVolume(), 0.0625);
  EXPECT_EQ(made->playBackVolume(), 0);
  EXPECT_EQ(made->deviceVolume(), 0);
  EXPECT_TRUE(made->isPlayAlert());
  EXPECT_TRUE(made->isVibrate());
  EXPECT_TRUE(made->isVibrateAlert());
  EXPECT_FALSE(made->isShowOnStatusBar());
  EXPECT_FALSE(made->isDnDEnabled());
  EXPECT_TRUE(made->isWakeUpScreen());
  EXPECT_FALSE(made->isSilent());
  EXPECT_FALSE(made->isApplied());
  EXPECT_EQ(made->alertSound(), 1005);
  EXPECT_TRUE(made->isAllDayEventsIgnored());
  EXPECT_EQ(made->startTime(), "8:00 AM");
  EXPECT_EQ(made->endTime(), "5:00 PM");
  EXPECT_EQ(made->alertToneIdentifier(), "texttone:Calendar Alert");
  EXPECT_EQ(made->applyProfileEventStatus(), 0);
  EXPECT_EQ(made->updatedDate(), std::nullopt);
}

TEST_F(DefaultProfile, LeavesItsListsUnset) {
  const Profile made = HMProfile::defaultProfile();
  phone.calendars().addCalendar("cal-late", "Late");
  EXPECT_EQ(made->calendarIdentifiers(), Texts{"cal-late"});
  EXPECT_FALSE(made->isWifiEnabled());
}

TEST_F(DefaultProfile, StartsTheStoreForItsTitleAndSetsSilentThroughTheSetter) {
  HMProfile::defaultProfile();
  const Texts lines = texts();
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[4], "fx statusBarItem setVisible:false");
  EXPECT_EQ(lines[5], "log I ************ __________ (((((( )))))))))))))) ______________ ************");
  EXPECT_EQ(lines[6], "log I setSilent is called......");
}

TEST_F(DefaultProfile, IsInNoListUntilItIsAdded) {
  HMProfile::defaultProfile();
  EXPECT_EQ(listed(), Identifiers());
  EXPECT_FALSE(phone.files().fileExists(profilesPath));
}

}  // namespace
}  // namespace hushmode
