// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Message.h"

#include <optional>
#include <string>
#include <string_view>

/// What a profile may be called when people or programs name it. Titles that are stored already are read as they are.
namespace hushmode::host {

inline constexpr std::size_t longestTitle = 200;  ///< In characters.

/// The title without the blanks and line breaks around it; a program that takes titles from people does so first.
std::string trimmedTitle(std::string_view title);

/// What is expected of a title that no profile may have: a blank one, one with blanks around it, with a line break or
/// another control character, a longer one than `longestTitle`, or one that is not UTF-8. None for all others.
std::optional<Message> titleFault(std::string_view title);

}  // namespace hushmode::host
