// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What an event object carries, and switching its profile through it.

#include "calendar/EventBinding.h"

#include "tests/support/ProfilesFixture.h"

namespace hushmode {
namespace {

class EventBinding : public ProfilesFixture {
 protected:
  void SetUp() override {
    work = addProfile();
    standup = event("Standup", at("09:00"), at("10:00"));
    setHm_profile(standup, work);
  }

  /// How many lines of the record contain `text`.
  long count(std::string_view text) const {
    const auto lines = texts();
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.find(text) != std::string::npos; });
  }
  long applied() const { return count("********* applying profile ************"); }
  long reverted() const { return count("applySoundSettings: 0"); }

  Profile work;
  Event standup;
};

TEST_F(EventBinding, AnEventCarriesNothingAtFirst) {
  const Event fresh = event("Fresh", at("09:00"), at("10:00"));
  EXPECT_EQ(hm_profile(fresh), nullptr);
  EXPECT_FALSE(hm_isProfileApplied(fresh));
}

TEST_F(EventBinding, TheBindingKeepsTheProfileAliveUntilItIsRemoved) {
  std::weak_ptr<HMProfile> weak = work;
  work.reset();
  manager().profiles().clear();
  EXPECT_FALSE(weak.expired());
  setHm_profile(standup, nullptr);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(hm_profile(standup), nullptr);
}

TEST_F(EventBinding, BindingAnotherProfileLeavesTheFlag) {
  setHm_isProfileApplied(standup, true);
  setHm_profile(standup, addProfile("Gym"));
  EXPECT_TRUE(hm_isProfileApplied(standup));
  setHm_isProfileApplied(standup, false);
  EXPECT_FALSE(hm_isProfileApplied(standup));
}

TEST_F(EventBinding, ApplyingTwiceAppliesOnce) {
  applyProfile(standup);
  applyProfile(standup);
  EXPECT_EQ(applied(), 1);
  EXPECT_TRUE(hm_isProfileApplied(standup));
  EXPECT_TRUE(work->isApplied());
}

TEST_F(EventBinding, TheFlagIsSetBeforeTheProfileIsApplied) {
  bool flag = false;
  phone.record().setListener([&](const devices::RecordEntry& entry) {
    if (entry.text().find("applying profile") != std::string::npos) flag = hm_isProfileApplied(standup);
  });
  applyProfile(standup);
  phone.record().setListener({});
  EXPECT_TRUE(flag);
}

TEST_F(EventBinding, AnAppliedProfileIsAppliedAgainThroughAnotherEvent) {
  applyProfile(standup);
  const Event review = event("Review", at("09:00"), at("10:00"));
  setHm_profile(review, work);
  applyProfile(review);
  EXPECT_EQ(applied(), 2);
}

TEST_F(EventBinding, ADisabledProfileIsNeitherAppliedNorMarked) {
  work->setEnabled(false);
  applyProfile(standup);
  EXPECT_EQ(applied(), 0);
  EXPECT_FALSE(hm_isProfileApplied(standup));
}

TEST_F(EventBinding, RevertingWhatWasNeverAppliedRevertsAllTheSame) {
  work->setEnabled(false);
  revertProfile(standup);
  EXPECT_EQ(reverted(), 1);
  EXPECT_FALSE(hm_isProfileApplied(standup));
}

TEST_F(EventBinding, TheFlagIsClearedBeforeTheProfileIsReverted) {
  applyProfile(standup);
  bool flag = true;
  phone.record().setListener([&](const devices::RecordEntry& entry) {
    if (entry.text().find("applySoundSettings: 0") != std::string::npos) flag = hm_isProfileApplied(standup);
  });
  revertProfile(standup);
  phone.record().setListener({});
  EXPECT_FALSE(flag);
}

TEST_F(EventBinding, AfterARevertTheProfileIsAppliedAgain) {
  applyProfile(standup);
  revertProfile(standup);
  applyProfile(standup);
  EXPECT_EQ(applied(), 2);
  EXPECT_TRUE(hm_isProfileApplied(standup));
}

TEST_F(EventBinding, ARevertIsAsQuietAsItIsAskedToBe) {
  revertProfile(standup, true);
  EXPECT_TRUE(work->isSilent());
  revertProfile(standup, false);
  EXPECT_FALSE(work->isSilent());
  revertProfile(standup, true);
  revertProfile(standup);
  EXPECT_FALSE(work->isSilent());
}

TEST_F(EventBinding, AnEventWithoutAProfileDoesNothing) {
  setHm_profile(standup, nullptr);
  applyProfile(standup);
  EXPECT_FALSE(hm_isProfileApplied(standup));
  setHm_isProfileApplied(standup, true);
  revertProfile(standup);
  EXPECT_FALSE(hm_isProfileApplied(standup)) << "but the flag";
  EXPECT_EQ(applied() + reverted(), 0);
}

TEST_F(EventBinding, NoEventAnswersNoneAndNo) {
  setHm_profile(nullptr, work);
  setHm_isProfileApplied(nullptr, true);
  applyProfile(nullptr);
  revertProfile(nullptr);
  EXPECT_EQ(hm_profile(nullptr), nullptr);
  EXPECT_FALSE(hm_isProfileApplied(nullptr));
  EXPECT_FALSE(hm_isOccuring(nullptr));
  EXPECT_EQ(applied() + reverted(), 0);
}

TEST_F(EventBinding, AnEventGoesOnFromItsStartToItsEnd) {
  const struct {
    const char* now;
    bool occurring;
  } cases[] = {{"08:59:59.999", false}, {"09:00", true}, {"09:30", true}, {"10:00", true}, {"10:00:00.001", false}};
  for (const auto& c : cases) {
    clock(c.now);
    EXPECT_EQ(hm_isOccuring(standup), c.occurring) << c.now;
  }
}

TEST_F(EventBinding, ACancelledEventNeverGoesOn) {
  const Event off = event("Off", at("09:00"), at("10:00"), {.status = platform::EKEventStatus::Canceled});
  clock("09:30");
  EXPECT_FALSE(hm_isOccuring(off));
}

TEST_F(EventBinding, AReloadedObjectRevertsThroughTheEventThatItIsBoundTo) {
  applyProfile(standup);
  manager().loadProfiles();
  setHm_profile(standup, manager().profiles().front());
  revertProfile(standup);
  EXPECT_FALSE(manager().profiles().front()->isApplied());
  EXPECT_TRUE(work->isApplied()) << "the object from before is nobody's business any more";
}

}  // namespace
}  // namespace hushmode
