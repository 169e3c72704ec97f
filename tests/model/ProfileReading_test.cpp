// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A profile read from its dictionary: conversions, missing keys, and what is not read.

#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::Value;

class ProfileReading : public CoreTest {
 protected:
  static std::shared_ptr<HMProfile> read(const Dictionary& dictionary) {
    return HMProfile::initWithDictionary(dictionary);
  }
  std::int64_t nowInSeconds() const { return static_cast<std::int64_t>(phone.time().now().secondsSince1970()); }
};

struct Flag {
  const char* key;
  bool (HMProfile::*get)() const;
};
constexpr Flag flags[] = {
    {"enabled", &HMProfile::isEnabled},
    {"applied", &HMProfile::isApplied},
    {"allDay", &HMProfile::isAllDay},
    {"playAlert", &HMProfile::isPlayAlert},
    {"vibrate", &HMProfile::isVibrate},
    {"vibrateAlert", &HMProfile::isVibrateAlert},
    {"showOnStatusBar", &HMProfile::isShowOnStatusBar},
    {"dnDEnabled", &HMProfile::isDnDEnabled},
    {"wakeUpScreen", &HMProfile::isWakeUpScreen},
    {"allDayEventsIgnored", &HMProfile::isAllDayEventsIgnored},
};

TEST_F(ProfileReading, SetsEachFlagFromItsOwnKey) {
  for (const Flag& set : flags) {
    SCOPED_TRACE(set.key);
    const auto profile = read({{set.key, true}});
    for (const Flag& flag : flags) EXPECT_EQ((profile.get()->*flag.get)(), flag.key == set.key) << flag.key;
  }
}

TEST_F(ProfileReading, SetsNumbersTextsAndLists) {
  const auto profile = read({{"identifier", 42},
                             {"title", "Work"},
                             {"ringerVolume", 0.0625},
                             {"playBackVolume", 0.5},
                             {"deviceVolume", 0.25},
                             {"applyProfileEventStatus", 2},
                             {"alertSound", 1005},
                             {"alertToneIdentifier", "texttone:Chime"},
                             {"calendarIdentifiers", Array{"cal-A", "cal-B"}},
                             {"startTime", "9:00 AM"},
                             {"endTime", "6:30 PM"},
                             {"wifiNetworks", Array{"Home", "Home"}}});
  EXPECT_EQ(profile->identifier(), 42);
  EXPECT_EQ(profile->title(), "Work");
  EXPECT_EQ(profile->ringerVolume(), 0.0625);
  EXPECT_EQ(profile->playBackVolume(), 0.5);
  EXPECT_EQ(profile->deviceVolume(), 0.25);
  EXPECT_EQ(profile->applyProfileEventStatus(), 2);
  EXPECT_EQ(profile->alertSound(), 1005);
  EXPECT_EQ(profile->alertToneIdentifier(), "texttone:Chime");
  EXPECT_EQ(profile->calendarIdentifiers(), (Texts{"cal-A", "cal-B"}));
  EXPECT_EQ(profile->startTime(), "9:00 AM");
  EXPECT_EQ(profile->endTime(), "6:30 PM");
  EXPECT_EQ(profile->wifiNetworks(), (Texts{"Home", "Home"}));
}

TEST_F(ProfileReading, OfAnEmptyDictionaryGivesAFreshIdentifierAndNothingElse) {
  runFor(5.9);
  const auto profile = read({});
  EXPECT_EQ(profile->identifier(), nowInSeconds());
  for (const Flag& flag : flags) EXPECT_FALSE((profile.get()->*flag.get)()) << flag.key;
  EXPECT_EQ(profile->title(), std::nullopt);
  EXPECT_EQ(profile->startTime(), std::nullopt);
  EXPECT_EQ(profile->endTime(), std::nullopt);
  EXPECT_EQ(profile->alertToneIdentifier(), std::nullopt);
  EXPECT_EQ(profile->ringerVolume(), 0);
  EXPECT_EQ(profile->playBackVolume(), 0);
  EXPECT_EQ(profile->deviceVolume(), 0);
  EXPECT_EQ(profile->alertSound(), 0);
  EXPECT_EQ(profile->applyProfileEventStatus(), 0);
  phone.calendars().addCalendar("cal-1", "Work");
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-1"}) << "the list was absent, not empty";
  EXPECT_EQ(profile->wifiNetworks(), Texts());
}

