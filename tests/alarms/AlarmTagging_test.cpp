// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Alarms that stand for profiles: what their titles say, and what is kept beside them.

#include "alarms/AlarmTagging.h"

#include "store/HMProfilesManager.h"
#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using Texts = std::vector<std::string>;

/// An alarm with three different titles, of which it answers some.
class TitledAlarm final : public platform::Alarm {
 public:
  explicit TitledAlarm(std::string title, std::vector<std::string_view> answers = {"title"})
      : title_(std::move(title)), answers_(std::move(answers)) {}

  std::string title() const override { return title_; }
  std::string rawTitle() const override { return "raw " + title_; }
  std::string uiTitle() const override { return "ui " + title_; }
  bool respondsTo(std::string_view selector) const override {
    return std::find(answers_.begin(), answers_.end(), selector) != answers_.end();
  }

 private:
  std::string title_;
  std::vector<std::string_view> answers_;
};

std::shared_ptr<platform::Alarm> alarm(std::string title) { return std::make_shared<TitledAlarm>(std::move(title)); }

struct AlarmTagging : PhoneFixture {
  static HMProfilesManager& manager() { return *HMProfilesManager::sharedManager(); }

  static std::shared_ptr<HMProfile> storeProfile(std::int64_t identifier) {
    const auto profile = HMProfile::init();
    profile->setIdentifier(identifier);
    profile->setCalendarIdentifiers(Texts());
    manager().profiles().push_back(profile);
    return profile;
  }
};

TEST_F(AlarmTagging, KnowsAnAlarmByThePrefixOfItsTitleAndAProfileByWhatFollowsTheLastPlus) {
  const struct {
    const char* title;
    bool isHidden;
    std::int64_t identifier;
  } cases[] = {
      {"Hush ModeMe+123", true, 123},
      {"Hush ModeMe", true, 0},
      {"Hush ModeMe+", true, 0},
      {"Hush ModeMe Work+1700000000", true, 1700000000},
      {"Hush Mode+123", false, 123},
      {"Hush Mode", false, 0},
      {"hush modeme+123", false, 123},
      {" Hush ModeMe+123", false, 123},
      {"My Hush ModeMe+123", false, 123},
      {"Wake up", false, 0},
      {"", false, 0},
      {"a+b+42", false, 42},
      {"a+42+b", false, 0},
      {"+7", false, 7},
      {"a+ 42 minutes", false, 42},
      {"a+-42", false, 0},
      {"a+99999999999999999999", false, 9223372036854775807},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.title);
    EXPECT_EQ(hm_isHidden(alarm(each.title)), each.isHidden);
    EXPECT_EQ(hm_createdByHM(alarm(each.title)), each.isHidden);
    EXPECT_EQ(hm_identifier(alarm(each.title)), each.identifier);
  }
}

TEST_F(AlarmTagging, LogsATestOfAnotherPrefixThanTheOneThatDecides) {
  const struct {
    const char *title, *hasLength, *hasPrefix;
  } cases[] = {
      {"Hush ModeMe+123", "1", "0"},
      {"Hush Mode+123", "1", "1"},
      {"Wake up", "1", "0"},
      {"", "0", "0"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.title);
    const std::string line = std::string("log I Checking title: '") + each.title +
                             "' is Hush Mode owned or not, title.length > 0: " + each.hasLength +
                             " && [title hasPrefix:Hush Mode+]: " + each.hasPrefix;
    clearRecord();
    hm_isHidden(alarm(each.title));
    hm_createdByHM(alarm(each.title));
    EXPECT_EQ(texts(), (Texts{line, line}));
    for (const auto& entry : phone.record().entries()) {
      EXPECT_EQ(*entry.fields.find("line"), platform::Value(47));
      EXPECT_EQ(*entry.fields.find("method"), platform::Value("hm_isHidden"));
    }
  }
}

TEST_F(AlarmTagging, ReadsTheIdentifierWithoutALogLine) {
  hm_identifier(alarm("Hush ModeMe+123"));
  EXPECT_EQ(texts(), Texts());
}

