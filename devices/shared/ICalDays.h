// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace hushmode::devices {

inline constexpr std::int64_t kSecondsPerDay = 86'400;

/// Division that rounds down, and its remainder, which has the sign of the divisor.
constexpr std::int64_t floorDivide(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }
constexpr std::int64_t floorModulo(std::int64_t a, std::int64_t b) { return a % b < 0 ? a % b + b : a % b; }

/// The day, counted since 1970-01-01, of a wall time in seconds.
constexpr std::int64_t dayOf(std::int64_t seconds) { return floorDivide(seconds, kSecondsPerDay); }

/// The day with this number since 1970-01-01 in the proleptic Gregorian calendar; months and days may be out of range
/// ("month 13"), as sums of them are. Years are held between -30,000 and 30,000.
constexpr std::int64_t dayNumber(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t months = std::clamp<std::int64_t>(year * 12 + month - 1, -360'000, 360'000);
  const auto first = std::chrono::year(static_cast<int>(floorDivide(months, 12))) /
                     std::chrono::month(static_cast<unsigned>(floorModulo(months, 12) + 1)) / 1;
  return std::chrono::sys_days(first).time_since_epoch().count() + day - 1;
}

/// A day of the proleptic Gregorian calendar.
struct CivilDay {
  constexpr explicit CivilDay(std::int64_t dayNumber) : number(dayNumber) {
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(number))};
    year = static_cast<int>(date.year());
    month = static_cast<unsigned>(date.month());
    dayOfMonth = static_cast<unsigned>(date.day());
    weekday = floorModulo(number + 4, 7);
  }

  std::int64_t number;  ///< Days since 1970-01-01.
  std::int64_t year, month, dayOfMonth;
  std::int64_t weekday;  ///< 0 is Sunday.

  constexpr std::int64_t firstOfMonth() const { return number - dayOfMonth + 1; }
  constexpr std::int64_t lastOfMonth() const { return devices::dayNumber(year, month + 1, 1) - 1; }
  constexpr std::int64_t firstOfYear() const { return devices::dayNumber(year, 1, 1); }
  constexpr std::int64_t lastOfYear() const { return devices::dayNumber(year + 1, 1, 1) - 1; }
  /// The first day of the week, which begins on `weekStart` (0 is Sunday).
  constexpr std::int64_t firstOfWeek(std::int64_t weekStart) const {
    return number - floorModulo(weekday - weekStart, 7);
  }
};

}  // namespace hushmode::devices
