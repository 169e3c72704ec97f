// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/terminal/ShellWord.h"

#include <algorithm>

namespace hushmode::cli {

namespace {

/// Bytes of UTF-8 beyond ASCII mean nothing to a shell.
bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         static_cast<unsigned char>(c) >= 0x80 || std::string_view("_./:@%+=,-").find(c) != std::string_view::npos;
}

}  // namespace

std::string shellWord(std::string_view word) {
  if (!word.empty() && std::all_of(word.begin(), word.end(), isPlain)) return std::string(word);
  if (word.find_first_of("\"$`\\!") == std::string_view::npos) return '"' + std::string(word) + '"';
  std::string quoted = "'";
  for (const char c : word) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

}  // namespace hushmode::cli
