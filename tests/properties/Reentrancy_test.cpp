// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What runs inside something else: observers inside a save, saves inside a walk over the list, a plan inside a plan.

#include "tests/support/ProfilesFixture.h"

namespace hushmode {
namespace {

using Lines = std::vector<std::string>;

const std::string changed = "notification com.quorvel.ProfileChangedNotification";

class Reentrancy : public ProfilesFixture {
 protected:
  /// Runs `work` inside the in-process notification of a change, once.
  void insideAChange(std::function<void()> work) {
    phone.notifications().addObserver(this, HMProfilesManager::profileChangedNotification, nullptr,
                                      [this, work = std::move(work)](const platform::Notification&) {
                                        phone.notifications().removeObserver(this);
                                        work();
                                      });
  }
  /// Where a line stands in the record; fails when it is not there.
  std::size_t place(const std::string& line) const {
    const Lines lines = texts();
    const auto found = std::find(lines.begin(), lines.end(), line);
    EXPECT_NE(found, lines.end()) << line;
    return static_cast<std::size_t>(found - lines.begin());
  }
};

TEST_F(Reentrancy, AnObserverThatPlansRunsBetweenTheTwoAnnouncementsOfTheSave) {
  const Profile work = addProfile("Work");
  addEvent("Standup", at("07:30"), at("09:30"));
  insideAChange([] { manager().schedulePowerEventsForProfiles(); });
  clearRecord();

  manager().updateProfile(
      work, [this] { phone.record().step("success"); }, nullptr);

  EXPECT_TRUE(work->isApplied());
  const std::size_t posted = place(changed), applied = place("log I ********* applying profile ************"),
                    told = place("darwin com.quorvel.ProfileChangedNotification"),
                    updated = place("log I Profile updated successfully.");
  EXPECT_LT(posted, applied);
  EXPECT_LT(applied, told);
  EXPECT_LT(told, updated);
  EXPECT_EQ(place("phone success"), texts().size() - 1);
}

TEST_F(Reentrancy, AnObserverThatReloadsLeavesTheSaveAsItIs) {
  const Profile work = addProfile("Work");
  const Profile other = addProfile("Other");
  insideAChange([] { manager().reloadProfiles(); });
  work->setTitle("Work again");

  bool succeeded = false;
  manager().updateProfile(
      work, [&] { succeeded = true; }, nullptr);

  EXPECT_TRUE(succeeded);
  ASSERT_EQ(manager().profiles().size(), 2U);
  EXPECT_NE(manager().profiles()[0], work);
  EXPECT_EQ(manager().profiles()[0]->title(), "Work again");
  EXPECT_NE(manager().profiles()[1], other);
}

TEST_F(Reentrancy, AnObserverThatDeletesTheOtherProfileDuringAPlanOfBoth) {
  // The plan walks over the profiles that were active when it began; one that is deleted meanwhile is planned once
  // more, and what it saves is nothing.
  const Profile first = addProfile("First"), second = addProfile("Second");
  addEvent("Standup", at("07:30"), at("09:30"));
  insideAChange([&] {
    manager().deleteProfile(second, nullptr, nullptr);
    manager().schedulePowerEventsForProfiles();
  });

  manager().updateProfile(first, nullptr, nullptr);

  ASSERT_EQ(manager().profiles(), std::vector<Profile>{first});
  EXPECT_TRUE(first->isApplied());
  EXPECT_FALSE(second->isApplied());
}

TEST_F(Reentrancy, RevertingAllWalksOverACopySinceTwinsTakeEachOthersPlaces) {
  // Two profiles of one identifier: saving the second puts it in the first one's place in the list.
  const Profile first = addProfile("First"), twin = addProfile("Twin"), last = addProfile("Last");
  twin->setIdentifier(first->identifier());
  for (const Profile& each : {first, twin, last}) each->apply();
  ASSERT_EQ(manager().profiles(), (std::vector<Profile>{twin, twin, last}));
  manager().setProfiles({first, twin, last});
  clearRecord();

  manager().revertAppliedProfilesIfAny();

  for (const Profile& each : {first, twin, last}) EXPECT_FALSE(each->isApplied()) << *each->title();
  EXPECT_EQ(texts({"file"}).size(), 3U);
}

TEST_F(Reentrancy, ASilentRevertOfAllMakesTheNextMeetingSilentToo) {
  const Profile work = addProfile("Work");
  work->setPlayAlert(true);
  work->setWakeUpScreen(true);
  addEvent("Standup", at("08:30"), at("09:00"));
  manager().schedulePowerEventsForProfiles();
  runTo("08:45");
  manager().revertAppliedProfilesIfAny();
  EXPECT_TRUE(work->isSilent());
  runTo("09:30");

  // No event is followed any more, so that nothing clears the silence when one is found that runs already.
  clearRecord();
  addEvent("Review", at("09:15"), at("10:15"));
  runTo("09:45");

  EXPECT_TRUE(work->isApplied());
  const Lines effects = texts({"effect"});
  for (const std::string& line : effects) {
    EXPECT_EQ(line.find("tone start"), std::string::npos) << line;
    EXPECT_EQ(line.find("turnOnScreen"), std::string::npos) << line;
  }
  EXPECT_FLOAT_EQ(*phone.sound().volume("Ringtone"), 0);  // At once, without waiting for a tone.
}

TEST_F(Reentrancy, AWakeTimerMayBeReplacedFromItsOwnCallback) {
  const Profile work = addProfile("Work");
  addEvent("Standup", at("08:30"), at("09:00"));
  manager().schedulePowerEventsForProfiles();
  const std::weak_ptr<platform::PCSimpleTimer> armed = work->timer();

  runTo("08:45");

  EXPECT_TRUE(armed.expired());
  ASSERT_EQ(phone.wakeTimers().armed().size(), 1U);
  EXPECT_EQ(phone.wakeTimers().armed().front().fireDate, at("09:00"));
}

}  // namespace
}  // namespace hushmode
