// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>

namespace hushmode::devices {

/// A timer of the kernel on the wall clock, behind a file descriptor that becomes readable when it has something to
/// tell. Arming is for any thread.
class TimerDescriptor {
 public:
  enum class Event { None, Expired, ClockSet };

  virtual ~TimerDescriptor() = default;
  /// To be watched for input.
  virtual int fd() const = 0;
  /// Arms it for an instant, in nanoseconds since 1970 (more than 0); one that has passed expires at once. Replaces
  /// what it was armed for.
  virtual void armAt(std::int64_t nanoseconds) = 0;
  virtual void disarm() = 0;
  /// What happened since the last call.
  virtual Event take() = 0;

  /// One that wakes the sleeping machine when it expires; null where this process may not do that.
  static std::unique_ptr<TimerDescriptor> wakingTheDevice();
  /// One that expires after the machine woke up by itself. Throws std::system_error when there are no descriptors.
  static std::unique_ptr<TimerDescriptor> onTheWallClock();
  /// One that tells `ClockSet` when the wall clock is set while it is armed. Throws as the one before.
  static std::unique_ptr<TimerDescriptor> tellingClockSteps();
};

}  // namespace hushmode::devices
