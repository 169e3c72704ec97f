// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// What times that cannot be used most likely stood for, for "did you mean ...?".
namespace hushmode {

/// "08:00" for "8", "0800", "8h", "8:00:00", "8 a.m." or "8:00"; none for what is no time of day.
std::optional<std::string> nearestClock(std::string_view text);

/// The hours from one time of day to another, "08:00-17:00" for "8-17", "8 to 5pm" or "0800 1700"; none for what are no
/// two times. `withinOneDay`: an end before the start is meant in the afternoon ("8-5"), or is none.
std::optional<std::string> nearestHours(const std::string& text, bool withinOneDay);

/// A day, or a day and a time of day, from the forms of other countries or with digits left out: "2026-11-24" for
/// "24.11.2026", "2026/11/24" or "20261124", "2026-11-24T09:30" for "24.11.2026 9:30". What no calendar has becomes the
/// month's last day. None where the order of day and month is anybody's guess.
std::optional<std::string> nearestDay(std::string_view text);

}  // namespace hushmode
