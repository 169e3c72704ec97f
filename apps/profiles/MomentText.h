// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/Date.h"

#include <string>

/// Moments as people write and read them.
namespace hushmode::cli {

/// "14:20", "2:20pm" (both on the local day of `now`), "2026-11-24 14:20", "2026-11-24T14:20", "2026-11-24 2:20pm";
/// with seconds too, and with a closing "Z" or an offset such as "+01:00" where there is a "T". Throws
/// simulation::InputError for anything else, also for a day without a time.
platform::Date parseMoment(const std::string& text, const devices::TimeZone& zone, platform::Date now);

bool isSameDay(platform::Date a, platform::Date b, const devices::TimeZone& zone);

/// "14:20" on the local day of `today`, else "Tuesday, 24 November 2026, 14:20".
std::string momentText(platform::Date date, platform::Date today, const devices::TimeZone& zone);

}  // namespace hushmode::cli
