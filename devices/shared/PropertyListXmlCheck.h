// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListLimits.h"

#include <optional>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// What is wrong with an XML property list, as "line 12: expected <key> or </dict>, found <true>"; none when the
/// library that reads it will read all of it, as it was meant.
///
/// libplist alone overlooks much: it takes malformed numbers for zero, malformed dates for the year 1970, and ends
/// where the file was cut.
std::optional<std::string> xmlPropertyListFault(std::string_view text, const PropertyListLimits& limits);

}  // namespace hushmode::devices
