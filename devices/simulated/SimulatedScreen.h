// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"

namespace hushmode::devices {

/// The screen of a simulated phone: its light (class "SBBacklightController") and its lock (class "SpringBoard").
/// Neither follows the other.
class SimulatedScreen {
 public:
  SimulatedScreen(Record& record, SimulatedClasses& classes);

  bool isOn() const { return on_; }
  void setOn(bool on) { on_ = on; }
  bool isLocked() const { return locked_; }
  void setLocked(bool locked) { locked_ = locked; }

  /// The user locks and unlocks the phone.
  void lock();
  void unlock();

 private:
  class Application;
  class ApplicationClass;
  class Backlight;
  class BacklightClass;

  Record& record_;
  SimulatedClasses& classes_;
  bool on_ = false;
  bool locked_ = false;
};

}  // namespace hushmode::devices
