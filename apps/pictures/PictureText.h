// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

/// Texts in pictures whose font is not known: a viewer has its own sans-serif.
namespace hushmode::cli {

enum class Weight { Normal, Bold };

/// No usual sans-serif font needs more than this, in the unit of `size`.
double widthOf(std::string_view text, double size, Weight weight = Weight::Normal);

/// `text`, or as much of it as fits with an ellipsis; empty when not even that fits. Never cuts a character from its
/// accents.
std::string cutToWidth(const std::string& text, double size, double width, Weight weight = Weight::Normal);

/// `text` for one line of a picture: without control characters, without those that turn the direction of what follows,
/// and with U+FFFD for bytes that are no UTF-8.
std::string oneLine(std::string_view text);

/// `text` as the content of an XML element or attribute.
std::string xmlEscaped(std::string_view text);

}  // namespace hushmode::cli
