// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Loading the profiles file, and seeding it.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;

class ProfilesFile : public StoreTest {
 protected:
  bool exists() const { return phone.files().fileExists(profilesPath); }
  Texts writes() const { return texts({devices::kind::file}); }
};

TEST_F(ProfilesFile, GivesAnEmptyListWithoutAWordWhenItIsMissing) {
  manager();
  clearRecord();
  manager().loadProfiles();
  EXPECT_EQ(listed(), Identifiers());
  EXPECT_EQ(texts(), Texts());
}

TEST_F(ProfilesFile, GivesAnEmptyListWithoutAWordWhenItHoldsNoArray) {
  manager();
  for (const Value& content : {Value(Dictionary{{"identifier", 42}}), Value("text"), Value(platform::Data(9))}) {
    manager().profiles() = {profile(1)};
    clearRecord();
    phone.files().memory().set(profilesPath, content);
    manager().loadProfiles();
    EXPECT_EQ(listed(), Identifiers());
    EXPECT_EQ(texts(), Texts());
  }
}

TEST_F(ProfilesFile, IsTakenInItsOrderWithAllRepetitions) {
  writeProfilesFile({stored(9, "Z"), stored(3, "A"), stored(9, "Z"), stored(5, "A")});
  EXPECT_EQ(listed(), (Identifiers{9, 3, 9, 5}));
}

TEST_F(ProfilesFile, LosesElementsThatAreNoDictionaries) {
  writeProfilesFile({stored(1, "A"), "text", 7, Array{stored(2, "B")}, stored(3, "C")});
  EXPECT_EQ(listed(), (Identifiers{1, 3}));
}

TEST_F(ProfilesFile, ReplacesTheListByNewObjectsAtEachReload) {
  writeProfilesFile({stored(1, "A"), stored(2, "B")});
  const std::vector<Profile> before = manager().profiles();
  before[0]->setTitle("edited, not saved");
  before[0]->setNewRingtoneVolume(0.5);
  manager().reloadProfiles();
  ASSERT_EQ(listed(), (Identifiers{1, 2}));
  EXPECT_NE(manager().profiles()[0], before[0]);
  EXPECT_EQ(manager().profiles()[0]->title(), "A");
  EXPECT_EQ(manager().profiles()[0]->newRingtoneVolume(), 0);
  EXPECT_EQ(before[0]->title(), "edited, not saved") << "objects from before live on for those who hold them";
}

TEST_F(ProfilesFile, EmptiesTheListWhenItIsGoneAtAReload) {
  writeProfilesFile({stored(1, "A")});
  EXPECT_EQ(listed(), Identifiers{1});
  phone.files().memory().remove(profilesPath);
  manager().reloadProfiles();
  EXPECT_EQ(listed(), Identifiers());
}

TEST_F(ProfilesFile, IsNeitherWrittenNorAnnouncedByLoading) {
  writeProfilesFile({Dictionary{{"title", "no identifier"}}});
  manager().reloadProfiles();
  EXPECT_EQ(texts({devices::kind::file, devices::kind::notification, devices::kind::darwin}), Texts());
}

TEST_F(ProfilesFile, DoesNotFillCalendarListsWhenItIsLoaded) {
  writeProfilesFile({Dictionary{{"identifier", 1}}});
  manager().loadProfiles();
  phone.calendars().addCalendar("cal-late", "Late");
  EXPECT_EQ(manager().profiles()[0]->calendarIdentifiers(), Texts{"cal-late"});
}

TEST_F(ProfilesFile, IsSeededWithOneDefaultProfileWhenThereIsNone) {
  HMProfilesManager::createAndSaveDefaultProfile();
  const Array content = fileContent();
  ASSERT_EQ(content.size(), 1U);
  const Dictionary& written = *content[0].as<Dictionary>();
  EXPECT_EQ(*written.find("title"), Value("Profile"));
  EXPECT_EQ(*written.find("enabled"), Value(true));
  EXPECT_EQ(*written.find("identifier"), Value(1715673600));
  EXPECT_EQ(listed(), Identifiers()) << "the list is left alone";
  EXPECT_EQ(texts({devices::kind::notification, devices::kind::darwin}), Texts());
}

TEST_F(ProfilesFile, IsSeededOnlyOnce) {
  HMProfilesManager::createAndSaveDefaultProfile();
  const Array first = fileContent();
  runFor(60);
  HMProfilesManager::createAndSaveDefaultProfile();
  EXPECT_EQ(fileContent(), first);
  EXPECT_EQ(writes(), Texts{"file write profiles ok"});
}

TEST_F(ProfilesFile, IsNotSeededWhenItExistsWhateverItHolds) {
  for (const Value& content : {Value(Array{}), Value(Dictionary{}), Value(platform::Data(3))}) {
    phone.files().memory().set(profilesPath, content);
    HMProfilesManager::createAndSaveDefaultProfile();
    EXPECT_EQ(*phone.files().memory().find(profilesPath), content);
  }
  EXPECT_EQ(writes(), Texts());
}

TEST_F(ProfilesFile, IsSeededWithATitleThatTheListHasNotTaken) {
  manager().profiles() = {profile(1, "Profile")};
  HMProfilesManager::createAndSaveDefaultProfile();
  EXPECT_EQ(*fileContent()[0].as<Dictionary>()->find("title"), Value("Profile - 1"));
  EXPECT_EQ(listed(), Identifiers{1});
}

TEST_F(ProfilesFile, SaysNothingWhenSeedingFails) {
  phone.files().setWritesFail(profilesPath, true);
  HMProfilesManager::createAndSaveDefaultProfile();
  EXPECT_FALSE(exists());
  EXPECT_EQ(writes(), Texts{"file write profiles failed"});
  for (const std::string& line : texts({devices::kind::log})) EXPECT_EQ(line.find("aved"), std::string::npos) << line;
}

}  // namespace
}  // namespace hushmode
