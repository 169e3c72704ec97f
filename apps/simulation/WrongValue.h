// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/JsonReader.h"

#include <string>

namespace hushmode::simulation {

/// What is said of a value that cannot be used: "--days wedd: expected days such as mon,tue; did you mean "wed"?".
/// `given` is the value behind what takes it ("--days wedd"); `near` what it most likely stood for, empty for nothing.
InputError wrongValue(const std::string& given, const std::string& expected, const std::string& near);

}  // namespace hushmode::simulation
