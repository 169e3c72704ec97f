// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The quiet re-assertion of an applied profile's settings.

#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

struct Refresh : EffectsTest {
  Refresh() {
    phone.uiKit().setSystemVersion("11.4");
    work->setApplied(true);
    clearRecord();
  }

  /// Makes the class "AVController" exist and answer `volume` for the general volume.
  void answerGeneralVolume(float volume) {
    phone.classes().restoreClass("AVController");
    phone.sound().setLegacyVolume(volume);
  }
  bool reapplied() const { return count("log I *********** applySoundSettings: 1") == 1; }
};

const Texts setSilentLines{"log I ************ __________ (((((( )))))))))))))) ______________ ************",
                           "log I setSilent is called......"};
const std::string notApplied = "log E ******* Profile is not applied, hence not checking on Sound related settings.";
const std::string doNotDisturbIsOff =
    "log I **** Currently the state of DND module is 0 & and you are asking me to set its state as 0. Since both are "
    "same, I'm not doing anything!!";

TEST_F(Refresh, WithMatchingVolumesAssertsTheSwitchesInOrderAndLeavesTheSoundAlone) {
  answerGeneralVolume(0.25F);
  phone.sound().setMediaVolume(0.125F);
  work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(texts(),
            joined({setSilentLines,
                    {"log I **** currentSysVolume: 0.250000 && self.ringerVolume: 0.250000 and currentPlayBackVolume: "
                     "0.125000 && self.playBackVolume: 0.125000",
                     asterisks, "log I oldRingVibrateState: 1", asterisks,
                     "def set \"com.quorvel.hushmode-ring-vibrate\" = true",
                     "def set \"com.quorvel.hushmode-silent-vibrate\" = false", "def synchronize", asterisks,
                     "log I changeVibrateStatus() is called", asterisks,
                     "fx springboard domain ring-vibrate=false silent-vibrate=false",
                     "darwin com.apple.springboard.ring-vibrate.changed",
                     "darwin com.apple.springboard.silent-vibrate.changed", "fx statusBarItem setVisible:false",
                     doNotDisturbIsOff},
                    setSilentLines}));
  EXPECT_FALSE(work->isSilent());
}

TEST_F(Refresh, ComparesTheGeneralVolumeWithTheRingersAndTheMediaVolumeWithItsOwn) {
  const struct {
    const char* name;
    float general, media;
    double ringerVolume, playBackVolume;
    bool reapplied;
  } cases[] = {
      {"both match", 0.5F, 0.25F, 0.5, 0.25, false},
      {"general differs", 0.75F, 0.25F, 0.5, 0.25, true},
      {"media differs", 0.5F, 0.5F, 0.5, 0.25, true},
      {"both differ", 0.75F, 0.5F, 0.5, 0.25, true},
      {"match in single precision only", 0.3F, 0.7F, 0.3, 0.7, false},
      {"differ by one step of single precision", 0.3F, 0.7F, 0.3000001, 0.7, true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    clearRecord();
    answerGeneralVolume(each.general);
    phone.sound().setMediaVolume(each.media);
    work->setRingerVolume(each.ringerVolume);
    work->setPlayBackVolume(each.playBackVolume);
    work->refreshSoundSettingsIfRequired();
    EXPECT_EQ(reapplied(), each.reapplied);
  }
}

TEST_F(Refresh, ReadsTheGeneralVolumeAsNearlyATenthAndThusReappliesForEveryRingerVolume) {
  phone.sound().setMediaVolume(0.125F);
  for (const double ringer : {0.0, 0.1, 0.0999999791, 0.6, 1.0}) {
    SCOPED_TRACE(ringer);
    clearRecord();
    phone.sound().setVolume("Volume", 0.6F);
    phone.sound().setMediaVolume(0.125F);
    work->setRingerVolume(ringer);
    work->refreshSoundSettingsIfRequired();
    // 0.0999999791 is what every reading from 0.5 up gives in single precision.
    EXPECT_EQ(reapplied(), static_cast<float>(ringer) != 0.0999999791F);
  }
}

TEST_F(Refresh, OfAFailedReadingComparesExactlyATenth) {
  phone.sound().setReadFails("Volume", true);
  phone.sound().setMediaVolume(0.125F);
  work->setRingerVolume(0.1);
  work->refreshSoundSettingsIfRequired();
  EXPECT_FALSE(reapplied());
}

TEST_F(Refresh, WithoutTheMediaClassReadsTheMediaVolumeAsZero) {
  answerGeneralVolume(0.25F);
  phone.classes().removeClass("VolumeControl");
  work->setPlayBackVolume(0);
  work->refreshSoundSettingsIfRequired();
  EXPECT_FALSE(reapplied());
  work->setPlayBackVolume(0.125);
  work->refreshSoundSettingsIfRequired();
  EXPECT_TRUE(reapplied());
}

TEST_F(Refresh, OfAProfileThatIsNotAppliedSaysSoAndCarriesOn) {
  work->setApplied(false);
  work->setShowOnStatusBar(true);
  work->setDnDEnabled(true);
  work->setVibrate(true);
  clearRecord();
  work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(texts().front(), notApplied);
  EXPECT_TRUE(reapplied());
  EXPECT_EQ(count("fx vibration feedback (4095)"), 1);
  EXPECT_TRUE(phone.statusBar().isIconVisible());
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
  EXPECT_FALSE(work->isApplied());
}

TEST_F(Refresh, OfAnAppliedProfileLogsNoError) {
  work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(count(notApplied), 0);
}

TEST_F(Refresh, SwitchesOffWhatTheProfileDoesNotAskFor) {
  manager().showORHideIconsOnSpringBoard(true);
  manager().enableORDisableDnD(true);
  work->refreshSoundSettingsIfRequired();
  EXPECT_FALSE(phone.statusBar().isIconVisible());
  EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
  EXPECT_EQ(*homeScreenDomain().find("ring-vibrate"), platform::Value(false));
}

TEST_F(Refresh, PlaysNoToneAndLightsNoScreen) {
  work->setPlayAlert(true);
  work->setWakeUpScreen(true);
  work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(effects().front(), "fx setSystemVolumeHUDEnabled:false");
  EXPECT_EQ(count("fx setVolumeTo:0.250000 forCategory:Ringtone"), 1) << "set at once, not after a tone";
  EXPECT_EQ(count("fx tone start type 1 \"texttone:Chime\""), 0);
  EXPECT_EQ(count("log I self.isPlayAlert: 1 & apply: 1 && self.isSilent: 1"), 1);
}

TEST_F(Refresh, EndsASilenceThatARevertLeftBehind) {
  work->revert(true);
  ASSERT_TRUE(work->isSilent());
  work->refreshSoundSettingsIfRequired();
  EXPECT_FALSE(work->isSilent());
}

TEST_F(Refresh, OfAVibratingProfileVibratesEveryTime) {
  work->setVibrate(true);
  for (int i = 0; i < 3; ++i) work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(count("fx vibration feedback (4095)"), 3);
}

TEST_F(Refresh, NeitherSavesNorAnnouncesTheProfile) {
  work->setVibrate(true);
  work->refreshSoundSettingsIfRequired();
  EXPECT_EQ(count("file write profiles ok"), 0);
  EXPECT_EQ(darwin(), Texts());
}

}  // namespace
}  // namespace hushmode
