// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <vector>

namespace hushmode::properties {

/// A source of choices that gives the same ones for the same seed, on every machine: the engine is defined by the
/// language, and the library's distributions, which are not, are left alone.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : engine_(seed) {}

  /// 0 to `count` - 1.
  int below(int count) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(count)); }
  /// True once in `count` times, on average.
  bool onceIn(int count) { return below(count) == 0; }
  bool toss() { return onceIn(2); }

  template <class T>
  T oneOf(std::initializer_list<T> candidates) {
    return *(candidates.begin() + below(static_cast<int>(candidates.size())));
  }
  /// The list must not be empty.
  template <class T>
  const T& oneOf(const std::vector<T>& candidates) {
    return candidates[static_cast<std::size_t>(below(static_cast<int>(candidates.size())))];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace hushmode::properties
