// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A profile written into its dictionary, and what is lost on the way there and back.

#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

using platform::Array;
using platform::Date;
using platform::Dictionary;
using platform::Value;

class ProfileWriting : public CoreTest {
 protected:
  static Texts keysOf(const Dictionary& dictionary) {
    Texts keys;
    for (const auto& [key, value] : dictionary) keys.push_back(key);
    return keys;
  }
  static std::shared_ptr<HMProfile> fullProfile() {
    const auto profile = HMProfile::init();
    profile->setIdentifier(1700000000);
    profile->setTitle("Work");
    profile->setRingerVolume(0.3);
    profile->setPlayBackVolume(0.0625);
    profile->setDeviceVolume(1);
    profile->setApplyProfileEventStatus(3);
    profile->setAlertSound(1005);
    profile->setAlertToneIdentifier("texttone:Chime");
    profile->setCalendarIdentifiers(Texts{"cal-A", "cal-B"});
    profile->setStartTime("9:00 AM");
    profile->setEndTime("6:30 PM");
    profile->setUpdatedDate(Date(1715673600.25));
    profile->setWifiNetworks(Texts{"Home"});
    return profile;
  }
};

TEST_F(ProfileWriting, WritesEveryKeyInItsPlaceAndWithItsType) {
  const auto profile = fullProfile();
  profile->setEnabled(true);
  profile->setVibrate(true);
  const Dictionary expected = {
      {"identifier", 1700000000},
      {"title", "Work"},
      {"enabled", true},
      {"allDay", false},
      {"ringerVolume", 0.3},
      {"playBackVolume", 0.0625},
      {"deviceVolume", 1.0},
      {"playAlert", false},
      {"vibrate", true},
      {"vibrateAlert", false},
      {"showOnStatusBar", false},
      {"dnDEnabled", false},
      {"applyProfileEventStatus", 3},
      {"applied", false},
      {"alertSound", 1005},
      {"alertToneIdentifier", "texttone:Chime"},
      {"calendarIdentifiers", Array{"cal-A", "cal-B"}},
      {"startTime", "9:00 AM"},
      {"endTime", "6:30 PM"},
      {"updatedDate", Date(1715673600.25)},
      {"wifiNetworks", Array{"Home"}},
      {"wakeUpScreen", false},
      {"allDayEventsIgnored", false},
  };
  const Dictionary written = profile->dictionaryRepresentation();
  EXPECT_EQ(keysOf(written), keysOf(expected));
  for (const auto& [key, value] : expected) {
    const Value* found = written.find(key);
    EXPECT_TRUE(found && *found == value) << key;
  }
}

TEST_F(ProfileWriting, WritesEachFlagUnderItsOwnKey) {
  const struct {
    const char* key;
    void (HMProfile::*set)(bool);
  } flags[] = {
      {"enabled", &HMProfile::setEnabled},
      {"allDay", &HMProfile::setAllDay},
      {"playAlert", &HMProfile::setPlayAlert},
      {"vibrate", &HMProfile::setVibrate},
      {"vibrateAlert", &HMProfile::setVibrateAlert},
      {"showOnStatusBar", &HMProfile::setShowOnStatusBar},
      {"dnDEnabled", &HMProfile::setDnDEnabled},
      {"wakeUpScreen", &HMProfile::setWakeUpScreen},
      {"allDayEventsIgnored", &HMProfile::setAllDayEventsIgnored},
  };
  for (const auto& flag : flags) {
    SCOPED_TRACE(flag.key);
    const auto profile = fullProfile();
    (profile.get()->*flag.set)(true);
    for (const auto& [key, value] : profile->dictionaryRepresentation()) {
      if (value.as<bool>()) {
        EXPECT_EQ(value, Value(key == flag.key)) << key;
      }
    }
  }
}

TEST_F(ProfileWriting, WritesTheAppliedField) {
  const auto profile = HMProfile::initWithDictionary({{"applied", true}});
  EXPECT_EQ(*profile->dictionaryRepresentation().find("applied"), Value(true));
}

TEST_F(ProfileWriting, LeavesOutAnAbsentTitleToneAndUpdatedDate) {
  const Dictionary written = HMProfile::init()->dictionaryRepresentation();
  EXPECT_FALSE(written.find("title"));
  EXPECT_FALSE(written.find("alertToneIdentifier"));
  EXPECT_FALSE(written.find("updatedDate"));
  EXPECT_EQ(written.size(), 20U);
}

TEST_F(ProfileWriting, WritesAnEmptyTitle) {
  const auto profile = HMProfile::init();
  profile->setTitle("");
  EXPECT_EQ(*profile->dictionaryRepresentation().find("title"), Value(""));
}

TEST_F(ProfileWriting, WritesOfficeHoursForAbsentTimesAndLeavesThemAbsent) {
  const auto profile = HMProfile::init();
  const Dictionary written = profile->dictionaryRepresentation();
  EXPECT_EQ(*written.find("startTime"), Value("8:00 AM"));
  EXPECT_EQ(*written.find("endTime"), Value("5:00 PM"));
  EXPECT_EQ(profile->startTime(), std::nullopt);
}

TEST_F(ProfileWriting, WritesAFilterOutOfRangeAsZero) {
  const auto profile = HMProfile::init();
  profile->setApplyProfileEventStatus(9);
  EXPECT_EQ(*profile->dictionaryRepresentation().find("applyProfileEventStatus"), Value(0));
}

TEST_F(ProfileWriting, AlwaysWritesTheNetworks) {
  EXPECT_EQ(*HMProfile::init()->dictionaryRepresentation().find("wifiNetworks"), Value(Array{}));
}

TEST_F(ProfileWriting, WritesAllCalendarsForAProfileThatNeverChoseAndKeepsThem) {
  phone.calendars().addCalendar("cal-1", "Work");
  const auto profile = HMProfile::init();
  EXPECT_EQ(*profile->dictionaryRepresentation().find("calendarIdentifiers"), Value(Array{"cal-1"}));
  phone.calendars().addCalendar("cal-2", "Home");
  EXPECT_EQ(*profile->dictionaryRepresentation().find("calendarIdentifiers"), Value(Array{"cal-1"}));
}

TEST_F(ProfileWriting, WritesNoRunTimeState) {
  const auto profile = fullProfile();
  profile->setNewProfile(true);
  profile->setVolumeAlertShown(true);
  profile->setPreserveVolumeChange(true);
  profile->setNewRingtoneVolume(0.5);
  profile->setAlertSoundID(7);
  profile->setCreatedDate(Date(1));
  profile->setStartDate(Date(1));
  EXPECT_EQ(profile->dictionaryRepresentation(), fullProfile()->dictionaryRepresentation());
}

TEST_F(ProfileWriting, LogsNothing) {
  const auto profile = fullProfile();
  profile->dictionaryRepresentation();
  EXPECT_EQ(texts(), Texts());
}

TEST_F(ProfileWriting, LosesTheUpdatedDateAndThePrecisionOfVolumesOnTheWayBack) {
  const auto back = HMProfile::initWithDictionary(fullProfile()->dictionaryRepresentation());
  EXPECT_EQ(back->updatedDate(), std::nullopt);
  EXPECT_EQ(back->ringerVolume(), 0.30000001192092896);
  EXPECT_EQ(back->playBackVolume(), 0.0625);
  Dictionary expected = fullProfile()->dictionaryRepresentation();
  expected.remove("updatedDate");
  expected.set("ringerVolume", 0.30000001192092896);
  EXPECT_EQ(back->dictionaryRepresentation(), expected) << "all else comes back";
}

}  // namespace
}  // namespace hushmode
