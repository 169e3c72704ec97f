// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/network/SsidText.h"

#include <algorithm>
#include <glib.h>

namespace hushmode::devices {

namespace {

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

/// The bytes at the beginning of `text` that are UTF-8.
std::size_t validLength(std::string_view text) {
  const char* end = nullptr;
  g_utf8_validate_len(text.data(), text.size(), &end);
  return static_cast<std::size_t>(end - text.data());
}

void appendEscaped(std::string& text, char c) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  text += "\\x";
  text += digits[byte >> 4];
  text += digits[byte & 0xF];
}

}  // namespace

std::string ssidText(std::string_view bytes) {
  if (validLength(bytes) == bytes.size() && std::none_of(bytes.begin(), bytes.end(), isControl) &&
      bytes.find("\\x") == std::string_view::npos) {
    return std::string(bytes);
  }
  std::string text;
  while (!bytes.empty()) {
    const std::size_t valid = validLength(bytes);
    for (const char c : bytes.substr(0, valid)) {
      if (isControl(c) || c == '\\') {
        appendEscaped(text, c);
      } else {
        text += c;
      }
    }
    bytes.remove_prefix(valid);
    if (bytes.empty()) break;
    appendEscaped(text, bytes.front());
    bytes.remove_prefix(1);
  }
  return text;
}

}  // namespace hushmode::devices
