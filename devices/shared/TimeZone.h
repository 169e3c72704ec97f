// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// A time zone of the IANA database, immutable and shared between threads.
///
/// Local times are counted as seconds since 1970-01-01 00:00 *of the local clock*, as if the zone were UTC.
class TimeZone {
 public:
  /// The zone with that IANA name ("Europe/Berlin", "UTC"); null when the system knows no such zone.
  static std::shared_ptr<const TimeZone> named(std::string_view name);
  static std::shared_ptr<const TimeZone> utc();

  virtual ~TimeZone() = default;
  virtual const std::string& name() const = 0;

  /// Seconds east of UTC at the instant (seconds since 1970, UTC).
  virtual std::int64_t offsetAt(std::int64_t utc) const = 0;

  /// The instant of a local time. One that does not exist takes the offset before the jump (02:30 becomes 03:30); one
  /// that exists twice is the first.
  virtual std::int64_t utcFromLocal(std::int64_t local) const = 0;

  /// The first instant of the local day that begins at `localMidnight` (a multiple of 86,400), also when that midnight
  /// itself does not exist.
  virtual std::int64_t startOfDay(std::int64_t localMidnight) const = 0;

  std::int64_t localFromUtc(std::int64_t utc) const { return utc + offsetAt(utc); }
};

}  // namespace hushmode::devices