TEST_F(ProfileReading, ReplacesAnIdentifierThatIsNotPositiveByTheTime) {
  const struct {
    Value stored;
    std::int64_t identifier;
  } cases[] = {
      {0, nowInSeconds()}, {-5, nowInSeconds()}, {0.9, nowInSeconds()}, {"none", nowInSeconds()}, {42, 42}, {1, 1},
      {42.9, 42},          {"42", 42},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.identifier);
    EXPECT_EQ(read({{"identifier", each.stored}})->identifier(), each.identifier);
  }
}

TEST_F(ProfileReading, IntoAnExistingProfileTakesTheIdentifierAsItIs) {
  const auto profile = HMProfile::init();
  profile->setPropertiesFromDicitonary({{"identifier", -5}});
  EXPECT_EQ(profile->identifier(), -5);
}

TEST_F(ProfileReading, OfAnAppliedProfileSetsTheFieldAndTouchesNothing) {
  const auto profile = read({{"identifier", 42}, {"applied", true}, {"title", "Work"}});
  EXPECT_TRUE(profile->isApplied());
  EXPECT_EQ(texts(), Texts{"log I setPropertiesFromDicitonary=> {identifier = 42, applied = 1, title = Work}"});
}

TEST_F(ProfileReading, LogsTheWholeDictionary) {
  read({{"identifier", 42}, {"unknown", Array{1, "x"}}});
  EXPECT_EQ(logged(), Texts{"information 88 setPropertiesFromDicitonary: setPropertiesFromDicitonary=> {identifier = "
                            "42, unknown = (1, x)}"});
}

TEST_F(ProfileReading, NarrowsVolumesToSinglePrecision) {
  for (const char* key : {"ringerVolume", "playBackVolume", "deviceVolume"}) {
    SCOPED_TRACE(key);
    const auto profile = read({{key, 0.3}});
    EXPECT_EQ(profile->ringerVolume() + profile->playBackVolume() + profile->deviceVolume(), 0.30000001192092896);
  }
}

TEST_F(ProfileReading, TakesAFilterOutOfRangeAsZero) {
  const auto profile = read({{"identifier", 42}, {"applyProfileEventStatus", 9}});
  EXPECT_EQ(profile->applyProfileEventStatus(), 0);
}

TEST_F(ProfileReading, NeverReadsTheUpdatedDate) {
  EXPECT_EQ(read({{"identifier", 42}, {"updatedDate", Date(1700000000)}})->updatedDate(), std::nullopt);
  const auto profile = HMProfile::init();
  profile->setUpdatedDate(Date(5));
  profile->setPropertiesFromDicitonary({{"updatedDate", Date(9)}});
  EXPECT_EQ(profile->updatedDate(), Date(5));
}

TEST_F(ProfileReading, ClearsWhatIsMissingButForTheTwoLists) {
  const auto profile = read({{"identifier", 42},
                             {"title", "Work"},
                             {"enabled", true},
                             {"ringerVolume", 1.0},
                             {"alertToneIdentifier", "texttone:Chime"},
                             {"calendarIdentifiers", Array{"cal-A"}},
                             {"startTime", "9:00 AM"},
                             {"endTime", "6:30 PM"},
                             {"wifiNetworks", Array{"Home"}}});
  profile->setPropertiesFromDicitonary({});
  EXPECT_EQ(profile->identifier(), 0);
  EXPECT_EQ(profile->title(), std::nullopt);
  EXPECT_FALSE(profile->isEnabled());
  EXPECT_EQ(profile->ringerVolume(), 0);
  EXPECT_EQ(profile->alertToneIdentifier(), std::nullopt);
  EXPECT_EQ(profile->startTime(), std::nullopt);
  EXPECT_EQ(profile->endTime(), std::nullopt);
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-A"});
  EXPECT_EQ(profile->wifiNetworks(), Texts{"Home"});
}

