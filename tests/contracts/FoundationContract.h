// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Foundation.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::contracts {

/// A phone, as far as Foundation is concerned. It is new: no files, no defaults.
class FoundationWorld {
 public:
  virtual ~FoundationWorld() = default;
  virtual platform::Foundation& foundation() = 0;
  /// Ends the process and starts another on the same phone; references into the foundation before end.
  virtual void restartProcess() = 0;
  /// Makes the writes to this device path fail from now on.
  virtual void makeWritesFail(std::string_view path) = 0;
  /// Puts a file there that is no property list.
  virtual void putGarbage(std::string_view path) = 0;
};

/// What every Foundation does with files, defaults and notifications. Include it once in a program; the parameter makes
/// the world.
class FoundationContract : public ::testing::TestWithParam<std::unique_ptr<FoundationWorld> (*)()> {
 protected:
  using Texts = std::vector<std::string>;
  static constexpr const char* preferences = "/var/mobile/Library/Preferences/com.quorvel.hushmode.profiles.plist";
  static constexpr const char* ledger = "/var/mobile/Library/Hushmode/com.quorvel.hushmode.ledger.plist";

  platform::Foundation& foundation() { return world->foundation(); }
  platform::PropertyListFiles& files() { return foundation().files(); }
  platform::UserDefaults& defaults() { return foundation().standardUserDefaults(); }
  platform::NotificationCenter& center() { return foundation().defaultNotificationCenter(); }

  const std::unique_ptr<FoundationWorld> world = GetParam()();
};

TEST_P(FoundationContract, FilesHoldWhatWasWrittenAlsoAfterTheProcess) {
  for (const char* path : {preferences, ledger}) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(files().fileExists(path));
    EXPECT_FALSE(files().arrayWithContentsOfFile(path));
    const platform::Array content{platform::Dictionary{{"title", "Büro"}, {"ringerVolume", 0.1F}, {"identifier", 7}}};
    EXPECT_TRUE(files().writeArrayToFileAtomically(content, path));
    EXPECT_EQ(files().arrayWithContentsOfFile(path), content);
    world->restartProcess();
    EXPECT_TRUE(files().fileExists(path));
    EXPECT_EQ(files().arrayWithContentsOfFile(path), content);
    EXPECT_FALSE(files().dictionaryWithContentsOfFile(path));
  }
}

TEST_P(FoundationContract, AFileThatCannotBeWrittenStaysAsItIs) {
  EXPECT_TRUE(files().writeArrayToFileAtomically({1}, preferences));
  world->makeWritesFail(preferences);
  EXPECT_FALSE(files().writeArrayToFileAtomically({2}, preferences));
  EXPECT_EQ(files().arrayWithContentsOfFile(preferences), platform::Array{1});
}

TEST_P(FoundationContract, WhatIsNoPropertyListReadsAsNone) {
  world->putGarbage(preferences);
  EXPECT_TRUE(files().fileExists(preferences));
  EXPECT_FALSE(files().arrayWithContentsOfFile(preferences));
  EXPECT_FALSE(files().dictionaryWithContentsOfFile(preferences));
}

TEST_P(FoundationContract, DefaultsOutliveTheProcessOnceSynchronized) {
  EXPECT_FALSE(defaults().valueForKey("volume"));
  EXPECT_EQ(defaults().floatForKey("volume"), 0);
  EXPECT_FALSE(defaults().boolForKey("switch"));
  defaults().setFloat(0.3F, "volume");
  defaults().setBool(true, "switch");
  defaults().setBool(true, "removed");
  defaults().removeObjectForKey("removed");
  defaults().synchronize();
  world->restartProcess();
  EXPECT_EQ(defaults().floatForKey("volume"), 0.3F);
  EXPECT_TRUE(defaults().boolForKey("switch"));
  EXPECT_FALSE(defaults().valueForKey("removed"));
}

TEST_P(FoundationContract, ADomainIsReplacedWholeAndIsNotTheStandardDefaults) {
  EXPECT_FALSE(defaults().persistentDomainForName("com.example.other"));
  defaults().setBool(true, "mine");
  defaults().setPersistentDomain({{"ring-vibrate", true}, {"other", 1}}, "com.example.other");
  defaults().setPersistentDomain({{"ring-vibrate", false}}, "com.example.other");
  EXPECT_FALSE(defaults().valueForKey("ring-vibrate"));
  EXPECT_TRUE(defaults().boolForKey("mine"));
  world->restartProcess();
  EXPECT_EQ(defaults().persistentDomainForName("com.example.other"), (platform::Dictionary{{"ring-vibrate", false}}));
}

TEST_P(FoundationContract, ObserversAreToldInsideThePostInTheOrderOfRegistration) {
  struct Sender final : platform::Object {};
  const auto sender = std::make_shared<Sender>(), other = std::make_shared<Sender>();
  Texts told;
  const auto note = [&](std::string name) {
    return [&told, name](const platform::Notification&) { told.push_back(name); };
  };
  int first = 0, second = 0;
  center().addObserver(&first, "name", nullptr, note("any sender"));
  center().addObserver(&second, "name", sender, note("this sender"));
  center().addObserver(&first, "other", nullptr, note("other name"));
  center().post({"name", nullptr, {}});
  center().post({"name", other, {}});
  EXPECT_EQ(told, (Texts{"any sender", "any sender"}));
  center().post({"name", sender, {}});
  EXPECT_EQ(told, (Texts{"any sender", "any sender", "any sender", "this sender"}));
  center().removeObserver(&first);
  center().post({"name", sender, {}});
  EXPECT_EQ(told.size(), 5U);
  EXPECT_EQ(told.back(), "this sender");
  world->restartProcess();
  center().post({"name", sender, {}});
  EXPECT_EQ(told.size(), 5U) << "observers end with their process";
}

TEST_P(FoundationContract, ObserversMayComeAndGoDuringAPost) {
  Texts told;
  int first = 0, second = 0, third = 0;
  center().addObserver(&first, "name", nullptr, [&](const platform::Notification&) {
    told.push_back("first");
    center().removeObserver(&first);
    center().removeObserver(&second);
    center().addObserver(&third, "name", nullptr, [&](const platform::Notification&) { told.push_back("third"); });
  });
  center().addObserver(&second, "name", nullptr, [&](const platform::Notification&) { told.push_back("second"); });
  center().post({"name", nullptr, {}});
  EXPECT_EQ(told, Texts{"first"});
  center().post({"name", nullptr, {}});
  EXPECT_EQ(told, (Texts{"first", "third"}));
}

TEST_P(FoundationContract, DatesFollowTheCalendarOfTheLocalZone) {
  const platform::Calendar& calendar = foundation().currentCalendar();
  const platform::Date now = foundation().now();
  const auto today = calendar.componentsOfDate(now);
  const platform::Date midnight = calendar.dateFromComponents({today.year, today.month, today.day, {}, {}, {}});
  EXPECT_LE(midnight, now);
  EXPECT_GT(calendar.dateByAddingDays(midnight, 1), now);
  const auto formatter = foundation().makeDateFormatter();
  EXPECT_EQ(formatter->stringFromDate(now), "");
  formatter->setDateFormat("yyyy");
  EXPECT_EQ(formatter->stringFromDate(now), std::to_string(today.year));
  EXPECT_EQ(foundation().gregorianCalendar().componentsOfDate(now).day, today.day);
}

}  // namespace hushmode::contracts
