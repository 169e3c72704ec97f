// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/HeldVolumes.h"

#include "devices/simulated/SimulatedPhone.h"

#include <gtest/gtest.h>

namespace hushmode::host {
namespace {

class HeldVolumesTest : public ::testing::Test {
 protected:
  float ringtone() {
    float volume = -1;
    EXPECT_TRUE(volumes.sharedAVSystemController()->getVolume(volume, "Ringtone"));
    return volume;
  }
  bool setRingtone(float volume) { return volumes.sharedAVSystemController()->setVolumeTo(volume, "Ringtone"); }
  std::shared_ptr<platform::VolumeControl> media() {
    return dynamic_cast<platform::VolumeControl::Class&>(*volumes.volumeControlClass()).sharedVolumeControl();
  }
  float phonesRingtone() { return *phone.sound().volume("Ringtone"); }

  devices::SimulatedPhone phone{platform::Date(0)};
  HeldVolumes volumes{phone};
};

TEST_F(HeldVolumesTest, GoStraightThroughWhileNothingIsHeld) {
  EXPECT_TRUE(setRingtone(0.25F));
  media()->setMediaVolume(0.125F);
  EXPECT_EQ(phonesRingtone(), 0.25F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.125F);
  EXPECT_EQ(ringtone(), 0.25F);
  EXPECT_EQ(media()->getMediaVolume(), 0.125F);
}

TEST_F(HeldVolumesTest, ShowWhatIsHeldAndLeaveThePhoneAlone) {
  volumes.hold();
  EXPECT_TRUE(setRingtone(0.25F));
  media()->setMediaVolume(0.125F);
  EXPECT_EQ(ringtone(), 0.25F);
  EXPECT_EQ(media()->getMediaVolume(), 0.125F);
  EXPECT_EQ(phonesRingtone(), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F);
}

TEST_F(HeldVolumesTest, PassOnOnlyTheLastOfEach) {
  volumes.hold();
  for (const float volume : {0.9F, 0.25F, 0.3F}) {
    setRingtone(volume);
    media()->setMediaVolume(volume);
  }
  phone.record().clear();
  volumes.release();
  EXPECT_EQ(phone.record().entries().size(), 2U);
  EXPECT_EQ(phonesRingtone(), 0.3F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.3F);
  EXPECT_TRUE(setRingtone(0.5F));
  EXPECT_EQ(phonesRingtone(), 0.5F) << "nothing is held any more";
}

TEST_F(HeldVolumesTest, PassOnNothingThatWasNotSet) {
  volumes.hold();
  phone.record().clear();
  volumes.release();
  EXPECT_TRUE(phone.record().entries().empty());
}

TEST_F(HeldVolumesTest, ForgetWhatWasDropped) {
  volumes.hold();
  setRingtone(0.9F);
  media()->setMediaVolume(0.9F);
  volumes.dropRingtone();
  volumes.dropMedia();
  EXPECT_EQ(ringtone(), 0.8F);
  volumes.release();
  EXPECT_EQ(phonesRingtone(), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.5F);
}

TEST_F(HeldVolumesTest, OfADeadProcessNeverReachThePhone) {
  volumes.hold();
  setRingtone(0.9F);
  volumes.forget();
  volumes.release();
  EXPECT_EQ(phonesRingtone(), 0.8F);
}

TEST_F(HeldVolumesTest, LeaveOtherCategoriesAlone) {
  volumes.hold();
  volumes.sharedAVSystemController()->setVolumeTo(0.1F, "Volume");
  EXPECT_EQ(*phone.sound().volume("Volume"), 0.1F);
}

TEST_F(HeldVolumesTest, KeepMarksOnOneObject) {
  EXPECT_EQ(volumes.sharedAVSystemController(), volumes.sharedAVSystemController());
}

}  // namespace
}  // namespace hushmode::host
