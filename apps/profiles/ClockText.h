// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Times of day on the clock of the user's language: of twelve hours, or of 24.
namespace hushmode::cli {

/// "08:30", or "08:30 AM"; of a minute of the day, 0 to 1440.
std::string clockText(int minute);

/// A whole hour of the day, 0 to 24, as short as it is understood: "08:00", or "8 AM".
std::string hourText(int hour);

}  // namespace hushmode::cli
