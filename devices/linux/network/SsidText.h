// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace hushmode::devices {

/// The longest name of a network, in bytes (IEEE 802.11).
constexpr std::size_t longestSsid = 32;

/// A network's name as text. Names are bytes: one that is UTF-8 stays as it is. Of any other, and of one with control
/// characters, each byte that is no readable text becomes "\xHH" with two upper-case hexadecimal digits, and so does
/// the backslash. A readable name that has "\x" in it gets its backslashes written in the same way; so no two names
/// have the same text.
std::string ssidText(std::string_view bytes);

}  // namespace hushmode::devices
