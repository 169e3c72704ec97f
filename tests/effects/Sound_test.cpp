// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What is saved before the volumes change, what they are set to, and what is logged on the way.

#include "effects/VolumeMarks.h"
#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

struct Sound : EffectsTest {
  std::shared_ptr<platform::AVSystemController> controller() { return phone.celestial().sharedAVSystemController(); }
  float ringtone() const { return phone.sound().volume("Ringtone").value(); }
};

TEST_F(Sound, ApplyingSavesBeforeItSetsAndBringsTheVolumeIndicatorBackTwoSecondsLater) {
  work->applySoundSettings(true);
  EXPECT_EQ(texts(), (Texts{"log I *********** applySoundSettings: 1",
                            "def set \"com.quorvel.hushmode-ringtone\" = 0.800000012",
                            "def synchronize",
                            "def set \"com.quorvel.hushmode-volume\" = 0.0999999791",
                            "def synchronize",
                            "log I *********** Volume-> olderDeviceVol: 0.100000",
                            "log I ******* Older Ringer Volume: 0.800000",
                            "log I ******* ringerVolume: 0.250000",
                            "log I ******* deviceVolume: 0.750000",
                            "log I self.isPlayAlert: 0 & apply: 1 && self.isSilent: 0",
                            "fx setSystemVolumeHUDEnabled:false",
                            "fx setVolumeTo:0.250000 forCategory:Ringtone",
                            "log I ******* Before, [volumeController getMediaVolume]: 0.500000",
                            "def set \"com.quorvel.hushmode-playBackVolume\" = 0.5",
                            "def synchronize",
                            "log I ******* playBackVolume: 0.500000",
                            "log I ******* [volumeController volume]: 0.000000",
                            "log I ******* self.playBackVolume: 0.125000",
                            "fx setMediaVolume:0.125000",
                            "log I ******* After, [volumeController getMediaVolume]: 0.125000",
                            "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s"}));
  clearRecord();
  runFor(1.9);
  EXPECT_EQ(texts(), Texts());
  runFor(0.1);
  EXPECT_EQ(texts(), Texts{"fx setSystemVolumeHUDEnabled:true"});
}

TEST_F(Sound, RevertingSetsTheSavedVolumesAndKeepsThemSaved) {
  save("ringtone", 0.75F);
  save("volume", 0.5F);
  save("playBackVolume", 0.25F);
  work->applySoundSettings(false);
  EXPECT_EQ(texts(),
            (Texts{"log I *********** applySoundSettings: 0", "log I ******* Older Ringer Volume: 0.000000",
                   "log I ******* ringerVolume: 0.750000", "log I ******* deviceVolume: 0.500000",
                   "log I self.isPlayAlert: 0 & apply: 0 && self.isSilent: 0", "fx setSystemVolumeHUDEnabled:false",
                   "fx setVolumeTo:0.750000 forCategory:Ringtone",
                   "log I ******* Before, [volumeController getMediaVolume]: 0.500000",
                   "log I ******* [volumeController volume]: 0.000000", "log I ******* self.playBackVolume: 0.125000",
                   "fx setMediaVolume:0.250000", "log I ******* After, [volumeController getMediaVolume]: 0.250000",
                   "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s"}));
  EXPECT_TRUE(saved("ringtone"));
}

TEST_F(Sound, ASecondApplyLeavesWhatTheFirstSavedAndTheRevertRestoresIt) {
  work->applySoundSettings(true);
  phone.sound().setVolume("Ringtone", 0.5F);
  phone.sound().setMediaVolume(1);
  clearRecord();
  work->applySoundSettings(true);
  EXPECT_EQ(texts({devices::kind::defaults}), Texts());
  EXPECT_EQ(count("log I ******* Older Ringer Volume: 0.000000"), 1) << "nothing was read";
  work->applySoundSettings(false);
  EXPECT_EQ(ringtone(), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F);
}

TEST_F(Sound, ARevertWithNothingSavedSavesWhatItFindsAndChangesNoVolume) {
  work->applySoundSettings(false);
  EXPECT_EQ(ringtone(), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F);
  EXPECT_EQ(saved("ringtone"), platform::Value(0.8F));
  EXPECT_EQ(saved("volume"), platform::Value(0.0999999791F));
  EXPECT_EQ(saved("playBackVolume"), platform::Value(0.5F));
}

TEST_F(Sound, ASavedZeroIsAValueAndIsNotOverwritten) {
  for (const char* key : {"ringtone", "volume", "playBackVolume"}) save(key, 0.0);
  work->applySoundSettings(true);
  EXPECT_EQ(texts({devices::kind::defaults}), Texts());
  work->applySoundSettings(false);
  EXPECT_EQ(ringtone(), 0.0F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.0F);
}

TEST_F(Sound, TheDeviceVolumeNeverChangesAnyVolume) {
  work->setDeviceVolume(1);
  work->applySoundSettings(true);
  work->applySoundSettings(false);
  EXPECT_EQ(phone.sound().volume("Volume"), 0.6F);
  for (const std::string& line : effects()) EXPECT_EQ(line.find("forCategory:Volume"), std::string::npos) << line;
}

