// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace hushmode::cli {

/// `word` as one argument of a command that can be typed into a shell, quoted where it must be.
std::string shellWord(std::string_view word);

}  // namespace hushmode::cli
