// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <cstdint>

namespace hushmode::devices {

/// The wall clock, as the device shows it.
platform::Date systemNow();

/// The first moment at which `systemNow()` shows `date` or later, in nanoseconds since 1970: what the kernel's timers
/// count in. From 1 nanosecond to the year 2242: dates before and beyond, and what is no number, become these bounds
/// (no number: the first).
std::int64_t nanosecondsReaching(platform::Date date);

}  // namespace hushmode::devices
