// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/JsonReader.h"

#include <filesystem>
#include <string>

namespace hushmode::simulation {

/// What there is beside a path that does not exist, and is called nearly so; empty when there is nothing.
std::string nearestFile(const std::filesystem::path& missing);

/// What is said of a path that cannot be used: why ("no such file"), what was expected, and the nearest one.
InputError wrongFile(const std::filesystem::path& path, const std::string& reason, const std::string& expected);

}  // namespace hushmode::simulation
