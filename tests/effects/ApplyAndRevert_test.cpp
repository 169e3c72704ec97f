// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The order in which a profile's effects are done and undone, and what is saved and announced.

#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

struct ApplyAndRevert : EffectsTest {
  ApplyAndRevert() { phone.uiKit().setSystemVersion("11.4"); }

  void askForEverythingButATone() {
    work->setVibrate(true);
    work->setShowOnStatusBar(true);
    work->setDnDEnabled(true);
    work->setWakeUpScreen(true);
  }
};

const Texts savedAndAnnounced{"file write profiles ok", "log I Profiles saved successfully to the disk.",
                              "log I HMProfilesManager+Hushmode -> Profile updated successfully.",
                              "darwin com.quorvel.ProfileAppliedStateChangedNotification"};

const Texts setSilentLines{"log I ************ __________ (((((( )))))))))))))) ______________ ************",
                           "log I setSilent is called......"};

TEST_F(ApplyAndRevert, ApplyMarksSavesAndAnnouncesAndThenRunsItsEffectsInOrder) {
  askForEverythingButATone();
  work->apply();
  EXPECT_EQ(texts(), joined({{"log I ********* applying profile ************"},
                             savedAndAnnounced,
                             {"fx turnOnScreenFullyWithBacklightSource:1",
                              "log I *********** applySoundSettings: 1",
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
                              "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s",
                              asterisks,
                              "log I oldRingVibrateState: 1",
                              asterisks,
                              "fx vibration feedback (4095)",
                              "def set \"com.quorvel.hushmode-ring-vibrate\" = true",
                              "def set \"com.quorvel.hushmode-silent-vibrate\" = false",
                              "def synchronize",
                              "fx statusBarItem setVisible:true",
                              "fx setSelected:true"}}));
  EXPECT_TRUE(work->isApplied());
}

TEST_F(ApplyAndRevert, RevertUndoesTheEffectsInOrderAndThenRemovesTheSavedVolumes) {
  askForEverythingButATone();
  work->apply();
  runFor(60);
  clearRecord();
  work->revert();
  EXPECT_EQ(texts(), joined({savedAndAnnounced,
                             setSilentLines,
                             {"fx turnOnScreenFullyWithBacklightSource:1",
                              "log I *********** applySoundSettings: 0",
                              "log I ******* Older Ringer Volume: 0.000000",
                              "log I ******* ringerVolume: 0.800000",
                              "log I ******* deviceVolume: 0.100000",
                              "log I self.isPlayAlert: 0 & apply: 0 && self.isSilent: 0",
                              "fx setSystemVolumeHUDEnabled:false",
                              "fx setVolumeTo:0.800000 forCategory:Ringtone",
                              "log I ******* Before, [volumeController getMediaVolume]: 0.125000",
                              "log I ******* [volumeController volume]: 0.000000",
                              "log I ******* self.playBackVolume: 0.125000",
                              "fx setMediaVolume:0.500000",
                              "log I ******* After, [volumeController getMediaVolume]: 0.500000",
                              "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s",
                              asterisks,
                              "log I oldRingVibrateState: 1",
                              asterisks,
                              "fx vibration feedback (4095)",
                              "def set \"com.quorvel.hushmode-ring-vibrate\" = true",
                              "def set \"com.quorvel.hushmode-silent-vibrate\" = false",
                              "def synchronize",
                              asterisks,
                              "log I changeVibrateStatus() is called",
                              asterisks,
                              "fx springboard domain ring-vibrate=false silent-vibrate=false",
                              "darwin com.apple.springboard.ring-vibrate.changed",
                              "darwin com.apple.springboard.silent-vibrate.changed",
                              asterisks,
                              "log I shouldRevertStatus, hence oldHMRingVibrateState: 1 & oldHMSilentVibrateState: 0",
                              asterisks,
                              "fx statusBarItem setVisible:false",
                              "fx setSelected:false",
                              "def remove \"com.quorvel.hushmode-ringtone\"",
                              "def remove \"com.quorvel.hushmode-volume\"",
                              "def remove \"com.quorvel.hushmode-playBackVolume\"",
                              "def synchronize"}}));
  EXPECT_FALSE(work->isApplied());
}

