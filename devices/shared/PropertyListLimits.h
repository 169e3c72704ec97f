// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace hushmode::devices {

/// How much of a property list is read at most, so that no file can exhaust the memory or the stack.
struct PropertyListLimits {
  std::size_t bytes = std::size_t{64} << 20;
  std::size_t depth = 512;         ///< Arrays and dictionaries inside each other.
  std::size_t values = 1'000'000;  ///< A value that a binary file shares between places counts at each of them.
};

}  // namespace hushmode::devices
