// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>

/// Volumes as people write them.
namespace hushmode::cli {

/// From 0 to 1: "5%", "5 %", "0.05", ".5", "0,05"; none for anything else.
std::optional<double> volumeOf(const std::string& text);

/// What was most likely meant by a text that is no volume: "5%" for "5" or "5 percent", "100%" for "150%"; empty where
/// it has no number.
std::string nearestVolume(const std::string& text);

}  // namespace hushmode::cli
