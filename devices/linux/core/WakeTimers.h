// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/core/TimerDescriptor.h"
#include "platform/PersistentConnection.h"

#include <functional>
#include <glibmm/main.h>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The wake timers of a Linux phone: all of them on one timer of the kernel, which is armed for the earliest date and
/// disarmed while there is none. They follow the wall clock when it is set, and are delivered from the main context
/// when `systemNow()` shows their date or later. Dates that passed while the machine slept are delivered when it wakes.
class WakeTimers {
 public:
  using Diagnostics = std::function<void(const std::string& line)>;

  /// `diagnose` gets a line for each callback that ends with an exception; the other timers go on. Without `waking`
  /// (this process may not wake the machine) the timers are on the wall clock alone.
  explicit WakeTimers(Diagnostics diagnose,
                      std::unique_ptr<TimerDescriptor> waking = TimerDescriptor::wakingTheDevice());
  ~WakeTimers();
  WakeTimers(const WakeTimers&) = delete;
  WakeTimers& operator=(const WakeTimers&) = delete;

  /// PCSimpleTimer. Lives as long as this object. Timers are made and invalidated on any thread.
  platform::PCSimpleTimer::Class& timerClass();

  /// Whether a due timer wakes the sleeping machine.
  bool mayWakeDevice() const { return mayWakeDevice_; }

  struct Armed {
    platform::Date fireDate;
    platform::Dictionary userInfo;
  };
  /// The armed timers, by their dates.
  std::vector<Armed> armed() const;

  /// Forgets the timers of a process that ended.
  void processEnded();

 private:
  class Shared;
  class Timer;
  class TimerClass;

  bool mayWakeDevice_;
  std::shared_ptr<Shared> shared_;
  std::unique_ptr<TimerClass> class_;
  sigc::connection watch_;
};

}  // namespace hushmode::devices
