// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Add, update, the quiet update and delete: what each does to list, file, record and callbacks.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

const std::string written = "file write profiles ok";
const std::string notWritten = "file write profiles failed";
const std::string saved =
    "information 286 saveAllProfilesToDisk:postNotification:notificationName: Profiles saved "
    "successfully to the disk.";

std::string posting(const std::string& name) {
  return "information 289 saveAllProfilesToDisk:postNotification:notificationName: Posting notification: " + name;
}

class Operations : public StoreTest {
 protected:
  Operations() {
    manager().profiles() = {profile(1, "Work"), profile(2, "Sleep")};
    manager().saveAllProfilesToDisk(manager().profiles()[0], false, std::nullopt);
    clearRecord();
  }
  /// The kinds of the record's lines that are no log lines, and the log by itself.
  Texts deeds() const {
    return texts({devices::kind::file, devices::kind::notification, devices::kind::darwin, devices::kind::phone});
  }

  Outcome outcome{phone.record()};
};

using Add = Operations;
using Update = Operations;
using QuietUpdate = Operations;
using Delete = Operations;

TEST_F(Add, AppendsSavesAnnouncesAndThenSucceeds) {
  const Profile added = profile(3, "Gym");
  manager().addProfile(added, outcome.success(), outcome.failure());
  EXPECT_EQ(manager().profiles().back(), added);
  EXPECT_EQ(inFile(), (Identifiers{1, 2, 3}));
  EXPECT_EQ(texts(), (Texts{
                         written,
                         "log I Profiles saved successfully to the disk.",
                         "log I Posting notification: com.quorvel.ProfileAddedNotification",
                         "notification com.quorvel.ProfileAddedNotification",
                         "darwin com.quorvel.ProfileAddedNotification",
                         "phone success",
                     }));
  EXPECT_EQ(outcome.failures, 0);
}

TEST_F(Add, AssignsNoIdentifierAndStampsNoDate) {
  const Profile added = profile(3, "Gym");
  manager().addProfile(added, nullptr, nullptr);
  EXPECT_EQ(added->identifier(), 3);
  EXPECT_EQ(added->updatedDate(), std::nullopt);
}

TEST_F(Add, RefusesATitleThatExistsAndChangesNothing) {
  manager().addProfile(profile(3, "Sleep"), outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), (Identifiers{1, 2}));
  EXPECT_EQ(texts(), Texts{"phone failure"});
  EXPECT_EQ(outcome.successes, 0);
}

TEST_F(Add, TakesATitleInAnotherLetterCase) {
  manager().addProfile(profile(3, "work"), outcome.success(), outcome.failure());
  manager().addProfile(profile(4, "Work "), outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), (Identifiers{1, 2, 3, 4}));
  EXPECT_EQ(outcome.successes, 2);
}

TEST_F(Add, TakesAnyNumberOfProfilesWithoutATitle) {
  manager().addProfile(profile(3), outcome.success(), outcome.failure());
  manager().addProfile(profile(4), outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), (Identifiers{1, 2, 3, 4}));
}

TEST_F(Add, TellsAnEmptyTitleFromAnAbsentOne) {
  manager().addProfile(profile(3), outcome.success(), outcome.failure());
  manager().addProfile(profile(4, ""), outcome.success(), outcome.failure());
  EXPECT_EQ(outcome.successes, 2);
  manager().addProfile(profile(5, ""), outcome.success(), outcome.failure());
  EXPECT_EQ(outcome.failures, 1);
}

TEST_F(Add, TakesAnIdentifierThatExistsAndLaterChangesMeetTheFirst) {
  const Profile twin = profile(1, "Twin");
  manager().addProfile(twin, outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), (Identifiers{1, 2, 1}));
  const Profile edited = profile(1, "Edited");
  manager().updateProfile(edited, nullptr, nullptr);
  EXPECT_EQ(manager().profiles()[0], edited);
  EXPECT_EQ(manager().profiles()[2], twin);
  manager().deleteProfile(twin, nullptr, nullptr);
  EXPECT_EQ(listed(), (Identifiers{2, 1}));
  EXPECT_EQ(manager().profiles()[1], twin);
}

TEST_F(Add, KeepsTheProfileInTheListWhenSavingFails) {
  phone.files().setWritesFail(profilesPath, true);
  manager().addProfile(profile(3, "Gym"), outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), (Identifiers{1, 2, 3}));
  EXPECT_EQ(deeds(), (Texts{notWritten, "phone failure"}));
  EXPECT_EQ(logged(), Texts{saved});
  phone.files().setWritesFail(profilesPath, false);
  manager().updateProfile(manager().profiles()[0], nullptr, nullptr);
  EXPECT_EQ(inFile(), (Identifiers{1, 2, 3})) << "the next save of any operation writes it";
}

