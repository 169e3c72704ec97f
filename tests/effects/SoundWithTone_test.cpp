// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// When the tone of a profile sounds between the changes of volume.

#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

const std::string toneStarts = "fx tone start type 1 \"texttone:Chime\"";
const std::string toneStops = "fx tone stop";

struct SoundWithTone : EffectsTest {
  SoundWithTone() {
    work->setPlayAlert(true);
    save("ringtone", 0.75F);
    save("volume", 0.5F);
    save("playBackVolume", 1.0F);
  }

  /// What has happened to the sound so far: tone, ringtone and media volume.
  Texts sounds() const {
    Texts lines;
    for (const std::string& line : effects()) {
      if (line.find("HUD") == std::string::npos) lines.push_back(line);
    }
    return lines;
  }
};

TEST_F(SoundWithTone, OnApplyingTheToneComesFirstAndThenTheRingtoneAndThenTheMediaVolume) {
  work->applySoundSettings(true);
  EXPECT_EQ(sounds(), Texts{toneStarts});
  runFor(1.0);
  EXPECT_EQ(sounds(), (Texts{toneStarts, toneStops}));
  runFor(0.75);
  EXPECT_EQ(sounds(), (Texts{toneStarts, toneStops}));
  runFor(0.1);
  EXPECT_EQ(sounds(), (Texts{toneStarts, toneStops, "fx setVolumeTo:0.250000 forCategory:Ringtone",
                             "fx setMediaVolume:0.125000"}));
}

TEST_F(SoundWithTone, OnRevertingTheRingtoneVolumeComesFirstAndTheMediaVolumeAfterTheTone) {
  work->applySoundSettings(false);
  EXPECT_EQ(sounds(), (Texts{"fx setVolumeTo:0.750000 forCategory:Ringtone", toneStarts}));
  runFor(1.75);
  EXPECT_EQ(sounds(), (Texts{"fx setVolumeTo:0.750000 forCategory:Ringtone", toneStarts, toneStops}));
  runFor(0.1);
  EXPECT_EQ(sounds().back(), "fx setMediaVolume:1.000000");
}

TEST_F(SoundWithTone, ASilentOrToneLessProfileChangesTheVolumesAtOnce) {
  const struct {
    const char* name;
    bool apply, playAlert, silent;
    const char *ringtone, *media;
  } cases[] = {
      {"apply, silent", true, true, true, "fx setVolumeTo:0.250000 forCategory:Ringtone", "fx setMediaVolume:0.125000"},
      {"apply, no tone", true, false, false, "fx setVolumeTo:0.250000 forCategory:Ringtone",
       "fx setMediaVolume:0.125000"},
      {"revert, silent", false, true, true, "fx setVolumeTo:0.750000 forCategory:Ringtone",
       "fx setMediaVolume:1.000000"},
      {"revert, no tone", false, false, false, "fx setVolumeTo:0.750000 forCategory:Ringtone",
       "fx setMediaVolume:1.000000"},
      {"revert, no tone and silent", false, false, true, "fx setVolumeTo:0.750000 forCategory:Ringtone",
       "fx setMediaVolume:1.000000"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    work->setPlayAlert(each.playAlert);
    work->setSilent(each.silent);
    clearRecord();
    work->applySoundSettings(each.apply);
    EXPECT_EQ(sounds(), (Texts{each.ringtone, each.media}));
    runFor(60);
  }
}

TEST_F(SoundWithTone, OnApplyingTheVolumesAreSavedBeforeTheTone) {
  phone.defaults().standard().remove("com.quorvel.hushmode-ringtone");
  phone.defaults().standard().remove("com.quorvel.hushmode-volume");
  work->applySoundSettings(true);
  const Texts lines = texts();
  const auto at = [&](const char* line) { return std::find(lines.begin(), lines.end(), line) - lines.begin(); };
  EXPECT_LT(at("def set \"com.quorvel.hushmode-ringtone\" = 0.800000012"), at(toneStarts.c_str()));
  EXPECT_LT(at("def set \"com.quorvel.hushmode-volume\" = 0.0999999791"), at(toneStarts.c_str()));
  EXPECT_LT(at(toneStarts.c_str()), static_cast<std::ptrdiff_t>(lines.size()));
}

TEST_F(SoundWithTone, TheIndicatorReturnsTwoSecondsAfterTheMediaVolumeAndNotAfterTheStart) {
  work->applySoundSettings(true);
  EXPECT_FALSE(phone.uiKit().isVolumeHUDEnabled());
  runFor(3.75);
  EXPECT_FALSE(phone.uiKit().isVolumeHUDEnabled());
  runFor(0.1);
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
}

TEST_F(SoundWithTone, OnALockedPhoneTheVolumesFollowAtTheTonesEnd) {
  phone.screen().setLocked(true);
  work->applySoundSettings(true);
  runFor(1.0);
  EXPECT_EQ(sounds().back(), "fx setMediaVolume:0.125000");
}

TEST_F(SoundWithTone, TheMediaTargetIsTheProfilesAtTheEndOfTheToneAndTheRingersTheOneAtItsStart) {
  work->applySoundSettings(true);
  work->setRingerVolume(1);
  work->setPlayBackVolume(1);
  runFor(60);
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.25F);
  EXPECT_EQ(phone.sound().mediaVolume(), 1.0F);
}

TEST_F(SoundWithTone, TheProfileLivesUntilItsToneIsOverAlsoWhenTheStoreLetGoOfIt) {
  std::weak_ptr<HMProfile> gone;
  {
    const auto brief = HMProfile::init();
    brief->setPlayAlert(true);
    brief->setPlayBackVolume(0.5);
    brief->applySoundSettings(true);
    gone = brief;
  }
  EXPECT_FALSE(gone.expired());
  runFor(60);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F);
  EXPECT_TRUE(gone.expired());
}

TEST_F(SoundWithTone, ARevertDuringTheToneEndsWithTheProfilesRingtoneVolumeAndTheRestoredMediaVolume) {
  work->apply();
  runFor(0.5);
  work->revert();
  runFor(60);
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.25F) << "nothing guards the overlap";
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F) << "as the apply's late media step found and saved it";
  EXPECT_EQ(saved("playBackVolume"), platform::Value(0.5F));
}

TEST_F(SoundWithTone, ARefreshDuringTheToneSetsTheVolumesAtOnceAndTheTonesEndSetsThemAgain) {
  work->applySoundSettings(true);
  work->setApplied(true);
  clearRecord();
  work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(count("fx setVolumeTo:0.250000 forCategory:Ringtone"), 1);
  runFor(60);
  EXPECT_EQ(count("fx setVolumeTo:0.250000 forCategory:Ringtone"), 2);
  EXPECT_EQ(count(toneStarts), 0);
}

TEST_F(SoundWithTone, WithoutAToneThatCanBePlayedTheVolumesFollowAllTheSame) {
  phone.classes().removeClass("TLAlert");
  work->applySoundSettings(true);
  EXPECT_EQ(sounds(), Texts());
  runFor(1.85);
  EXPECT_EQ(sounds(), (Texts{"fx setVolumeTo:0.250000 forCategory:Ringtone", "fx setMediaVolume:0.125000"}));
}

}  // namespace
}  // namespace hushmode
