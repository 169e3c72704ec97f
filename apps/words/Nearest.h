// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

/// The candidate that `word` most likely stood for, in whatever letter case; empty when none is near.
std::string nearestOf(std::string_view word, std::initializer_list<std::string_view> candidates);
std::string nearestOf(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace hushmode
