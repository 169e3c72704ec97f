// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// Whether XML 1.0 can hold the character: no control character but tab, line feed and carriage return, no surrogate,
/// neither U+FFFE nor U+FFFF.
bool isXmlCharacter(char32_t character);

/// The number of bytes before the first one that does not belong to a UTF-8 encoded XML character; all of them, when
/// there is none.
std::size_t xmlTextLength(std::string_view text);

/// `text` with U+FFFD in place of each byte that does not belong to a UTF-8 encoded XML character.
std::string asXmlText(std::string_view text);

}  // namespace hushmode::devices
