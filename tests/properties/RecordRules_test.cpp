// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The rules of a record find what breaks them: a rule that never fails would guard nothing.

#include "tests/properties/RecordRules.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace hushmode::properties {
namespace {

using devices::RecordEntry;
using platform::Date;
using platform::Dictionary;

namespace kind = devices::kind;

const Date noon{1715688000};

RecordEntry entry(std::string_view kind, Dictionary fields, Date time = noon) {
  return {time, 0, std::string(kind), std::move(fields)};
}
RecordEntry log(const char* method, const char* message, int line = 7) {
  return entry(kind::log, {{"level", "information"}, {"method", method}, {"line", line}, {"message", message}});
}
RecordEntry stored(const char* operation, const std::string& key) {
  return entry(kind::defaults, {{"operation", operation}, {"key", "com.quorvel.hushmode-" + key}, {"value", 0.5}});
}
const RecordEntry synchronized = entry(kind::defaults, {{"operation", "synchronize"}});
RecordEntry timer(const char* operation, double secondsAhead) {
  return entry(kind::timer, {{"operation", operation},
                             {"fireDate", noon.addingSeconds(secondsAhead)},
                             {"userInfo", Dictionary{{"ProfileIdentifier", 5}}}});
}
RecordEntry written(bool ok) { return entry(kind::file, {{"operation", "write"}, {"path", "profiles"}, {"ok", ok}}); }
RecordEntry darwin(const char* name) { return entry(kind::darwin, {{"name", name}}); }
RecordEntry sound(const char* volume) { return log("applySoundSettings:", volume); }

using Entries = std::vector<RecordEntry>;

const Entries saved{log("saveAllProfilesToDisk:postNotification:notificationName:", "saved", 286)};
const Entries quietly{log("updateProfile:shouldPostNotification:success:failure:", "updated", 32),
                      darwin("com.quorvel.ProfileAppliedStateChangedNotification")};
const Entries silent{log("setSilent:", "****"), log("setSilent:", "called")};

Entries operator+(Entries first, const Entries& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::size_t violationsOf(const Entries& entries) {
  RecordRules rules;
  for (const RecordEntry& each : entries) rules.see(each);
  return rules.violations().size();
}

const Entries apply = Entries{log("apply", "applying"), written(true)} + saved + quietly +
                      Entries{sound("*********** applySoundSettings: 1")};
const Entries revertBegun = Entries{written(true)} + saved + quietly + silent;
const Entries removed{stored("remove", "ringtone"), stored("remove", "volume"), stored("remove", "playBackVolume"),
                      synchronized};
const Entries revert = revertBegun + Entries{sound("*********** applySoundSettings: 0")} + removed;

TEST(RecordRules, AcceptWhatIsMeant) {
  EXPECT_EQ(violationsOf(apply), 0U);
  EXPECT_EQ(violationsOf(revert), 0U);
  EXPECT_EQ(violationsOf(apply + revert + apply), 0U);
  EXPECT_EQ(violationsOf(Entries{written(false)} + saved), 0U);
  EXPECT_EQ(violationsOf({timer("arm", 0)}), 0U);
  EXPECT_EQ(violationsOf({stored("set", "ringtone"), synchronized}), 0U);
}

TEST(RecordRules, FindASaveThatIsNotLoggedOrAnnouncedInOrder) {
  EXPECT_NE(violationsOf({written(true), darwin("x")}), 0U);
  EXPECT_NE(violationsOf(Entries{written(false)} + saved + quietly), 0U);
  EXPECT_NE(violationsOf(Entries{written(true)} + saved + Entries{quietly[0], synchronized}), 0U);
}

TEST(RecordRules, FindARevertThatIsCutShortOrOutOfOrder) {
  EXPECT_NE(violationsOf(revertBegun + removed), 0U);  // No sound.
  EXPECT_NE(violationsOf(revertBegun + apply), 0U);    // Nothing removed before the next apply.
  EXPECT_NE(violationsOf(revertBegun + Entries{entry(kind::phone, {{"step", "lock"}}, noon.addingSeconds(1))}), 0U);
  Entries inAnotherOrder = revert;
  std::swap(inAnotherOrder[inAnotherOrder.size() - 2], inAnotherOrder[inAnotherOrder.size() - 3]);
  EXPECT_NE(violationsOf(inAnotherOrder), 0U);
  EXPECT_NE(violationsOf(removed), 0U);  // Outside any revert.
}

TEST(RecordRules, FindAnApplyThatIsNotSavedFirst) {
  EXPECT_NE(violationsOf({log("apply", "applying"), sound("*********** applySoundSettings: 1")}), 0U);
}

TEST(RecordRules, FindASavedVolumeThatIsOverwrittenOrNotSynchronised) {
  EXPECT_NE(violationsOf({stored("set", "volume"), synchronized, stored("set", "volume"), synchronized}), 0U);
  EXPECT_NE(violationsOf({stored("set", "volume"), stored("set", "ringtone")}), 0U);
}

TEST(RecordRules, FindTimersOfThePastAndTimersThatAreEarlyOrLost) {
  EXPECT_NE(violationsOf({timer("arm", -0.001)}), 0U);
  EXPECT_NE(violationsOf({timer("fire", 0.001), log("schedulePowerEvent:", "t1")}), 0U);
  EXPECT_NE(violationsOf({timer("fire", 0), log("scheduleEvents:shouldProceedAnyCase:", "t1")}), 0U);
}

TEST(RecordRules, FindLinesThatAreNotWellFormed) {
  EXPECT_NE(violationsOf({log("apply:", "Profile '%@' not enabled")}), 0U);
  EXPECT_NE(violationsOf({log("", "message")}), 0U);
  EXPECT_NE(violationsOf({log("method", "message", 0)}), 0U);
}

}  // namespace
}  // namespace hushmode::properties
