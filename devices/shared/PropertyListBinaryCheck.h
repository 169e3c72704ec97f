// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListLimits.h"

#include <optional>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// Whether `bytes` begin as a binary property list.
bool isBinaryPropertyList(std::string_view bytes);

/// What is wrong with a binary property list, as "byte 117: expected an object of the table, found reference 900"; none
/// when the library that reads it will read all of it, as it was meant.
///
/// The objects of a binary list refer to each other by number. libplist alone recognises circles, but follows a chain
/// as deep as it goes, and makes a copy of a shared object at each place that refers to it: a list of 2 KB can fill any
/// memory.
std::optional<std::string> binaryPropertyListFault(std::string_view bytes, const PropertyListLimits& limits);

}  // namespace hushmode::devices
