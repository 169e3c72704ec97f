// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"
#include "devices/simulated/VirtualTime.h"
#include "platform/PersistentConnection.h"

#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The wake timers of a simulated phone. Each has a running name: "t1" is the first one ever made on the phone.
class SimulatedWakeTimers {
 public:
  SimulatedWakeTimers(VirtualTime& time, Record& record, SimulatedClasses& classes);
  ~SimulatedWakeTimers();

  /// Seconds between the fire date and the delivery, or between the arming and the delivery when the fire date has
  /// passed by then. Holds for timers armed from now on; negative counts as 0. At first 0.5: real timers are never
  /// quite in time.
  void setLatency(double seconds);
  double latency() const;

  struct Armed {
    std::string name;
    platform::Date fireDate;
    platform::Dictionary userInfo;
  };
  /// The armed timers in the order of arming.
  std::vector<Armed> armed() const;

  /// Forgets the timers of a process that ended; what was queued for them went with the queue.
  void processEnded();

 private:
  class Shared;
  class Timer;
  class TimerClass;
  std::shared_ptr<Shared> shared_;
};

}  // namespace hushmode::devices
