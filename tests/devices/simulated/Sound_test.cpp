// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/SpringBoard.h"
#include "platform/ToneLibrary.h"
#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using devices::SimulatedSound;
using platform::AVSystemController;
using platform::TLAlert;
using platform::VolumeControl;
using Texts = std::vector<std::string>;

class SoundTest : public PhoneFixture {
 protected:
  SoundTest() {
    phone.notifications().addObserver(this, AVSystemController::systemVolumeDidChangeNotification, nullptr,
                                      [this](const platform::Notification& notification) { note(notification); });
  }

  AVSystemController& controller() { return *phone.celestial().sharedAVSystemController(); }

  Texts noticed;

 private:
  void note(const platform::Notification& notification) {
    EXPECT_EQ(notification.sender, phone.celestial().sharedAVSystemController());
    const auto text = [&](const char* key) { return std::get<platform::Value>(notification.userInfo.at(key)); };
    noticed.push_back(*text("AVSystemController_AudioCategoryNotificationParameter").as<std::string>() + " " +
                      std::to_string(*text("AVSystemController_AudioVolumeNotificationParameter").as<double>()));
  }
};

TEST_F(SoundTest, ReadsAndSetsVolumesByCategory) {
  float volume = -1;
  EXPECT_TRUE(controller().getVolume(volume, "Ringtone"));
  EXPECT_EQ(volume, 0.8F);
  EXPECT_TRUE(controller().setVolumeTo(0.0625F, "Ringtone"));
  EXPECT_TRUE(controller().getVolume(volume, "Ringtone"));
  EXPECT_EQ(volume, 0.0625F);
  EXPECT_EQ(phone.sound().volume("Volume"), 0.6F) << "the other category";
  EXPECT_TRUE(controller().setVolumeTo(1.5F, "Ringtone"));
  EXPECT_EQ(phone.sound().volume("Ringtone"), 1.0F);
  EXPECT_EQ(texts(),
            (Texts{"fx setVolumeTo:0.062500 forCategory:Ringtone", "fx setVolumeTo:1.500000 forCategory:Ringtone"}));
}

TEST_F(SoundTest, LeavesTheResultUntouchedWhenAReadFails) {
  phone.sound().setReadFails("Ringtone", true);
  float volume = 0.1F;
  EXPECT_FALSE(controller().getVolume(volume, "Ringtone"));
  EXPECT_FALSE(controller().getVolume(volume, "No such category"));
  EXPECT_EQ(volume, 0.1F);
  phone.sound().setReadFails("Ringtone", false);
  EXPECT_TRUE(controller().getVolume(volume, "Ringtone"));
}

TEST_F(SoundTest, LeavesTheVolumeAloneWhenAWriteFails) {
  phone.sound().setNotices(SimulatedSound::Notices::InsideTheCall);
  phone.sound().setWriteFails("Ringtone", true);
  EXPECT_FALSE(controller().setVolumeTo(0.5F, "Ringtone"));
  EXPECT_FALSE(controller().setVolumeTo(0.5F, "No such category"));
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.8F);
  EXPECT_EQ(noticed, Texts());
  EXPECT_EQ(texts().front(), "fx setVolumeTo:0.500000 forCategory:Ringtone (failed)");
}

TEST_F(SoundTest, NoticesItsOwnChangesAsTold) {
  const struct {
    const char* name;
    SimulatedSound::Notices notices;
    std::size_t inside, afterwards;
  } cases[] = {
      {"none", SimulatedSound::Notices::None, 0, 0},
      {"inside the call", SimulatedSound::Notices::InsideTheCall, 2, 2},
      {"from the run loop", SimulatedSound::Notices::FromTheRunLoop, 0, 2},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    noticed.clear();
    phone.sound().setNotices(each.notices);
    controller().setVolumeTo(0.25F, "Ringtone");
    platform::find<VolumeControl>()->sharedVolumeControl()->setMediaVolume(0.125F);
    EXPECT_EQ(noticed.size(), each.inside);
    runFor(0);
    EXPECT_EQ(noticed.size(), each.afterwards);
    if (each.afterwards) {
      EXPECT_EQ(noticed, (Texts{"Ringtone 0.250000", "Audio/Video 0.125000"}));
    }
  }
}

TEST_F(SoundTest, AlwaysNoticesTheVolumeButtonsInsideTheCall) {
  phone.sound().pressVolumeButton("Ringtone", 0.5F);
  phone.sound().pressVolumeButton(SimulatedSound::media, 0.25F);
  EXPECT_EQ(noticed, (Texts{"Ringtone 0.500000", "Audio/Video 0.250000"}));
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.5F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.25F);
  EXPECT_THROW(phone.sound().pressVolumeButton("No such category", 0.5F), std::invalid_argument);
  EXPECT_EQ(texts(), (Texts{"phone volume button Ringtone 0.500000", "phone volume button Audio/Video 0.250000"}));
}

TEST_F(SoundTest, HasALegacyControllerOnlyWhenGivenBack) {
  EXPECT_EQ(platform::find<platform::AVController>(), nullptr);
  phone.classes().restoreClass("AVController");
  ASSERT_NE(platform::find<platform::AVController>(), nullptr);
  EXPECT_EQ(platform::find<platform::AVController>()->avController()->volume(), 0.6F);
  phone.sound().setLegacyVolume(0.3F);
  EXPECT_EQ(platform::find<platform::AVController>()->avController()->volume(), 0.3F);
}

TEST_F(SoundTest, HasAMediaVolumeBesideTheGeneralOne) {
  const auto control = platform::find<VolumeControl>()->sharedVolumeControl();
  EXPECT_EQ(control->getMediaVolume(), 0.5F);
  EXPECT_EQ(control->volume(), 0);
  control->setMediaVolume(0);
  EXPECT_EQ(control->getMediaVolume(), 0);
  EXPECT_EQ(texts(), Texts{"fx setMediaVolume:0.000000"});
}

TEST_F(SoundTest, PlaysTonesInThreeWays) {
  auto* alerts = platform::find<TLAlert>();
  const auto alert = alerts->initWithType(1, "texttone:Chime", std::nullopt);
  EXPECT_FALSE(phone.tone().playing());
  alert->startPlayingRepeatedly();
  ASSERT_TRUE(phone.tone().playing());
  EXPECT_EQ(phone.tone().playing()->tone, "texttone:Chime");
  alert->stop();
  EXPECT_FALSE(phone.tone().playing());
  alerts->playToneAndVibrationForType(0, std::nullopt, std::nullopt);
  alerts->_playToneAndVibrationForType(0, "tone", "buzz", false);
  EXPECT_FALSE(phone.tone().playing()) << "these play once";
  EXPECT_EQ(texts(), (Texts{
                         "fx tone start type 1 \"texttone:Chime\"",
                         "fx tone stop",
                         "fx tone start type 0 none by playToneAndVibrationForType",
                         "fx tone start type 0 \"tone\" by _playToneAndVibrationForType",
                     }));
}

TEST_F(SoundTest, VibratesWithAPattern) {
  const platform::Dictionary pattern{{"VibePattern", platform::Array{true, 300.0}}, {"Intensity", 1.0}};
  phone.audioToolbox().AudioServicesPlaySystemSoundWithVibration(4095, pattern);
  EXPECT_EQ(texts(), Texts{"fx vibration feedback (4095)"});
  EXPECT_EQ(*phone.record().entries().back().fields.find("pattern"), platform::Value(pattern));
}

}  // namespace
}  // namespace hushmode
