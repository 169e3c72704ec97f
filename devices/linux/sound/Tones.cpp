// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/Tones.h"

#include "devices/linux/base/ToneTable.h"
#include "devices/words/Text.h"

#include <utility>

namespace hushmode::devices {

using platform::TLAlert;

/// May outlive the tones, whose part it plays: then it is silent.
class Tones::Alert final : public TLAlert {
 public:
  Alert(std::weak_ptr<Tones*> tones, Identifier tone) : tones_(std::move(tones)), tone_(std::move(tone)) {}

  void startPlayingRepeatedly() override {
    const auto tones = tones_.lock();
    playing_ = tones ? (*tones)->play(tone_, Repeat::UntilStopped) : nullptr;
  }
  void stop() override { playing_.reset(); }

 private:
  std::weak_ptr<Tones*> tones_;
  Identifier tone_;
  std::unique_ptr<Playing> playing_;
};

class Tones::AlertClass final : public TLAlert::Class {
 public:
  explicit AlertClass(Tones& tones) : tones_(std::make_shared<Tones*>(&tones)) {}

  std::shared_ptr<TLAlert> initWithType(int, const TLAlert::Identifier& tone, const TLAlert::Identifier&) override {
    return std::make_shared<Alert>(tones_, tone);
  }
  void playToneAndVibrationForType(int, const TLAlert::Identifier& tone, const TLAlert::Identifier&) override {
    (*tones_)->playedOnce_ = (*tones_)->play(tone, Repeat::Once);
  }
  void _playToneAndVibrationForType(int type, const TLAlert::Identifier& tone, const TLAlert::Identifier& vibration,
                                    bool) override {
    playToneAndVibrationForType(type, tone, vibration);
  }

 private:
  std::shared_ptr<Tones*> tones_;
};

Tones::Tones(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services)
    : services_(services),
      feedback_(sessionBus, {[this] {
                               report({true, "feedbackd"}, {true, "feedbackd"});
                             },
                             [this] {
                               report({true, tr("sound theme (libcanberra)")}, {false, tr("feedbackd is not running")});
                             },
                             [this](const std::string& why) {
                               report({false, why}, {false, why});
                             }}),
      sounds_([this](const std::string& error) {
        if (feedback_.isThere()) return;
        services_.report("tones", {error.empty(), error.empty() ? tr("sound theme (libcanberra)") : error});
      }),
      alertClass_(std::make_unique<AlertClass>(*this)) {}

Tones::~Tones() = default;

TLAlert::Class& Tones::alertClass() { return *alertClass_; }

std::unique_ptr<Playing> Tones::play(const TLAlert::Identifier& identifier, Repeat repeat) {
  const Tone& tone = toneFor(identifier);
  if (feedback_.isThere()) return feedback_.give(std::string(tone.feedback), "full", repeat);
  return sounds_.play(std::string(tone.sound), repeat);
}

void Tones::AudioServicesPlaySystemSoundWithVibration(std::uint32_t, const platform::Dictionary&) {
  vibration_ = feedback_.give("message-new-instant", "quiet", Repeat::Once);
}

void Tones::report(const ServiceState& tones, const ServiceState& vibration) {
  services_.report("tones", tones);
  services_.report("vibration", vibration);
}

}  // namespace hushmode::devices
