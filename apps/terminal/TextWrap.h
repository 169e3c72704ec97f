// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hushmode::cli {

/// A paragraph in lines of at most `columns`; a word that is longer has a line of its own.
std::vector<std::string> wrapped(std::string_view paragraph, std::size_t columns);

/// A shell command in lines of at most `columns`, which can be pasted as they are: what goes on ends with a backslash,
/// and is indented. Quoted texts are not broken.
std::vector<std::string> wrappedCommand(std::string_view command, std::size_t columns);

}  // namespace hushmode::cli
