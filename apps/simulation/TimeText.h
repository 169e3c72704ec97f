// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/Date.h"

#include <optional>
#include <string>
#include <string_view>

namespace hushmode::simulation {

/// An instant as people write it, in the zone's local time: "2024-05-14", "2024-05-14 09:30", "2024-05-14T09:30:15.5";
/// a closing "Z" means UTC; a clock time alone ("09:30") means that time on the local day of `day`, where one is given.
/// None for anything else, including days and clock times that no calendar has.
std::optional<platform::Date> parseTime(std::string_view text, const devices::TimeZone& zone,
                                        std::optional<platform::Date> day = std::nullopt);

/// Whether the text is a date without a clock time.
bool isDateOnly(std::string_view text);

/// What `parseTime` understands, for messages.
std::string timeFormats();

/// The first instant of the local day that is `days` after that of `date`.
platform::Date beginningOfLocalDay(platform::Date date, const devices::TimeZone& zone, int days = 0);

/// "2024-05-14T09:30:15.500+02:00"; whole seconds without the fraction.
std::string isoTime(platform::Date date, const devices::TimeZone& zone);

// For people, by the calendar and the clock of their language.

/// "Tuesday, 14 May 2024".
std::string dayHeading(platform::Date date, const devices::TimeZone& zone);

/// "09:30:15", or "09:30:15 AM".
std::string clockTime(platform::Date date, const devices::TimeZone& zone);
/// "09:30", or "09:30 AM".
std::string minuteTime(platform::Date date, const devices::TimeZone& zone);

}  // namespace hushmode::simulation
