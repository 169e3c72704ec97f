// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Writing all profiles, and telling about it.

#include "tests/support/StoreTest.h"

namespace hushmode {
namespace {

using platform::Dictionary;
using platform::Notification;
using platform::Value;

constexpr const char* name = "com.quorvel.ProfileChangedNotification";

class Saving : public StoreTest {
 protected:
  Saving() {
    manager().profiles() = {profile(2, "B"), profile(1, "A")};
    clearRecord();
  }
  bool save(bool post, std::optional<std::string_view> notification = name) {
    return manager().saveAllProfilesToDisk(manager().profiles()[0], post, notification);
  }
  /// Has `handler` called inside each in-process notification of that name.
  void observe(std::function<void(const Notification&)> handler) {
    phone.notifications().addObserver(this, name, nullptr, std::move(handler));
  }
};

TEST_F(Saving, WritesAllProfilesInTheOrderOfTheList) {
  EXPECT_TRUE(save(false));
  EXPECT_EQ(inFile(), (Identifiers{2, 1}));
  EXPECT_EQ(fileContent()[0], Value(manager().profiles()[0]->dictionaryRepresentation()));
}

TEST_F(Saving, WritesAnEmptyArrayWhenThereAreNoProfiles) {
  writeProfilesFile({stored(9, "old")});
  const Profile concerned = manager().profiles()[0];
  manager().profiles().clear();
  EXPECT_TRUE(manager().saveAllProfilesToDisk(concerned, false, std::nullopt));
  EXPECT_TRUE(phone.files().fileExists(profilesPath));
  EXPECT_EQ(inFile(), Identifiers());
}

TEST_F(Saving, WithoutPostingSaysThatItSavedAndNothingElse) {
  EXPECT_TRUE(save(false));
  EXPECT_EQ(texts(), (Texts{"file write profiles ok", "log I Profiles saved successfully to the disk."}));
  EXPECT_EQ(logged(), Texts{"information 286 saveAllProfilesToDisk:postNotification:notificationName: Profiles saved "
                            "successfully to the disk."});
}

TEST_F(Saving, PostsInTheProcessFirstAndSystemWideAfterwards) {
  EXPECT_TRUE(save(true));
  EXPECT_EQ(texts(), (Texts{
                         "file write profiles ok",
                         "log I Profiles saved successfully to the disk.",
                         "log I Posting notification: com.quorvel.ProfileChangedNotification",
                         "notification com.quorvel.ProfileChangedNotification",
                         "darwin com.quorvel.ProfileChangedNotification",
                     }));
  EXPECT_EQ(logged()[1],
            "information 289 saveAllProfilesToDisk:postNotification:notificationName: Posting notification: "
            "com.quorvel.ProfileChangedNotification");
}

TEST_F(Saving, NamesTheProfileInTheNotificationAndNoSender) {
  std::vector<Notification> told;
  observe([&](const Notification& notification) { told.push_back(notification); });
  save(true);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0].name, name);
  EXPECT_EQ(told[0].sender, nullptr);
  ASSERT_EQ(told[0].userInfo.size(), 1U);
  const auto* object = std::get_if<std::shared_ptr<platform::Object>>(&told[0].userInfo.at("profile"));
  ASSERT_TRUE(object);
  EXPECT_EQ(*object, manager().profiles()[0]);
}

TEST_F(Saving, RunsObserversInsideTheCallWithTheFileWrittenAndBeforeTheSystemIsTold) {
  observe([&](const Notification&) {
    EXPECT_EQ(inFile(), (Identifiers{2, 1}));
    EXPECT_EQ(texts({devices::kind::darwin}), Texts());
    phone.record().step("observed");
  });
  save(true);
  const Texts lines = texts();
  EXPECT_EQ(lines[lines.size() - 2], "phone observed");
  EXPECT_EQ(lines.back(), "darwin com.quorvel.ProfileChangedNotification");
}

TEST_F(Saving, SurvivesAnObserverThatReloadsTheList) {
  observe([&](const Notification&) { manager().reloadProfiles(); });
  EXPECT_TRUE(save(true));
  EXPECT_EQ(listed(), (Identifiers{2, 1}));
  EXPECT_EQ(texts({devices::kind::darwin}).size(), 1U);
}

TEST_F(Saving, SurvivesAnObserverThatSavesAgain) {
  int depth = 0;
  observe([&](const Notification&) {
    if (++depth < 3) save(true);
  });
  EXPECT_TRUE(save(true));
  EXPECT_EQ(texts({devices::kind::darwin}).size(), 3U);
}

TEST_F(Saving, AnswersFalsePostsNothingAndClaimsSuccessAllTheSameWhenTheWriteFails) {
  writeProfilesFile({stored(9, "old")});
  phone.files().setWritesFail(profilesPath, true);
  EXPECT_FALSE(save(true));
  EXPECT_EQ(texts(), (Texts{"file write profiles failed", "log I Profiles saved successfully to the disk."}));
  EXPECT_EQ(listed(), (Identifiers{2, 1})) << "the list stays";
  EXPECT_EQ(inFile(), Identifiers{9}) << "and so does the file";
}

TEST_F(Saving, PostsNothingWithoutAName) {
  EXPECT_TRUE(save(true, std::nullopt));
  EXPECT_EQ(texts({devices::kind::notification, devices::kind::darwin}), Texts());
  EXPECT_EQ(logged().size(), 1U);
}

TEST_F(Saving, FillsAndKeepsTheCalendarsOfEveryProfileThatNeverChose) {
  phone.calendars().addCalendar("cal-1", "Work");
  manager().profiles()[1]->setCalendarIdentifiers(std::nullopt);
  save(false);
  phone.calendars().addCalendar("cal-2", "Home");
  EXPECT_EQ(*fileContent()[1].as<Dictionary>()->find("calendarIdentifiers"), Value(platform::Array{"cal-1"}));
  EXPECT_EQ(manager().profiles()[1]->calendarIdentifiers(), Texts{"cal-1"});
  EXPECT_EQ(manager().profiles()[0]->calendarIdentifiers(), Texts()) << "an empty list is a choice";
}

TEST_F(Saving, KeepsTheUpdatedDateOnlyOfProfilesThatHaveOne) {
  manager().profiles()[0]->setUpdatedDate(today(9));
  save(false);
  EXPECT_TRUE(fileContent()[0].as<Dictionary>()->find("updatedDate"));
  manager().reloadProfiles();
  save(false);
  EXPECT_FALSE(fileContent()[0].as<Dictionary>()->find("updatedDate")) << "a reload and a save lose it";
}

}  // namespace
}  // namespace hushmode
