// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using platform::Array;
using platform::Dictionary;
using platform::Notification;
using platform::Value;
using Texts = std::vector<std::string>;

TEST_F(PhoneFixture, DefaultsConvertWhatIsStored) {
  const struct {
    const char* name;
    Value stored;
    float asFloat;
    bool asBool;
  } cases[] = {
      {"true", true, 1, true},
      {"false", false, 0, false},
      {"an integer", 3, 3, true},
      {"zero", 0, 0, false},
      {"a real", 0.25, 0.25F, true},
      {"a double, narrowed", 0.1, 0.1F, true},
      {"zero as a real", 0.0, 0, false},
      {"a text with a number", "0.75", 0.75F, false},
      {"a text that starts with a number", " 12.5 dB", 12.5F, true},
      {"a negative text", "-2", -2, true},
      {"a text with a plus", "+2", 2, true},
      {"YES", "YES", 0, true},
      {"true as a text", "true", 0, true},
      {"no as a text", "no", 0, false},
      {"zeros and a one", "001", 1, true},
      {"infinity is no number here", "inf", 0, false},
      {"empty text", "", 0, false},
      {"signs alone", "-.", 0, false},
      {"a date", platform::Date(5), 0, false},
      {"an array", Array{1}, 0, false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    phone.defaults().standard().set("key", each.stored);
    EXPECT_EQ(phone.defaults().floatForKey("key"), each.asFloat);
    EXPECT_EQ(phone.defaults().boolForKey("key"), each.asBool);
    EXPECT_EQ(phone.defaults().valueForKey("key"), each.stored);
  }
  EXPECT_EQ(phone.defaults().floatForKey("absent"), 0);
  EXPECT_FALSE(phone.defaults().boolForKey("absent"));
  EXPECT_FALSE(phone.defaults().valueForKey("absent"));
  EXPECT_EQ(texts(), Texts()) << "reading leaves no trace";
}

TEST_F(PhoneFixture, DefaultsRecordEveryChange) {
  platform::UserDefaults& defaults = phone.foundation().standardUserDefaults();
  defaults.setFloat(0.8F, "volume");
  defaults.setBool(true, "switch");
  defaults.synchronize();
  defaults.removeObjectForKey("volume");
  EXPECT_EQ(texts(), (Texts{"def set \"volume\" = 0.800000012", "def set \"switch\" = true", "def synchronize",
                            "def remove \"volume\""}));
  EXPECT_EQ(phone.defaults().standard(), (Dictionary{{"switch", true}}));
}

TEST_F(PhoneFixture, ADomainIsReplacedWholeAndIsNotTheStandardDefaults) {
  platform::UserDefaults& defaults = phone.foundation().standardUserDefaults();
  EXPECT_FALSE(defaults.persistentDomainForName("no.such.app"));
  EXPECT_EQ(defaults.persistentDomainForName("com.apple.springboard"),
            (Dictionary{{"ring-vibrate", true}, {"silent-vibrate", false}, {"other", 1}}));
  defaults.setBool(true, "mine");
  defaults.setPersistentDomain({{"ring-vibrate", false}}, "com.apple.springboard");
  EXPECT_EQ(defaults.persistentDomainForName("com.apple.springboard"), (Dictionary{{"ring-vibrate", false}}));
  EXPECT_TRUE(defaults.boolForKey("mine"));
}

TEST_F(PhoneFixture, FilesTellWhatTheyHold) {
  phone.files().memory().set("/array", Array{1, 2});
  phone.files().memory().set("/dictionary", Dictionary{{"a", 1}});
  phone.files().memory().set("/garbage", platform::Data(10));
  const struct {
    const char* path;
    bool exists, isArray, isDictionary;
  } cases[] = {
      {"/array", true, true, false},
      {"/dictionary", true, false, true},
      {"/garbage", true, false, false},
      {"/none", false, false, false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.path);
    EXPECT_EQ(phone.files().fileExists(each.path), each.exists);
    EXPECT_EQ(phone.files().arrayWithContentsOfFile(each.path).has_value(), each.isArray);
    EXPECT_EQ(phone.files().dictionaryWithContentsOfFile(each.path).has_value(), each.isDictionary);
  }
}

TEST_F(PhoneFixture, WritesReplaceTheFileUnlessTheyFail) {
  platform::PropertyListFiles& files = phone.foundation().files();
  EXPECT_TRUE(files.writeArrayToFileAtomically({1}, profilesPath));
  phone.files().setWritesFail(profilesPath, true);
  EXPECT_FALSE(files.writeArrayToFileAtomically({2}, profilesPath));
  EXPECT_TRUE(files.writeArrayToFileAtomically({3}, "/another"));
  phone.files().setWritesFail(profilesPath, false);
  phone.files().setWritesFail(true);
  EXPECT_FALSE(files.writeArrayToFileAtomically({4}, "/another"));
  EXPECT_EQ(files.arrayWithContentsOfFile(profilesPath), Array{1});
  EXPECT_EQ(files.arrayWithContentsOfFile("/another"), Array{3});
  EXPECT_EQ(texts(), (Texts{"file write profiles ok", "file write profiles failed", "file write /another ok",
                            "file write /another failed"}));
}

TEST_F(PhoneFixture, FilesCanBeSomebodyElses) {
  devices::MemoryFiles backend;
  phone.files().setBackend(&backend);
  EXPECT_TRUE(phone.foundation().files().writeArrayToFileAtomically({1}, "/file"));
  EXPECT_TRUE(backend.fileExists("/file"));
  EXPECT_TRUE(phone.files().fileExists("/file"));
  EXPECT_FALSE(phone.files().fileExists(settingsPath)) << "which lies in memory";
  phone.files().setBackend(nullptr);
  EXPECT_FALSE(phone.files().fileExists("/file"));
}

TEST_F(PhoneFixture, ObserversAreToldInsideThePostInTheOrderOfRegistration) {
  Texts told;
  const auto sender = phone.celestial().sharedAVSystemController();
  const auto note = [&](std::string name) { return [&told, name](const Notification&) { told.push_back(name); }; };
  int first = 0, second = 0;
  phone.notifications().addObserver(&first, "name", nullptr, note("any sender"));
  phone.notifications().addObserver(&second, "name", sender, note("this sender"));
  phone.notifications().addObserver(&first, "other", nullptr, note("other name"));
  phone.notifications().addObserver(&first, "name", nullptr, note("any sender again"));
  phone.notifications().post({"name", nullptr, {}});
  EXPECT_EQ(told, (Texts{"any sender", "any sender again"}));
  phone.notifications().post({"name", sender, {}});
  EXPECT_EQ(told, (Texts{"any sender", "any sender again", "any sender", "this sender", "any sender again"}));
  phone.notifications().removeObserver(&first);
  phone.notifications().post({"name", sender, {}});
  EXPECT_EQ(told.size(), 6U);
  EXPECT_EQ(told.back(), "this sender");
  EXPECT_EQ(texts(), (Texts{"notification name", "notification name", "notification name"}));
}

TEST_F(PhoneFixture, ObserversMayComeAndGoDuringAPost) {
  Texts told;
  int first = 0, second = 0, third = 0;
  auto& center = phone.notifications();
  center.addObserver(&first, "name", nullptr, [&](const Notification&) {
    told.push_back("first");
    center.removeObserver(&first);
    center.removeObserver(&second);
    center.addObserver(&third, "name", nullptr, [&](const Notification&) { told.push_back("third"); });
  });
  center.addObserver(&second, "name", nullptr, [&](const Notification&) { told.push_back("second"); });
  center.post({"name", nullptr, {}});
  EXPECT_EQ(told, Texts{"first"});
  center.post({"name", nullptr, {}});
  EXPECT_EQ(told, (Texts{"first", "third"}));
}

TEST_F(PhoneFixture, BundlesAnswerTheirTextsThenTheValueThenTheKey) {
  phone.foundation().setBundle("/bundle", std::make_shared<devices::SimulatedBundle>(
                                              "com.example", devices::SimulatedBundle::StringTable{{"Yes", "Ja"}}));
  const auto bundle = phone.foundation().bundleWithPath("/bundle");
  ASSERT_NE(bundle, nullptr);
  EXPECT_EQ(bundle->bundleIdentifier(), "com.example");
  EXPECT_EQ(bundle->localizedStringForKey("Yes", "value"), "Ja");
  EXPECT_EQ(bundle->localizedStringForKey("No", "value"), "value");
  EXPECT_EQ(bundle->localizedStringForKey("No", ""), "No");
  EXPECT_EQ(bundle->localizedStringForKey("No", std::nullopt), "No");
  EXPECT_EQ(phone.foundation().bundleWithPath("/none"), nullptr);
  EXPECT_EQ(phone.foundation().mainBundle()->bundleIdentifier(), "com.apple.springboard");
  phone.foundation().hostBundle().setIdentifier("host");
  phone.foundation().hostBundle().setTable({{"No", "Nein"}});
  EXPECT_EQ(phone.foundation().mainBundle()->bundleIdentifier(), "host");
  EXPECT_EQ(phone.foundation().mainBundle()->localizedStringForKey("No", ""), "Nein");
}

TEST_F(PhoneFixture, TheCalendarFollowsTheTimeZone) {
  const platform::Calendar& calendar = phone.foundation().currentCalendar();
  EXPECT_EQ(calendar.componentsOfDate(phone.time().now()).hour, 8);
  phone.moveToTimeZone("Asia/Tokyo");
  EXPECT_EQ(calendar.componentsOfDate(phone.time().now()).hour, 17);
  EXPECT_EQ(phone.foundation().gregorianCalendar().componentsOfDate(phone.time().now()).hour, 17);
  EXPECT_THROW(phone.moveToTimeZone("Nowhere/Land"), std::invalid_argument);
  EXPECT_EQ(texts(), Texts{"phone time zone Asia/Tokyo"});
}

}  // namespace
}  // namespace hushmode