TEST_F(Update, PutsTheGivenObjectInPlaceSavesAnnouncesAndThenSucceeds) {
  const Profile edited = profile(2, "Rest");
  manager().updateProfile(edited, outcome.success(), outcome.failure());
  EXPECT_EQ(manager().profiles()[1], edited);
  EXPECT_EQ(listed(), (Identifiers{1, 2}));
  EXPECT_EQ(*fileContent()[1].as<platform::Dictionary>()->find("title"), platform::Value("Rest"));
  EXPECT_EQ(texts(), (Texts{
                         written,
                         "log I Profiles saved successfully to the disk.",
                         "log I Posting notification: com.quorvel.ProfileChangedNotification",
                         "notification com.quorvel.ProfileChangedNotification",
                         "darwin com.quorvel.ProfileChangedNotification",
                         "log I Profile updated successfully.",
                         "phone success",
                     }));
  EXPECT_EQ(logged(), (Texts{saved, posting("com.quorvel.ProfileChangedNotification"),
                             "information 342 updateProfile:success:failure: Profile updated successfully."}));
}

TEST_F(Update, StampsTheTimeBeforeItSaves) {
  runFor(90.5);
  const Profile edited = profile(2, "Rest");
  manager().updateProfile(edited, nullptr, nullptr);
  EXPECT_EQ(edited->updatedDate(), today(10, 1, 30.5));
  EXPECT_EQ(*fileContent()[1].as<platform::Dictionary>()->find("updatedDate"), platform::Value(today(10, 1, 30.5)));
}

TEST_F(Update, AllowsATitleThatExists) {
  manager().updateProfile(profile(2, "Work"), outcome.success(), outcome.failure());
  EXPECT_EQ(outcome.successes, 1);
}

TEST_F(Update, OfAnUnknownIdentifierStampsTheObjectAllTheSameAndFails) {
  const Profile unknown = profile(9, "Work");
  manager().updateProfile(unknown, outcome.success(), outcome.failure());
  EXPECT_EQ(unknown->updatedDate(), today(10));
  EXPECT_EQ(listed(), (Identifiers{1, 2}));
  EXPECT_EQ(texts(), Texts{"phone failure"});
  EXPECT_EQ(unknown->identifier(), 9);
}

TEST_F(Update, KeepsTheObjectAndItsStampWhenSavingFails) {
  phone.files().setWritesFail(profilesPath, true);
  const Profile edited = profile(2, "Rest");
  manager().updateProfile(edited, outcome.success(), outcome.failure());
  EXPECT_EQ(manager().profiles()[1], edited);
  EXPECT_EQ(edited->updatedDate(), today(10));
  EXPECT_EQ(deeds(), (Texts{notWritten, "phone failure"}));
  EXPECT_EQ(logged(), Texts{saved}) << "not: updated successfully";
}

TEST_F(QuietUpdate, PutsTheGivenObjectInPlaceStampsSavesAndPostsNothing) {
  const Profile edited = profile(2, "Rest");
  manager().updateProfile(edited, false, outcome.success(), outcome.failure());
  EXPECT_EQ(manager().profiles()[1], edited);
  EXPECT_EQ(edited->updatedDate(), today(10));
  EXPECT_EQ(inFile(), (Identifiers{1, 2}));
  EXPECT_EQ(deeds(), (Texts{written, "phone success"}));
  EXPECT_EQ(logged(), (Texts{saved,
                             "information 32 updateProfile:shouldPostNotification:success:failure: "
                             "HMProfilesManager+Hushmode -> Profile updated successfully."}));
}

TEST_F(QuietUpdate, PostsNothingAlsoWhenAskedToSinceItHasNoName) {
  manager().updateProfile(profile(2, "Rest"), true, outcome.success(), outcome.failure());
  EXPECT_EQ(deeds(), (Texts{written, "phone success"}));
}

TEST_F(QuietUpdate, FailsLikeTheUpdate) {
  const Profile unknown = profile(9);
  manager().updateProfile(unknown, false, outcome.success(), outcome.failure());
  EXPECT_EQ(unknown->updatedDate(), today(10));
  EXPECT_EQ(texts(), Texts{"phone failure"});
  clearRecord();
  phone.files().setWritesFail(profilesPath, true);
  manager().updateProfile(profile(2, "Rest"), false, outcome.success(), outcome.failure());
  EXPECT_EQ(deeds(), (Texts{notWritten, "phone failure"}));
  EXPECT_EQ(logged(), Texts{saved});
  EXPECT_EQ(manager().profiles()[1]->title(), "Rest");
}

TEST_F(QuietUpdate, OfOneOfTwoTwinsPutsItInTheFirstPlaceToo) {
  const Profile twin = profile(1, "Twin");
  manager().addProfile(twin, nullptr, nullptr);
  manager().updateProfile(twin, false, nullptr, nullptr);
  EXPECT_EQ(manager().profiles()[0], twin);
  EXPECT_EQ(manager().profiles()[2], twin);
}

TEST_F(QuietUpdate, PutsAnObjectFromBeforeAReloadBackIntoTheList) {
  const Profile stale = manager().profiles()[0];
  stale->setTitle("edited long ago");
  manager().reloadProfiles();
  EXPECT_EQ(manager().profiles()[0]->title(), "Work");
  manager().updateProfile(stale, false, nullptr, nullptr);
  EXPECT_EQ(manager().profiles()[0], stale);
}

