// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// ToneLibrary: tones with vibration.
namespace hushmode::platform {

/// A tone that can be played. Looked up by name; which of the ways to play exist differs between systems, so ask
/// `respondsTo` (of the alert for the instance methods, of the class for the class methods) first.
class HUSHMODE_API TLAlert : public Object {
 public:
  static constexpr std::string_view className = "TLAlert";
  using Identifier = std::optional<std::string>;

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<TLAlert> initWithType(int type, const Identifier& tone, const Identifier& vibration) = 0;
    virtual void playToneAndVibrationForType(int type, const Identifier& tone, const Identifier& vibration) = 0;
    virtual void _playToneAndVibrationForType(int type, const Identifier& tone, const Identifier& vibration,
                                              bool shouldOverrideMasterSwitches) = 0;
  };

  ~TLAlert() override;
  virtual void startPlayingRepeatedly() = 0;
  virtual void stop() = 0;
};

}  // namespace hushmode::platform