TEST_F(ProfileReading, TellsAnEmptyListFromAMissingOne) {
  phone.calendars().addCalendar("cal-1", "Work");
  EXPECT_EQ(read({{"calendarIdentifiers", Array{}}})->calendarIdentifiers(), Texts());
}

TEST_F(ProfileReading, LeavesTheRunTimeStateAlone) {
  const auto profile = HMProfile::init();
  profile->setNewProfile(true);
  profile->setVolumeAlertShown(true);
  profile->setPreserveVolumeChange(true);
  profile->setNewRingtoneVolume(0.5);
  profile->setAlertSoundID(7);
  profile->setStartDate(Date(1));
  profile->setPropertiesFromDicitonary({{"identifier", 42},
                                        {"newProfile", false},
                                        {"silent", true},
                                        {"volumeAlertShown", false},
                                        {"newRingtoneVolume", 0.0},
                                        {"alertSoundID", 0},
                                        {"startDate", Date(9)}});
  EXPECT_TRUE(profile->isNewProfile());
  EXPECT_TRUE(profile->isVolumeAlertShown());
  EXPECT_TRUE(profile->shouldPreserveVolumeChange());
  EXPECT_EQ(profile->newRingtoneVolume(), 0.5);
  EXPECT_EQ(profile->alertSoundID(), 7U);
  EXPECT_FALSE(profile->isSilent());
  EXPECT_EQ(profile->startDate(), Date(1));
}

TEST_F(ProfileReading, TellsKeysApartByCase) {
  const auto profile = read({{"Identifier", 42}, {"dndEnabled", true}, {"Title", "Work"}});
  EXPECT_EQ(profile->identifier(), nowInSeconds());
  EXPECT_FALSE(profile->isDnDEnabled());
  EXPECT_EQ(profile->title(), std::nullopt);
}

TEST_F(ProfileReading, ConvertsValuesOfOtherTypesByTheirOwnMeaning) {
  const auto profile = read({{"identifier", "42"},
                             {"enabled", 1},
                             {"allDay", "YES"},
                             {"vibrate", "no"},
                             {"ringerVolume", 1},
                             {"playBackVolume", "0.5"},
                             {"alertSound", 1005.7},
                             {"title", 7},
                             {"calendarIdentifiers", Array{"cal-A", 7, Dictionary{}}}});
  EXPECT_EQ(profile->identifier(), 42);
  EXPECT_TRUE(profile->isEnabled());
  EXPECT_TRUE(profile->isAllDay());
  EXPECT_FALSE(profile->isVibrate());
  EXPECT_EQ(profile->ringerVolume(), 1);
  EXPECT_EQ(profile->playBackVolume(), 0.5);
  EXPECT_EQ(profile->alertSound(), 1005);
  EXPECT_EQ(profile->title(), "7");
  EXPECT_EQ(profile->calendarIdentifiers(), (Texts{"cal-A", "7"}));
}

TEST_F(ProfileReading, SurvivesAnyTypeUnderAnyKey) {
  const Value values[] = {true, -1, 1e300, "text", Date(1), Data(2), Array{Array{}, Data(1)}, Dictionary{{"deep", 1}}};
  for (const Value& value : values) {
    SCOPED_TRACE(value.variant().index());
    Dictionary dictionary = HMProfile::init()->dictionaryRepresentation();
    for (const auto& [key, unused] : HMProfile::init()->dictionaryRepresentation()) dictionary.set(key, value);
    const auto profile = read(dictionary);
    EXPECT_NE(profile->identifier(), 0);
    EXPECT_EQ(read(profile->dictionaryRepresentation())->isEnabled(), profile->isEnabled());
  }
}

}  // namespace
}  // namespace hushmode
