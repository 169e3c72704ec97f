// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Lengths of time as people write them.
namespace hushmode::cli {

/// "90m", "2h" or "1h30m" in minutes, from 1 to a week. Throws simulation::InputError for anything else, with what was
/// most likely meant: "90m" for "90", "2h" for "2 hours".
int parseLength(const std::string& text);

}  // namespace hushmode::cli
