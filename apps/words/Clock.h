// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// The clock and the calendar of the process's language (LC_TIME).
namespace hushmode {

/// Whether that language tells the time by a clock of twelve hours.
bool hasTwelveHourClock();

/// "09:30:15", or "09:30:15 AM"; `seconds` of the day, 0 to 86399.
std::string clockWithSeconds(int seconds);
/// "09:30", or "09:30 AM".
std::string clockWithMinutes(int seconds);

/// "Tuesday, 24 November 2026". `weekday`: 0 for Sunday; `month`: from 1.
std::string dayText(unsigned weekday, unsigned day, unsigned month, int year);

/// The weekday with which the language's weeks begin; 0 for Sunday.
unsigned firstWeekday();
/// "Mon"; 0 for Sunday.
std::string shortWeekday(unsigned weekday);
/// "Monday"; 0 for Sunday.
std::string longWeekday(unsigned weekday);

}  // namespace hushmode
