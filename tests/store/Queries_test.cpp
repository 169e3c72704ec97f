// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Questions about the list of profiles.

#include "tests/support/StoreTest.h"

#include <functional>

namespace hushmode {
namespace {

using platform::Array;
using platform::Dictionary;

class Queries : public StoreTest {
 protected:
  /// Profiles in all four states of enabled and applied.
  Queries() {
    manager().profiles() = {with(1, "Idle", false, false), with(2, "Enabled", true, false),
                            with(3, "Leftover", false, true), with(4, "Applied", true, true)};
    clearRecord();
  }
  static Profile with(std::int64_t identifier, const char* title, bool enabled, bool applied) {
    const Profile made = HMProfile::initWithDictionary({{"identifier", identifier},
                                                        {"title", title},
                                                        {"enabled", enabled},
                                                        {"applied", applied},
                                                        {"calendarIdentifiers", Array{}}});
    return made;
  }
};

TEST_F(Queries, CallAProfileActiveThatIsEnabledOrApplied) {
  EXPECT_EQ(identifiersOf(manager().activeProfiles()), (Identifiers{2, 3, 4}));
  EXPECT_EQ(identifiersOf(manager().enabledProfiles()), (Identifiers{2, 3, 4})) << "the same list, on purpose";
}

TEST_F(Queries, CallAProfileDisabledThatIsNotEnabledAppliedOrNot) {
  EXPECT_EQ(identifiersOf(manager().disabledProfiles()), (Identifiers{1, 3}));
}

TEST_F(Queries, GiveTheListsOwnObjectsInAListOfTheirOwn) {
  auto active = manager().activeProfiles();
  EXPECT_EQ(active[0], manager().profiles()[1]);
  active.clear();
  EXPECT_EQ(listed(), (Identifiers{1, 2, 3, 4}));
}

TEST_F(Queries, FindAProfileByNameOnlyWhileItIsEnabled) {
  EXPECT_EQ(manager().activeProfileByName("Enabled"), manager().profiles()[1]);
  EXPECT_EQ(manager().activeProfileByName("Applied"), manager().profiles()[3]);
  EXPECT_EQ(manager().activeProfileByName("Leftover"), nullptr) << "applied is not enough";
  EXPECT_EQ(manager().activeProfileByName("enabled"), nullptr);
  EXPECT_EQ(manager().activeProfileByName("nobody"), nullptr);
}

TEST_F(Queries, FindTheFirstOfTwoProfilesWithTheSameTitle) {
  manager().profiles().push_back(with(5, "Enabled", true, false));
  manager().profiles().push_back(with(6, "Idle", true, false));
  EXPECT_EQ(manager().activeProfileByName("Enabled")->identifier(), 2);
  EXPECT_EQ(manager().activeProfileByName("Idle")->identifier(), 6) << "the first one that is enabled";
}

TEST_F(Queries, FindNothingByAnAbsentNameNotEvenAProfileWithoutOne) {
  const Profile nameless = profile(5);
  nameless->setEnabled(true);
  manager().profiles().push_back(nameless);
  EXPECT_EQ(manager().activeProfileByName(std::nullopt), nullptr);
  EXPECT_EQ(manager().activeProfileByName(""), nullptr);
  EXPECT_FALSE(manager().isProfileNameAlreadyExists(std::nullopt));
  EXPECT_FALSE(manager().isProfileNameAlreadyExists(""));
}

TEST_F(Queries, TellTitlesApartExactly) {
  EXPECT_TRUE(manager().isProfileNameAlreadyExists("Idle"));
  for (const char* title : {"idle", "Idle ", " Idle", "Idl", "Idle\n"}) {
    EXPECT_FALSE(manager().isProfileNameAlreadyExists(title)) << title;
  }
}

TEST_F(Queries, FindTheFirstProfileOfAnIdentifierAndLeaveAllIdentifiersAlone) {
  manager().profiles().push_back(with(2, "Twin", true, false));
  EXPECT_EQ(manager().profileByIdentifier(2)->title(), "Enabled");
  EXPECT_EQ(manager().profileByIdentifier(1)->title(), "Idle");
  EXPECT_EQ(manager().profileByIdentifier(9), nullptr);
  EXPECT_EQ(manager().profileByIdentifier(0), nullptr);
  EXPECT_EQ(listed(), (Identifiers{1, 2, 3, 4, 2}));
}

TEST_F(Queries, ReloadForAnIdentifierOnlyWhenAskedToOrEmpty) {
  writeProfilesFile({stored(1, "from the file")});
  EXPECT_EQ(manager().profileByIdentifier(1, false)->title(), "Idle");
  EXPECT_EQ(manager().profileByIdentifier(1)->title(), "Idle");
  EXPECT_EQ(manager().profileByIdentifier(1, true)->title(), "from the file");
  EXPECT_EQ(listed(), Identifiers{1});
  manager().profiles().clear();
  EXPECT_EQ(manager().profileByIdentifier(1, false)->title(), "from the file");
  writeProfilesFile({stored(8, "newer")});
  EXPECT_EQ(manager().profileByIdentifier(1, true), nullptr);
  EXPECT_EQ(listed(), Identifiers{8}) << "it reloads every time";
}

TEST_F(Queries, LoadTheFileFirstWhenTheListIsEmpty) {
  writeProfilesFile(
      {Dictionary{{"identifier", 7}, {"title", "Filed"}, {"enabled", true}, {"calendarIdentifiers", Array{}}}});
  const std::function<void()> loading[] = {
      [&] { manager().activeProfiles(); },       [&] { manager().enabledProfiles(); },
      [&] { manager().disabledProfiles(); },     [&] { manager().activeProfileByName("x"); },
      [&] { manager().profileByIdentifier(1); }, [&] { manager().activeWiFiProfiles(); },
      [&] { manager().calendarIdentifiers(); },
  };
  for (const auto& query : loading) {
    manager().profiles().clear();
    query();
    EXPECT_EQ(listed(), Identifiers{7}) << &query - loading;
  }
  EXPECT_EQ(manager().activeProfileByName("Filed")->identifier(), 7);
}

TEST_F(Queries, NeverLoadTheFileForATitle) {
  writeProfilesFile({stored(7, "Profile")});
  manager().profiles().clear();
  clearRecord();
  EXPECT_FALSE(manager().isProfileNameAlreadyExists("Profile"));
  EXPECT_EQ(manager().defaultProfileTitle(), "Profile");
  EXPECT_EQ(manager().profilesForCalendarIdentifier("cal-A"), std::nullopt);
  EXPECT_EQ(listed(), Identifiers());
  EXPECT_EQ(texts(), Texts());
}

TEST_F(Queries, LeaveAListThatHoldsAnythingAsItIs) {
  writeProfilesFile({stored(7, "Filed")});
  manager().profiles() = {with(1, "Idle", false, false)};
  EXPECT_EQ(manager().activeProfiles().size(), 0U);
  EXPECT_EQ(listed(), Identifiers{1});
}

TEST_F(Queries, AnswerNothingFromAMissingFile) {
  manager().profiles().clear();
  EXPECT_EQ(manager().activeProfiles().size(), 0U);
  EXPECT_EQ(manager().profileByIdentifier(1), nullptr);
  EXPECT_EQ(manager().calendarIdentifiers(), Texts());
}

TEST_F(Queries, NeverKnowTheProfilesOfACalendar) {
  manager().profiles()[1]->setCalendarIdentifiers(Texts{"cal-A"});
  EXPECT_EQ(manager().profilesForCalendarIdentifier("cal-A"), std::nullopt);
}

TEST_F(Queries, GiveTheActiveProfilesThatHaveNetworks) {
  for (const auto& each : {manager().profiles()[0], manager().profiles()[2], manager().profiles()[3]}) {
    each->setWifiNetworks(Texts{"Home"});
  }
  EXPECT_EQ(identifiersOf(manager().activeWiFiProfiles()), (Identifiers{3, 4}));
}

TEST_F(Queries, ChangeAndLogNothing) {
  manager().activeProfiles();
  manager().disabledProfiles();
  manager().activeProfileByName("Idle");
  manager().profileByIdentifier(3);
  manager().activeWiFiProfiles();
  manager().defaultProfileTitle();
  EXPECT_EQ(texts(), Texts());
}

}  // namespace
}  // namespace hushmode
