// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/core/TimerDescriptor.h"

#include <functional>
#include <glibmm/main.h>
#include <memory>

namespace hushmode::devices {

/// Watches whether somebody sets the wall clock. Wakes the process for nothing else; gradual corrections are no steps.
///
/// A descriptor of its own beside the wake timers': it is always armed, and a timer that may wake the device must not
/// be, since a wake-up beyond what the clock chip can hold keeps the machine from going to sleep.
class ClockSteps {
 public:
  /// `stepped` is called from the main context after each step.
  explicit ClockSteps(std::function<void()> stepped,
                      std::unique_ptr<TimerDescriptor> descriptor = TimerDescriptor::tellingClockSteps());
  ~ClockSteps();
  ClockSteps(const ClockSteps&) = delete;
  ClockSteps& operator=(const ClockSteps&) = delete;

 private:
  bool read();

  std::function<void()> stepped_;
  std::unique_ptr<TimerDescriptor> descriptor_;
  sigc::connection watch_;
};

}  // namespace hushmode::devices
