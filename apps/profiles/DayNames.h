// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// Days of the week as people name them, and as RFC 5545 does (section 3.3.10: "MO").
namespace hushmode::cli {

/// The days in a list with commas: "mon,tue", "Monday"; also by their names in the user's language ("Mo,Di"), short or
/// long, in any letter case. Empty for an empty text. Throws simulation::InputError with what was expected.
std::vector<std::string> parseDays(const std::string& text);

/// "Mon, Tue" for "MO,TU", in the user's language, in the order of its week; "every day" for "daily".
std::string daysText(const std::string& days);

}  // namespace hushmode::cli
