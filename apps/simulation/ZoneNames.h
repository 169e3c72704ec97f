// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace hushmode::simulation {

/// The time zones that people choose from, "UTC" first, from the system's database; "UTC" alone where it has no table.
std::vector<std::string> zoneNames();

/// The zone that was most likely meant: "Europe/Berlin" for "Europe/Berln", "berlin" or "Berln"; empty when none is
/// near.
std::string nearestZone(const std::string& given);

}  // namespace hushmode::simulation
