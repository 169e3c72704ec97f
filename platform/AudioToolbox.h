// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"

#include <cstdint>

/// AudioToolbox: system sounds.
namespace hushmode::platform {

class HUSHMODE_API AudioToolbox {
 public:
  virtual ~AudioToolbox();
  /// Plays a system sound (4095: vibration only) with a pattern: "VibePattern", an array of on-flags and durations in
  /// milliseconds in turn; "Intensity", 0.0 to 1.0.
  virtual void AudioServicesPlaySystemSoundWithVibration(std::uint32_t soundID, const Dictionary& pattern) = 0;
};

}  // namespace hushmode::platform
