// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedSound.h"

#include "platform/SpringBoard.h"

#include <algorithm>
#include <stdexcept>

namespace hushmode::devices {

using platform::AVController;
using platform::AVSystemController;
using platform::VolumeControl;

namespace {

float clamped(float volume) { return std::clamp(volume, 0.0f, 1.0f); }

}  // namespace

class SimulatedSound::SystemController final : public AVSystemController {
 public:
  explicit SystemController(SimulatedSound& sound) : sound_(sound) {}

  std::string description() const override { return "<AVSystemController>"; }

  bool getVolume(float& volume, std::string_view category) const override {
    const auto known = sound_.volume(category);
    if (!known || sound_.failingReads_.contains(category)) return false;
    volume = *known;
    return true;
  }
  bool setVolumeTo(float volume, std::string_view category) override { return sound_.write(category, volume); }

 private:
  SimulatedSound& sound_;
};

class SimulatedSound::LegacyController final : public Answering<AVController> {
 public:
  explicit LegacyController(SimulatedSound& sound) : Answering(sound.classes_, className), sound_(sound) {}

  float volume() const override {
    require("volume");
    return sound_.legacyVolume_ ? *sound_.legacyVolume_ : sound_.volume(general).value_or(0);
  }

 private:
  SimulatedSound& sound_;
};

class SimulatedSound::LegacyClass final : public Answering<AVController::Class> {
 public:
  explicit LegacyClass(SimulatedSound& sound) : Answering(sound.classes_, AVController::className), sound_(sound) {}

  std::shared_ptr<AVController> avController() override {
    require("avController");
    return std::make_shared<LegacyController>(sound_);
  }

 private:
  SimulatedSound& sound_;
};

class SimulatedSound::MediaControl final : public Answering<VolumeControl> {
 public:
  explicit MediaControl(SimulatedSound& sound) : Answering(sound.classes_, className), sound_(sound) {}

  float getMediaVolume() const override {
    require("getMediaVolume");
    return sound_.mediaVolume_;
  }
  void setMediaVolume(float volume) override {
    require("setMediaVolume");
    sound_.writeMedia(volume);
  }
  float volume() const override {
    require("volume");
    return sound_.volumeControlVolume_;
  }

 private:
  SimulatedSound& sound_;
};

class SimulatedSound::MediaClass final : public Answering<VolumeControl::Class> {
 public:
  explicit MediaClass(SimulatedSound& sound)
      : Answering(sound.classes_, VolumeControl::className), control_(std::make_shared<MediaControl>(sound)) {}

  std::shared_ptr<VolumeControl> sharedVolumeControl() override {
    require("sharedVolumeControl");
    return control_;
  }

 private:
  std::shared_ptr<VolumeControl> control_;
};

SimulatedSound::SimulatedSound(VirtualTime& time, Record& record, SimulatedClasses& classes,
                               SimulatedNotificationCenter& center)
    : time_(time), record_(record), classes_(classes), center_(center) {
  classes.add(AVController::className, std::make_unique<LegacyClass>(*this));
  classes.removeClass(AVController::className);
  classes.add(VolumeControl::className, std::make_unique<MediaClass>(*this));
}

std::shared_ptr<AVSystemController> SimulatedSound::sharedAVSystemController() {
  if (!controller_) controller_ = std::make_shared<SystemController>(*this);
  return controller_;
}

std::optional<float> SimulatedSound::volume(std::string_view category) const {
  const auto place = volumes_.find(category);
  return place == volumes_.end() ? std::nullopt : std::optional(place->second);
}

void SimulatedSound::setVolume(std::string_view category, float volume) {
  volumes_.insert_or_assign(std::string(category), clamped(volume));
}

void SimulatedSound::setMediaVolume(float volume) { mediaVolume_ = clamped(volume); }

void SimulatedSound::pressVolumeButton(std::string_view category, float volume) {
  const bool isMedia = category == media;
  if (!isMedia && !volumes_.contains(category)) {
    throw std::invalid_argument("the phone has no volume category " + std::string(category));
  }
  record_.step("volume button", {{"category", category}, {"volume", volume}});
  isMedia ? setMediaVolume(volume) : setVolume(category, volume);
  deliverNotice(category, clamped(volume), true);
}

bool SimulatedSound::write(std::string_view category, float volume) {
  const bool ok = volumes_.contains(category) && !failingWrites_.contains(category);
  record_.effect("setVolumeTo", {{"volume", volume}, {"category", category}, {"ok", ok}});
  if (!ok) return false;
  setVolume(category, volume);
  notice(category, clamped(volume));
  return true;
}

void SimulatedSound::writeMedia(float volume) {
  record_.effect("setMediaVolume", {{"volume", volume}});
  setMediaVolume(volume);
  notice(media, mediaVolume_);
}

void SimulatedSound::notice(std::string_view category, float volume) {
  switch (notices_) {
    case Notices::None:
      break;
    case Notices::InsideTheCall:
      deliverNotice(category, volume, false);
      break;
    case Notices::FromTheRunLoop:
      time_.after(0, [this, category = std::string(category), volume] { deliverNotice(category, volume, false); });
      break;
  }
}

void SimulatedSound::deliverNotice(std::string_view category, float volume, bool byUser) {
  if (onChange_) onChange_(byUser);
  center_.deliver({std::string(AVSystemController::systemVolumeDidChangeNotification),
                   sharedAVSystemController(),
                   {{"AVSystemController_AudioCategoryNotificationParameter", platform::Value(category)},
                    {"AVSystemController_AudioVolumeNotificationParameter", platform::Value(volume)}}});
}

void SimulatedSound::setMember(Categories& categories, std::string_view category, bool member) {
  if (member) {
    categories.emplace(category);
  } else {
    categories.erase(std::string(category));
  }
}

}  // namespace hushmode::devices
