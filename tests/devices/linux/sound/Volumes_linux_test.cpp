// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/PulseVolumes.h"
#include "tests/contracts/VolumesContract.h"
#include "tests/devices/linux/sound/SoundTest.h"

#include <csignal>
#include <glibmm/main.h>
#include <optional>
#include <stdexcept>

namespace hushmode::contracts {
namespace {

using devices::PulseVolumes;
using platform::Value;

/// Volumes in a real PulseAudio. The user's ringtone slider is another client of the same server.
class PulseVolumesWorld final : public VolumesWorld {
 public:
  PulseVolumesWorld() {
    if (!runUntil([this] { return services_.isAvailable("volumes") && desktopServices_.isAvailable("volumes"); })) {
      throw std::runtime_error("PulseAudio is not to be reached");
    }
    controller().setVolumeTo(0.75F, "Ringtone");
    mediaControl().setMediaVolume(0.5F);
    settle();
    notices_.clear();
  }

  platform::AVSystemController& controller() override { return *volumes_.sharedAVSystemController(); }
  platform::VolumeControl& mediaControl() override { return *volumes_.volumeControlClass().sharedVolumeControl(); }
  void userSets(std::string_view category, float volume) override {
    const std::size_t before = notices_.size();
    std::optional<int> sound;
    if (category == PulseVolumes::media) {
      devices::run({"pactl", "set-sink-volume", "@DEFAULT_SINK@", std::to_string(volume * 100) + "%"});
    } else {
      desktop_.sharedAVSystemController()->setVolumeTo(volume, category);
      EXPECT_TRUE(runUntil([this] { return !desktop_.pending(); }));
      // Desktops let hear what a slider is set to.
      sound = devices::start({"sh", "-c", "exec pacat --playback --property=media.role=event </dev/zero"});
    }
    EXPECT_TRUE(runUntil([this, before] { return notices_.size() > before; }));
    if (sound) devices::endProcess(*sound, SIGTERM);
  }
  void settle() override {
    EXPECT_TRUE(runUntil([this] { return !volumes_.pending(); }));
    // A change that is still to be told is so in the next turns of the loop.
    Glib::MainContext::get_default()->iteration(false);
    while (Glib::MainContext::get_default()->iteration(false)) {
    }
  }
  const std::vector<VolumeNotice>& notices() override { return notices_; }

 private:
  void note(const platform::Notification& notice) {
    const auto value = [&](const char* key) { return std::get<Value>(notice.userInfo.at(key)); };
    EXPECT_EQ(notice.name, platform::AVSystemController::systemVolumeDidChangeNotification);
    EXPECT_EQ(notice.sender.get(), &controller());
    notices_.push_back({*value("AVSystemController_AudioCategoryNotificationParameter").as<std::string>(),
                        static_cast<float>(*value("AVSystemController_AudioVolumeNotificationParameter").as<double>()),
                        byUser_.value()});
    byUser_.reset();
  }

  devices::ReportedServices services_, desktopServices_;
  devices::KeptNotifications center_, desktopCenter_;
  std::vector<VolumeNotice> notices_;
  std::optional<bool> byUser_;  ///< Announced for the notice that comes next.
  PulseVolumes volumes_{center_, services_, [this](bool byUser) { byUser_ = byUser; }};
  PulseVolumes desktop_{desktopCenter_, desktopServices_};
  const bool listens_ = (center_.addObserver(this, "", nullptr, [this](const auto& notice) { note(notice); }), true);
};

INSTANTIATE_TEST_SUITE_P(Linux, VolumesContract, ::testing::Values([]() -> std::unique_ptr<VolumesWorld> {
                           return std::make_unique<PulseVolumesWorld>();
                         }));

}  // namespace
}  // namespace hushmode::contracts
