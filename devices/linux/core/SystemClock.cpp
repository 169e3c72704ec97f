// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/SystemClock.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace hushmode::devices {

namespace {

constexpr double kNanosecondsASecond = 1e9;
constexpr double kLastSecond = 8.6e9;  // Nanoseconds of it still fit into 64 bits.

}  // namespace

platform::Date systemNow() {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME, &time);
  return platform::Date(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / kNanosecondsASecond);
}

std::int64_t nanosecondsReaching(platform::Date date) {
  const double seconds = date.secondsSince1970();
  if (!(seconds > 0)) return 1;
  // Whole seconds and the rest apart: a double has not enough digits for today's nanoseconds.
  const double whole = std::floor(std::min(seconds, kLastSecond));
  const double rest = std::ceil((std::min(seconds, kLastSecond) - whole) * kNanosecondsASecond);
  return std::max<std::int64_t>(1, static_cast<std::int64_t>(whole) * 1'000'000'000 + static_cast<std::int64_t>(rest));
}

}  // namespace hushmode::devices