TEST_F(Sound, WithTheLegacyControllerSavesItsVolumeAsTheGeneralOne) {
  phone.classes().restoreClass("AVController");
  phone.sound().setLegacyVolume(0.75F);
  work->applySoundSettings(true);
  EXPECT_EQ(saved("volume"), platform::Value(0.75F));
  EXPECT_EQ(count("log I *********** Volume-> olderDeviceVol: 0.750000"), 1);
}

TEST_F(Sound, TheGeneralVolumeIsSavedAsNearlyATenthWhateverItIs) {
  const struct { float volume, saved; } cases[] = {{0.0F, 0.0999999642F}, {0.5F, 0.0999999791F}, {1.0F, 0.0999999791F}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.volume);
    phone.defaults().standard().remove("com.quorvel.hushmode-volume");
    phone.sound().setVolume("Volume", each.volume);
    work->applySoundSettings(true);
    EXPECT_EQ(saved("volume"), platform::Value(each.saved));
  }
}

TEST_F(Sound, FailedReadingsSaveTheirStartValues) {
  phone.sound().setReadFails("Ringtone", true);
  phone.sound().setReadFails("Volume", true);
  work->applySoundSettings(true);
  EXPECT_EQ(saved("ringtone"), platform::Value(0.0F));
  EXPECT_EQ(saved("volume"), platform::Value(0.1F));
  EXPECT_EQ(count("log I ******* Older Ringer Volume: 0.000000"), 1);
}

TEST_F(Sound, AFailedWriteOfTheRingtoneVolumeStopsNothing) {
  phone.sound().setWriteFails("Ringtone", true);
  work->applySoundSettings(true);
  EXPECT_EQ(ringtone(), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.125F);
}

TEST_F(Sound, WithoutTheMediaClassSavesZeroSetsNothingAndStillBringsTheIndicatorBack) {
  phone.classes().removeClass("VolumeControl");
  work->applySoundSettings(true);
  EXPECT_EQ(saved("playBackVolume"), platform::Value(0.0F));
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F);
  EXPECT_EQ(count("log I ******* After, [volumeController getMediaVolume]: 0.000000"), 1);
  EXPECT_EQ(logged().back().find("log E"), std::string::npos);
  runFor(2);
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
}

TEST_F(Sound, LogsTheMediaControllersOwnVolumeButDoesNotUseIt) {
  phone.sound().setVolumeControlVolume(0.875F);
  work->applySoundSettings(true);
  EXPECT_EQ(count("log I ******* [volumeController volume]: 0.875000"), 1);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.125F);
}

TEST_F(Sound, VolumesReachThePhoneInSinglePrecision) {
  work->setRingerVolume(0.3);
  work->setPlayBackVolume(0.7);
  work->applySoundSettings(true);
  EXPECT_EQ(ringtone(), 0.3F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.7F);
}

TEST_F(Sound, EachCallTakesTheButtonsMarkAwayAndCountsOne) {
  setHm_ChangedViaHWButtons(controller(), true);
  work->applySoundSettings(true);
  EXPECT_FALSE(hm_ChangedViaHWButtons(controller()));
  EXPECT_EQ(hm_ChangedCounter(controller()), 1);
  setHm_ChangedViaHWButtons(controller(), true);
  work->applySoundSettings(false);
  EXPECT_FALSE(hm_ChangedViaHWButtons(controller()));
  EXPECT_EQ(hm_ChangedCounter(controller()), 2);
}

TEST_F(Sound, ALaterChangeByTheSameProfilePushesTheIndicatorsReturnBack) {
  work->applySoundSettings(true);
  runFor(1.5);
  clearRecord();
  work->applySoundSettings(true);
  EXPECT_EQ(count("fx cancel hideSystemVolumeHUD on <HMProfile Work>"), 1);
  runFor(1.9);
  EXPECT_FALSE(phone.uiKit().isVolumeHUDEnabled());
  runFor(0.1);
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
}

TEST_F(Sound, AnotherProfilesChangeDoesNotPushTheIndicatorsReturnBack) {
  const auto gym = addProfile(1700000001, "Gym");
  work->applySoundSettings(true);
  runFor(1.5);
  gym->applySoundSettings(true);
  runFor(0.5);
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
}

TEST_F(Sound, AReloadedProfileDoesNotCancelTheOldObjectsReturnOfTheIndicator) {
  work->applySoundSettings(true);
  manager().reloadProfiles();
  runFor(1.5);
  manager().profiles().front()->applySoundSettings(true);
  runFor(0.5);
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
}

TEST_F(Sound, HidingTheIndicatorShowsItFromTheMainQueue) {
  phone.uiKit().sharedApplication()->setSystemVolumeHUDEnabled(false);
  work->hideSystemVolumeHUD();
  EXPECT_FALSE(phone.uiKit().isVolumeHUDEnabled()) << "not inside the call";
  runFor(0);
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
}

}  // namespace
}  // namespace hushmode
