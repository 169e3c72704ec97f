// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/VolumesContract.h"

namespace hushmode::contracts {
namespace {

using devices::SimulatedSound;
using platform::AVSystemController;
using platform::Value;

class SimulatedVolumesWorld final : public VolumesWorld {
 public:
  SimulatedVolumesWorld() {
    phone_.sound().setNotices(SimulatedSound::Notices::FromTheRunLoop);
    phone_.sound().setVolume(SimulatedSound::ringtone, 0.75F);
    phone_.sound().setMediaVolume(0.5F);
    phone_.notifications().addObserver(this, AVSystemController::systemVolumeDidChangeNotification, nullptr,
                                       [this](const platform::Notification& notice) { note(notice); });
  }

  AVSystemController& controller() override { return *phone_.sound().sharedAVSystemController(); }
  platform::VolumeControl& mediaControl() override {
    auto* mediaClass = phone_.classNamed(platform::VolumeControl::className);
    return *dynamic_cast<platform::VolumeControl::Class&>(*mediaClass).sharedVolumeControl();
  }
  /// This phone leaves it to whoever drives it to say who pressed.
  void userSets(std::string_view category, float volume) override {
    byUser_ = true;
    phone_.sound().pressVolumeButton(category, volume);
    byUser_ = false;
  }
  void settle() override { phone_.time().runFor(0); }
  const std::vector<VolumeNotice>& notices() override { return notices_; }

 private:
  void note(const platform::Notification& notice) {
    const auto value = [&](const char* key) { return std::get<Value>(notice.userInfo.at(key)); };
    notices_.push_back({*value("AVSystemController_AudioCategoryNotificationParameter").as<std::string>(),
                        static_cast<float>(*value("AVSystemController_AudioVolumeNotificationParameter").as<double>()),
                        byUser_});
  }

  devices::SimulatedPhone phone_{platform::Date(1'715'673'600)};
  std::vector<VolumeNotice> notices_;
  bool byUser_ = false;
};

INSTANTIATE_TEST_SUITE_P(Simulated, VolumesContract, ::testing::Values([]() -> std::unique_ptr<VolumesWorld> {
                           return std::make_unique<SimulatedVolumesWorld>();
                         }));

}  // namespace
}  // namespace hushmode::contracts
