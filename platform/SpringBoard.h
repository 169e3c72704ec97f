// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <memory>
#include <string_view>

/// The home-screen process's own classes, all looked up by name: lock, media volume, backlight.
namespace hushmode::platform {

/// The home screen's application object.
class HUSHMODE_API SpringBoard : public Object {
 public:
  static constexpr std::string_view className = "SpringBoard";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<SpringBoard> sharedApplication() = 0;
  };

  ~SpringBoard() override;
  virtual bool isLocked() const = 0;
};

/// The media volume, 0.0 to 1.0.
class HUSHMODE_API VolumeControl : public Object {
 public:
  static constexpr std::string_view className = "VolumeControl";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<VolumeControl> sharedVolumeControl() = 0;
  };

  ~VolumeControl() override;
  virtual float getMediaVolume() const = 0;
  virtual void setMediaVolume(float volume) = 0;
  virtual float volume() const = 0;
};

/// The screen's light. Which operations exist differs between systems: ask `respondsTo`.
class HUSHMODE_API SBBacklightController : public Object {
 public:
  static constexpr std::string_view className = "SBBacklightController";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<SBBacklightController> sharedInstance() = 0;
  };

  ~SBBacklightController() override;
  virtual bool screenIsOn() const = 0;
  virtual void turnOnScreenFullyWithBacklightSource(int source) = 0;
  virtual void setBacklightFactor(double factor, int source) = 0;
  virtual void _setBacklightFactorToZeroForProx() = 0;
  virtual void _startFadeOutAnimationFromLockSource(int source) = 0;
  virtual void _undimFromSource(int source) = 0;
  virtual void _lockScreenDimTimerFired() = 0;
};

}  // namespace hushmode::platform
