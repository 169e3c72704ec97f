// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What a failed operation reports.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

constexpr const char* description = "NSLocalizedDescriptionKey";
constexpr const char* reason = "NSLocalizedFailureReasonErrorKey";
constexpr const char* suggestion = "NSLocalizedRecoverySuggestionErrorKey";
constexpr const char* preferenceBundle = "/Library/PreferenceBundles/HushmodePreferences.bundle";

using UserInfo = std::map<std::string, std::string, std::less<>>;

class StoreErrors : public StoreTest {
 protected:
  StoreErrors() { manager().profiles() = {profile(1, "Work")}; }

  /// What the operation reports to its failure callback, for a profile of that identifier and title.
  StoreError add(std::int64_t identifier, const char* title) {
    manager().addProfile(profile(identifier, title), nullptr, outcome.failure());
    return take();
  }
  StoreError update(std::int64_t identifier) {
    manager().updateProfile(profile(identifier), nullptr, outcome.failure());
    return take();
  }
  StoreError updateQuietly(std::int64_t identifier) {
    manager().updateProfile(profile(identifier), false, nullptr, outcome.failure());
    return take();
  }
  StoreError remove(std::int64_t identifier) {
    manager().deleteProfile(profile(identifier), nullptr, outcome.failure());
    return take();
  }
  void failWrites() { phone.files().setWritesFail(profilesPath, true); }

 private:
  StoreError take() {
    EXPECT_TRUE(outcome.error) << "the operation did not fail";
    return std::exchange(outcome.error, std::nullopt).value_or(StoreError());
  }

  Outcome outcome{phone.record()};
};

TEST_F(StoreErrors, OfATakenTitleGiveReasonAndRemedy) {
  EXPECT_EQ(add(2, "Work").userInfo, (UserInfo{{description, "Unable to add profile."},
                                               {reason, "Profile name already exist."},
                                               {suggestion, "Change profile name and try."}}));
}

TEST_F(StoreErrors, OfAnUnknownProfileGiveReasonAndRemedy) {
  const UserInfo updating = {{description, "Unable to update profile."},
                             {reason, "Trying to update a profile that is not yet saved to disk."},
                             {suggestion, "Is Profile saved to disk?"}};
  EXPECT_EQ(update(9).userInfo, updating);
  EXPECT_EQ(updateQuietly(9).userInfo, updating);
  EXPECT_EQ(remove(9).userInfo, (UserInfo{{description, "Unable to delete profile."},
                                          {reason, "Trying to delete a profile that is not yet available."},
                                          {suggestion, "Is Profile saved to disk?"}}));
}

TEST_F(StoreErrors, OfAFailedSaveAreADescriptionAlone) {
  failWrites();
  const UserInfo notSaved = {{description, "Unable to save profiles to disk."}};
  EXPECT_EQ(add(2, "Gym").userInfo, notSaved);
  EXPECT_EQ(update(1).userInfo, notSaved);
  EXPECT_EQ(updateQuietly(1).userInfo, notSaved);
  EXPECT_EQ(remove(1).userInfo, (UserInfo{{description, "Unable to remove and save profiles to disk."}}));
}

TEST_F(StoreErrors, HaveTheHostsBundleIdentifierAsDomainAndTheCodeOne) {
  phone.foundation().hostBundle().setIdentifier("com.example.settings");
  EXPECT_EQ(add(2, "Work").domain, "com.example.settings");
  EXPECT_EQ(remove(9).domain, "com.example.settings");
  phone.foundation().hostBundle().setIdentifier("com.apple.springboard");
  EXPECT_EQ(update(9).domain, "com.apple.springboard");
  for (const int code : {add(2, "Work").code, update(9).code, updateQuietly(9).code, remove(9).code}) {
    EXPECT_EQ(code, 1);
  }
  failWrites();
  for (const int code : {add(2, "Gym").code, update(1).code, updateQuietly(1).code, remove(1).code}) {
    EXPECT_EQ(code, 1);
  }
}

TEST_F(StoreErrors, SpeakTheLanguageOfThePreferenceBundle) {
  phone.foundation().hostBundle().setTable({{"Unable to add profile.", "from the host"}});
  phone.foundation().setBundle(
      preferenceBundle,
      std::make_shared<devices::SimulatedBundle>(
          "com.quorvel.HushmodePreferences",
          devices::SimulatedBundle::StringTable{{"Unable to add profile.", "Profil kann nicht angelegt werden."},
                                                {"Profile name already exist.", "Den Namen gibt es schon."}}));
  EXPECT_EQ(add(2, "Work").userInfo, (UserInfo{{description, "Profil kann nicht angelegt werden."},
                                               {reason, "Den Namen gibt es schon."},
                                               {suggestion, "Change profile name and try."}}));
}

TEST_F(StoreErrors, SpeakTheHostsLanguageWithoutThePreferenceBundle) {
  phone.foundation().hostBundle().setTable({{"Unable to add profile.", "from the host"}});
  EXPECT_EQ(add(2, "Work").userInfo.at(description), "from the host");
}

}  // namespace
}  // namespace hushmode