TEST_F(Delete, RemovesSavesAnnouncesAndThenSucceedsWithoutALineOfItsOwn) {
  const Profile deleted = manager().profiles()[0];
  manager().deleteProfile(deleted, outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), Identifiers{2});
  EXPECT_EQ(inFile(), Identifiers{2});
  EXPECT_EQ(deeds(), (Texts{
                         written,
                         "notification com.quorvel.ProfileDeletedNotification",
                         "darwin com.quorvel.ProfileDeletedNotification",
                         "phone success",
                     }));
  EXPECT_EQ(logged(), (Texts{saved, posting("com.quorvel.ProfileDeletedNotification")}));
}

class Announced : public Operations {
 protected:
  Announced() {
    phone.notifications().addObserver(this, "com.quorvel.ProfileDeletedNotification", nullptr,
                                      [&](const platform::Notification& notification) {
                                        announced = std::get<1>(notification.userInfo.at("profile"));
                                      });
  }
  std::shared_ptr<platform::Object> announced;
};

TEST_F(Announced, ByADeletionIsTheGivenObjectWhateverStoodInTheList) {
  const Profile other = profile(2, "not the one in the list");
  manager().deleteProfile(other, nullptr, nullptr);
  EXPECT_EQ(listed(), Identifiers{1});
  EXPECT_EQ(announced, other);
}

TEST_F(Announced, ByADeletionIsTheDeletedProfileAlsoWhenGivenOutOfTheListItself) {
  const Profile deleted = manager().profiles()[0];
  manager().deleteProfile(manager().profiles()[0], nullptr, nullptr);
  EXPECT_EQ(announced, deleted);
}

TEST_F(Delete, StampsTheGivenObjectAlsoWhenItIsUnknown) {
  const Profile known = manager().profiles()[0], unknown = profile(9);
  manager().deleteProfile(known, nullptr, nullptr);
  EXPECT_EQ(known->updatedDate(), today(10));
  clearRecord();
  manager().deleteProfile(unknown, outcome.success(), outcome.failure());
  EXPECT_EQ(unknown->updatedDate(), today(10));
  EXPECT_EQ(texts(), Texts{"phone failure"});
  EXPECT_EQ(listed(), Identifiers{2});
}

TEST_F(Delete, KeepsTheProfileOutOfTheListWhenSavingFails) {
  phone.files().setWritesFail(profilesPath, true);
  manager().deleteProfile(manager().profiles()[0], outcome.success(), outcome.failure());
  EXPECT_EQ(listed(), Identifiers{2});
  EXPECT_EQ(inFile(), (Identifiers{1, 2}));
  EXPECT_EQ(deeds(), (Texts{notWritten, "phone failure"}));
  EXPECT_EQ(logged(), Texts{saved});
}

TEST_F(Delete, LeavesAnAppliedProfilesEffectsAndTimersAlone) {
  const Profile applied = HMProfile::initWithDictionary({{"identifier", 3}, {"applied", true}});
  applied->setCalendarIdentifiers(Texts());
  manager().profiles().push_back(applied);
  applied->beginTimerForDate(today(12));
  clearRecord();
  manager().deleteProfile(applied, nullptr, nullptr);
  EXPECT_EQ(texts({devices::kind::effect, devices::kind::timer, devices::kind::defaults}), Texts());
  EXPECT_TRUE(applied->isApplied());
  EXPECT_GT(phone.time().pending(), 0U);
}

TEST_F(Operations, RunWithoutCallbacks) {
  manager().addProfile(profile(3, "Gym"), nullptr, nullptr);
  manager().addProfile(profile(4, "Gym"), nullptr, nullptr);
  manager().updateProfile(profile(9), nullptr, nullptr);
  manager().updateProfile(profile(9), false, nullptr, nullptr);
  manager().deleteProfile(profile(9), nullptr, nullptr);
  phone.files().setWritesFail(profilesPath, true);
  manager().addProfile(profile(5, "Office"), nullptr, nullptr);
  manager().updateProfile(profile(3, "Gym"), nullptr, nullptr);
  manager().updateProfile(profile(3, "Gym"), false, nullptr, nullptr);
  manager().deleteProfile(profile(3), nullptr, nullptr);
  EXPECT_EQ(listed(), (Identifiers{1, 2, 5}));
}

TEST_F(Operations, NeverSearchByEqualityWhichWouldChangeIdentifiers) {
  manager().updateProfile(profile(2, "Rest"), nullptr, nullptr);
  manager().addProfile(profile(3, "Gym"), nullptr, nullptr);
  manager().deleteProfile(profile(2), nullptr, nullptr);
  EXPECT_EQ(listed(), (Identifiers{1, 3}));
}

TEST_F(Operations, HoldTheProfileWhileAnObserverDropsEverything) {
  phone.notifications().addObserver(this, "com.quorvel.ProfileChangedNotification", nullptr,
                                    [&](const platform::Notification&) { manager().profiles().clear(); });
  // The argument is the list's own element.
  manager().updateProfile(manager().profiles()[0], outcome.success(), outcome.failure());
  EXPECT_EQ(outcome.successes, 1);
}

}  // namespace
}  // namespace hushmode
