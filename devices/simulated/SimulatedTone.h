// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"
#include "platform/AudioToolbox.h"
#include "platform/ToneLibrary.h"

#include <memory>
#include <optional>

namespace hushmode::devices {

/// The tone player (class "TLAlert") and the vibrator of a simulated phone.
class SimulatedTone final : public platform::AudioToolbox {
 public:
  SimulatedTone(Record& record, SimulatedClasses& classes);

  void AudioServicesPlaySystemSoundWithVibration(std::uint32_t soundID, const platform::Dictionary& pattern) override;

  struct Playing {
    int type;
    platform::TLAlert::Identifier tone, vibration;
  };
  /// The tone that is playing repeatedly, until it is stopped or the process ends. Tones played once are not kept.
  const std::optional<Playing>& playing() const { return playing_; }
  void processEnded() { playing_.reset(); }

 private:
  class ToneAlert;
  class ToneClass;
  void recordStart(const Playing& tone, std::string_view way);

  Record& record_;
  SimulatedClasses& classes_;
  std::optional<Playing> playing_;
};

}  // namespace hushmode::devices
