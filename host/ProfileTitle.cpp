// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/ProfileTitle.h"

#include <algorithm>
#include <array>

namespace hushmode::host {

namespace {

struct Character {
  char32_t code = 0;
  std::size_t bytes = 0;  ///< 0: what stands there is not UTF-8.
};

Character firstOf(std::string_view text) {
  const auto byteAt = [&](std::size_t place) { return static_cast<unsigned char>(text[place]); };
  const unsigned char first = byteAt(0);
  if (first < 0x80) return {first, 1};
  const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < bytes) return {};
  char32_t code = first & (0x7FU >> bytes);
  for (std::size_t place = 1; place < bytes; ++place) {
    if ((byteAt(place) & 0xC0) != 0x80) return {};
    code = (code << 6U) | (byteAt(place) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < least[bytes] || code > 0x10FFFF || isSurrogate ? Character{} : Character{code, bytes};
}

/// Control characters proper, and the line and paragraph separators.
bool isControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

/// What nobody sees at the end of a title.
bool isBlank(char32_t code) {
  constexpr std::array<char32_t, 9> others{0xA0, 0x1680, 0x2028, 0x2029, 0x202F, 0x205F, 0x2060, 0x3000, 0xFEFF};
  return code == ' ' || (code >= '\t' && code <= '\r') || (code >= 0x2000 && code <= 0x200B) ||
         std::find(others.begin(), others.end(), code) != others.end();
}

}  // namespace

std::string trimmedTitle(std::string_view title) {
  std::size_t start = std::string_view::npos, end = 0;  // Of what is no blank.
  for (std::size_t place = 0; place < title.size();) {
    const Character each = firstOf(title.substr(place));
    const std::size_t next = place + std::max<std::size_t>(each.bytes, 1);
    if (each.bytes == 0 || !isBlank(each.code)) {
      start = std::min(start, place);
      end = next;
    }
    place = next;
  }
  return end == 0 ? "" : std::string(title.substr(start, end - start));
}

std::optional<Message> titleFault(std::string_view title) {
  const std::string trimmed = trimmedTitle(title);
  if (trimmed.empty()) return Message("\"title\": expected a title that is not empty");
  std::size_t characters = 0;
  for (std::size_t place = 0; place < trimmed.size(); ++characters) {
    const Character each = firstOf(std::string_view(trimmed).substr(place));
    if (each.bytes == 0) return Message("\"title\": expected a text in UTF-8");
    if (isControl(each.code)) return Message("\"title\": expected one line without control characters");
    place += each.bytes;
  }
  if (characters > longestTitle) return Message("\"title\": expected at most {0} characters", longestTitle);
  if (trimmed != title) return Message("\"title\": expected no blanks at its beginning or end");
  return std::nullopt;
}

}  // namespace hushmode::host