TEST_F(ApplyAndRevert, ApplyWithAllFlagsOffSavesAnnouncesAndSetsTheVolumesAndNothingElse) {
  manager().showORHideIconsOnSpringBoard(true);
  phone.controlCenter().setDoNotDisturb(true);
  clearRecord();
  work->apply();
  EXPECT_EQ(effects(),
            (Texts{"fx setSystemVolumeHUDEnabled:false", "fx setVolumeTo:0.250000 forCategory:Ringtone",
                   "fx setMediaVolume:0.125000", "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s"}));
  EXPECT_EQ(darwin(), Texts{"darwin com.quorvel.ProfileAppliedStateChangedNotification"});
  EXPECT_EQ(count("file write profiles ok"), 1);
  EXPECT_TRUE(work->isApplied());
  EXPECT_EQ(count(asterisks), 0) << "the vibrate switches were looked at";
  EXPECT_TRUE(phone.statusBar().isIconVisible());
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
  EXPECT_EQ(texts().back(), "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s");
}

TEST_F(ApplyAndRevert, RevertWithAllFlagsOffHidesTheIconAndSwitchesVibrateAndDoNotDisturbOff) {
  manager().showORHideIconsOnSpringBoard(true);
  manager().enableORDisableDnD(true);
  work->setApplied(true);
  work->revert();
  EXPECT_FALSE(phone.statusBar().isIconVisible());
  EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
  runFor(60);
  EXPECT_EQ(*homeScreenDomain().find("ring-vibrate"), platform::Value(false));
  EXPECT_EQ(*homeScreenDomain().find("silent-vibrate"), platform::Value(false));
}

TEST_F(ApplyAndRevert, ApplyOfAnAppliedProfileRunsEverythingAgainAndKeepsTheVolumesSavedFirst) {
  work->apply();
  const Texts first = effects();
  clearRecord();
  phone.sound().setVolume("Ringtone", 0.5F);
  work->apply();
  EXPECT_EQ(effects().front(), first.front());
  EXPECT_EQ(count("log I ********* applying profile ************"), 1);
  EXPECT_EQ(count("fx setVolumeTo:0.250000 forCategory:Ringtone"), 1);
  EXPECT_EQ(saved("ringtone"), platform::Value(0.8F));
  EXPECT_EQ(saved("playBackVolume"), platform::Value(0.5F));
}

TEST_F(ApplyAndRevert, RevertOfAProfileThatWasNeverAppliedRunsTheWholeRestoreAndLeavesTheVolumes) {
  save("ringtone", 0.25F);
  save("playBackVolume", 0.75F);
  work->revert();
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.25F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.75F);
  for (const char* key : {"ringtone", "volume", "playBackVolume"}) EXPECT_FALSE(saved(key)) << key;
}

TEST_F(ApplyAndRevert, AnyProfilesRevertEndsTheVolumesOfAll) {
  const auto gym = addProfile(1700000001, "Gym");
  work->apply();
  gym->setRingerVolume(1);
  gym->apply();
  EXPECT_EQ(saved("ringtone"), platform::Value(0.8F)) << "the second profile overwrote what the first had saved";
  work->revert();
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.8F);
  EXPECT_TRUE(gym->isApplied());
  EXPECT_FALSE(saved("ringtone"));
}

TEST_F(ApplyAndRevert, RevertClearsTheVolumeQuestion) {
  work->setVolumeAlertShown(true);
  work->setPreserveVolumeChange(true);
  work->setNewRingtoneVolume(0.5);
  work->revert();
  EXPECT_FALSE(work->isVolumeAlertShown());
  EXPECT_FALSE(work->shouldPreserveVolumeChange());
  EXPECT_EQ(work->newRingtoneVolume(), 0);
}

TEST_F(ApplyAndRevert, ApplyLeavesTheVolumeQuestionAlone) {
  work->setVolumeAlertShown(true);
  work->setNewRingtoneVolume(0.5);
  work->apply();
  EXPECT_TRUE(work->isVolumeAlertShown());
  EXPECT_EQ(work->newRingtoneVolume(), 0.5);
}

TEST_F(ApplyAndRevert, AVolumeQuestionAskedByTheRevertsOwnVolumeChangeIsClearedByIt) {
  phone.uiKit().setSystemVersion("10.3");  // Where the unmarked change of ours counts as the user's.
  phone.sound().setNotices(devices::SimulatedSound::Notices::InsideTheCall);
  const auto gym = addProfile(1700000001, "Gym");
  gym->setApplied(true);
  work->apply();
  work->revert();
  EXPECT_FALSE(work->isVolumeAlertShown());
  EXPECT_TRUE(gym->isVolumeAlertShown()) << "the profile that is still applied was not asked about";
}

TEST_F(ApplyAndRevert, SavedStateIsRemovedBeforeTheTonesEndSoTheMediaVolumeStaysAndItsKeyReturns) {
  work->setPlayAlert(true);
  work->apply();
  runFor(60);
  work->revert();
  EXPECT_FALSE(saved("playBackVolume"));
  runFor(60);
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.125F) << "the media volume as the profile left it";
  EXPECT_EQ(saved("playBackVolume"), platform::Value(0.125F));
  EXPECT_FALSE(saved("ringtone"));
  EXPECT_FALSE(saved("volume"));
  work->setPlayAlert(false);
  work->revert();
  EXPECT_FALSE(saved("playBackVolume")) << "the next revert removes it";
}

