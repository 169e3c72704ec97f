// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <compare>
#include <optional>

namespace hushmode::platform {

/// An absolute instant: seconds since 1970-01-01 00:00 UTC, leap seconds not counted, as a double.
///
/// A small value. There are no implicit conversions to or from numbers; the difference of two dates is in seconds.
class Date {
 public:
  constexpr explicit Date(double secondsSince1970) : seconds_(secondsSince1970) {}

  constexpr double secondsSince1970() const { return seconds_; }

  /// The instant `seconds` later (earlier when negative).
  constexpr Date addingSeconds(double seconds) const { return Date(seconds_ + seconds); }

  friend constexpr double operator-(Date later, Date earlier) { return later.seconds_ - earlier.seconds_; }
  friend constexpr auto operator<=>(Date, Date) = default;

 private:
  double seconds_;
};

/// Equality of dates that may be absent: an absent date equals nothing, not even another absent date.
constexpr bool sameInstant(std::optional<Date> a, std::optional<Date> b) { return a && b && *a == *b; }

}  // namespace hushmode::platform
