// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/HeldVolumes.h"

#include <utility>

namespace hushmode::host {

using platform::AVSystemController;
using platform::VolumeControl;

namespace {

constexpr std::string_view ringtoneCategory = "Ringtone";

std::shared_ptr<VolumeControl> realMediaControl(platform::Device& phone) {
  auto* real = dynamic_cast<VolumeControl::Class*>(phone.classNamed(VolumeControl::className));
  return real ? real->sharedVolumeControl() : nullptr;
}

}  // namespace

class HeldVolumes::Controller final : public AVSystemController {
 public:
  explicit Controller(HeldVolumes& volumes) : volumes_(volumes) {}
  std::string description() const override { return real()->description(); }
  bool respondsTo(std::string_view selector) const override { return real()->respondsTo(selector); }

  bool getVolume(float& volume, std::string_view category) const override {
    if (category != ringtoneCategory || !volumes_.ringtone_) return real()->getVolume(volume, category);
    volume = *volumes_.ringtone_;
    return true;
  }
  bool setVolumeTo(float volume, std::string_view category) override {
    if (category != ringtoneCategory || !volumes_.holding_) return real()->setVolumeTo(volume, category);
    volumes_.ringtone_ = volume;
    return true;
  }

 private:
  std::shared_ptr<AVSystemController> real() const { return volumes_.phone_.celestial().sharedAVSystemController(); }
  HeldVolumes& volumes_;
};

class HeldVolumes::MediaControl final : public VolumeControl {
 public:
  MediaControl(HeldVolumes& volumes, std::shared_ptr<VolumeControl> real) : volumes_(volumes), real_(std::move(real)) {}
  std::string description() const override { return real_->description(); }
  bool respondsTo(std::string_view selector) const override { return real_->respondsTo(selector); }

  float getMediaVolume() const override { return volumes_.media_ ? *volumes_.media_ : real_->getMediaVolume(); }
  void setMediaVolume(float volume) override {
    if (!volumes_.holding_) return real_->setMediaVolume(volume);
    volumes_.media_ = volume;
  }
  float volume() const override { return real_->volume(); }

 private:
  HeldVolumes& volumes_;
  std::shared_ptr<VolumeControl> real_;
};

class HeldVolumes::MediaClass final : public VolumeControl::Class {
 public:
  explicit MediaClass(HeldVolumes& volumes) : volumes_(volumes) {}
  std::shared_ptr<VolumeControl> sharedVolumeControl() override {
    auto real = realMediaControl(volumes_.phone_);
    return real ? std::make_shared<MediaControl>(volumes_, std::move(real)) : nullptr;
  }

 private:
  HeldVolumes& volumes_;
};

HeldVolumes::HeldVolumes(platform::Device& phone) : phone_(phone), mediaClass_(std::make_unique<MediaClass>(*this)) {}

HeldVolumes::~HeldVolumes() = default;

std::shared_ptr<AVSystemController> HeldVolumes::sharedAVSystemController() {
  if (!controller_) controller_ = std::make_shared<Controller>(*this);
  return controller_;
}

platform::Class* HeldVolumes::volumeControlClass() { return mediaClass_.get(); }

void HeldVolumes::release() {
  holding_ = false;
  // The phone may tell of each change within the call, and be told of others there.
  if (const auto volume = std::exchange(ringtone_, std::nullopt)) {
    sharedAVSystemController()->setVolumeTo(*volume, ringtoneCategory);
  }
  const auto media = std::exchange(media_, std::nullopt);
  const auto control = media ? realMediaControl(phone_) : nullptr;
  if (control) control->setMediaVolume(*media);
}

void HeldVolumes::forget() {
  holding_ = false;
  ringtone_.reset();
  media_.reset();
  controller_.reset();
}

}  // namespace hushmode::host