TEST_F(ApplyAndRevert, ASilentRevertPlaysNoToneAndLightsNoScreen) {
  work->setPlayAlert(true);
  work->setWakeUpScreen(true);
  work->revert(true);
  runFor(60);
  EXPECT_EQ(count("fx tone start type 1 \"texttone:Chime\""), 0);
  EXPECT_EQ(count("fx turnOnScreenFullyWithBacklightSource:1"), 0);
  EXPECT_TRUE(work->isSilent());
}

TEST_F(ApplyAndRevert, ALoudRevertPlaysTheToneAfterTheRingtoneVolumeIsBack) {
  work->setPlayAlert(true);
  work->apply();
  runFor(60);
  clearRecord();
  work->revert();
  EXPECT_EQ(effects(), (Texts{"fx setSystemVolumeHUDEnabled:false", "fx setVolumeTo:0.800000 forCategory:Ringtone",
                              "fx tone start type 1 \"texttone:Chime\"", "fx statusBarItem setVisible:false"}));
}

TEST_F(ApplyAndRevert, SilenceIsCarriedOverFromASilentRevertToTheNextApplyAndEndedByALoudRevert) {
  work->setPlayAlert(true);
  work->setWakeUpScreen(true);
  work->revert(true);
  runFor(60);
  clearRecord();
  work->apply();
  EXPECT_EQ(effects().front(), "fx setSystemVolumeHUDEnabled:false");
  EXPECT_EQ(count("fx tone start type 1 \"texttone:Chime\""), 0);
  work->revert(false);
  EXPECT_FALSE(work->isSilent());
  clearRecord();
  work->apply();
  EXPECT_EQ(effects().front(), "fx turnOnScreenFullyWithBacklightSource:1");
  EXPECT_EQ(count("fx tone start type 1 \"texttone:Chime\""), 1);
}

TEST_F(ApplyAndRevert, SetSilentLogsTwoLinesBothWays) {
  for (const bool silent : {true, false}) {
    clearRecord();
    work->setSilent(silent);
    EXPECT_EQ(texts(), setSilentLines);
    EXPECT_EQ(work->isSilent(), silent);
  }
}

TEST_F(ApplyAndRevert, AFailedSaveAnnouncesNothingAndAllEffectsStillRun) {
  phone.foundation().files().setWritesFail(true);
  askForEverythingButATone();
  work->apply();
  EXPECT_EQ(darwin(), Texts());
  EXPECT_TRUE(work->isApplied());
  EXPECT_EQ(effects().front(), "fx turnOnScreenFullyWithBacklightSource:1");
  EXPECT_EQ(effects().back(), "fx setSelected:true");
}

TEST_F(ApplyAndRevert, AProfileThatTheStoreDoesNotKnowIsAppliedWithoutASaveAndAnAnnouncement) {
  const auto stranger = HMProfile::init();
  stranger->setIdentifier(42);
  stranger->setRingerVolume(1);
  stranger->apply();
  EXPECT_TRUE(stranger->isApplied());
  EXPECT_EQ(darwin(), Texts());
  EXPECT_EQ(count("file write profiles ok"), 0);
  EXPECT_EQ(phone.sound().volume("Ringtone"), 1.0F);
}

TEST_F(ApplyAndRevert, TheAppliedFlagIsInTheFileAndSilenceIsNot) {
  work->apply();
  work->setSilent(true);
  manager().reloadProfiles();
  const auto reloaded = manager().profileByIdentifier(work->identifier());
  ASSERT_TRUE(reloaded);
  ASSERT_NE(reloaded, work);
  EXPECT_TRUE(reloaded->isApplied());
  EXPECT_FALSE(reloaded->isSilent());
  reloaded->revert();
  manager().reloadProfiles();
  EXPECT_FALSE(manager().profileByIdentifier(work->identifier())->isApplied());
}

TEST_F(ApplyAndRevert, AnObjectFromBeforeAReloadPutsItselfBackIntoTheList) {
  manager().reloadProfiles();
  ASSERT_NE(manager().profiles().front(), work);
  work->setApplied(true);
  EXPECT_EQ(manager().profiles().front(), work);
}

TEST_F(ApplyAndRevert, SettingTheAppliedFlagTellsOtherProcessesOnlyAndNoObserverInThisOne) {
  work->setApplied(true);
  EXPECT_EQ(texts(), savedAndAnnounced);
}

}  // namespace
}  // namespace hushmode