TEST_F(AlarmTagging, TakesTheFirstTitleThatTheAlarmAnswers) {
  const struct {
    std::vector<std::string_view> answers;
    const char* title;
  } cases[] = {
      {{"title", "rawTitle", "uiTitle"}, "7"},
      {{"title"}, "7"},
      {{"rawTitle", "uiTitle"}, "raw 7"},
      {{"rawTitle"}, "raw 7"},
      {{"uiTitle"}, "ui 7"},
      {{}, "ui 7"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.title);
    clearRecord();
    hm_isHidden(std::make_shared<TitledAlarm>("7", each.answers));
    ASSERT_EQ(texts().size(), 1U);
    EXPECT_NE(texts().front().find("Checking title: '" + std::string(each.title) + "'"), std::string::npos);
  }
}

TEST_F(AlarmTagging, FindsTheProfileAnewOnEveryCallUnlessOneIsKept) {
  const auto named = alarm("Hush ModeMe+42");
  EXPECT_FALSE(hm_profile(named));
  const auto first = storeProfile(42);
  EXPECT_EQ(hm_profile(named), first);
  manager().profiles().clear();
  EXPECT_FALSE(hm_profile(named)) << "the answer was kept";
  const auto second = storeProfile(42);
  EXPECT_EQ(hm_profile(named), second);
}

TEST_F(AlarmTagging, KeepsAProfileWithTheAlarmWhateverItsTitleSays) {
  const auto stored = storeProfile(42);
  const auto kept = HMProfile::init();
  const auto named = alarm("Hush ModeMe+42");
  setHm_profile(named, kept);
  EXPECT_EQ(hm_profile(named), kept);
  EXPECT_EQ(hm_profile(alarm("Hush ModeMe+42")), stored) << "kept with another alarm";
  setHm_profile(named, nullptr);
  EXPECT_EQ(hm_profile(named), stored);
}

TEST_F(AlarmTagging, FindsTheProfileOfIdentifierZeroForATitleWithoutAPlus) {
  EXPECT_FALSE(hm_profile(alarm("Wake up")));
  const auto zero = storeProfile(0);
  EXPECT_EQ(hm_profile(alarm("Wake up")), zero);
}

TEST_F(AlarmTagging, LoadsTheProfilesForTheLookUp) {
  manager();
  writeProfilesFile({platform::Dictionary{{"identifier", 42}, {"title", "Work"}}});
  const auto found = hm_profile(alarm("Hush ModeMe+42"));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->title(), "Work");
}

TEST_F(AlarmTagging, FlagsOfAManagerAndOfItsClassAreFalseUntilSetAndStandApart) {
  auto* managerClass = platform::find<platform::AlarmManager>();
  ASSERT_TRUE(managerClass);
  const auto alarms = managerClass->sharedManager();
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsToo(alarms));
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsTooClassLevel(managerClass));
  setHm_shouldGetHiddenAlarmsToo(alarms, true);
  EXPECT_TRUE(hm_shouldGetHiddenAlarmsToo(alarms));
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsTooClassLevel(managerClass));
  setHm_shouldGetHiddenAlarmsToo(alarms, false);
  setHm_shouldGetHiddenAlarmsTooClassLevel(managerClass, true);
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsToo(alarms));
  EXPECT_TRUE(hm_shouldGetHiddenAlarmsTooClassLevel(managerClass));
  setHm_shouldGetHiddenAlarmsTooClassLevel(managerClass, false);
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsTooClassLevel(managerClass));
}

TEST_F(AlarmTagging, FlagsOfNothingAreFalseAndCannotBeSet) {
  setHm_shouldGetHiddenAlarmsToo(nullptr, true);
  setHm_shouldGetHiddenAlarmsTooClassLevel(nullptr, true);
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsToo(nullptr));
  EXPECT_FALSE(hm_shouldGetHiddenAlarmsTooClassLevel(nullptr));
}

}  // namespace
}  // namespace hushmode
