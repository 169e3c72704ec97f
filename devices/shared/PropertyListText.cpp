// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListText.h"

namespace hushmode::devices {

namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// Bytes of the UTF-8 encoded XML character that `text`, not empty, begins with; 0 when it begins with none.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return isXmlCharacter(first) ? 1 : 0;

  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  char32_t character = first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    character = character << 6 | (byte(i) & 0x3Fu);
  }
  constexpr char32_t kLeastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  return character >= kLeastOfLength[length] && isXmlCharacter(character) ? length : 0;
}

}  // namespace

bool isXmlCharacter(char32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
         (character > 0xFFFF && character <= 0x10FFFF);
}

std::size_t xmlTextLength(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = characterLength(text.substr(at));
    if (length == 0) break;
    at += length;
  }
  return at;
}

std::string asXmlText(std::string_view text) {
  std::string clean;
  clean.reserve(text.size());
  while (true) {
    const std::size_t good = xmlTextLength(text);
    clean += text.substr(0, good);
    if (good == text.size()) return clean;
    clean += kReplacementCharacter;
    text.remove_prefix(good + 1);
  }
}

}  // namespace hushmode::devices
