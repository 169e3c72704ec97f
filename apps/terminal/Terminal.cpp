// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/terminal/Terminal.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <glib.h>
#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace hushmode::cli {

bool isTerminal(int fileDescriptor) { return ::isatty(fileDescriptor) == 1; }

std::optional<std::size_t> columnsOfOutput() {
  std::size_t columns = 0;
  if (const char* given = std::getenv("COLUMNS")) std::from_chars(given, given + std::strlen(given), columns);
  winsize size{};
  if (columns == 0 && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) columns = size.ws_col;
  return columns == 0 ? std::nullopt : std::optional(columns);
}

void complain(const std::string& line) {
  // In one piece: the program may be ended by a signal at any time, and others may write there, too.
  std::cerr << "hushmode: " + harmless(line) + "\n";
}

Terminal Terminal::of(int fileDescriptor) {
  const char* type = std::getenv("TERM");
  const char* no = std::getenv("NO_COLOR");
  return Terminal(isTerminal(fileDescriptor) && (!no || !*no) && !(type && std::string_view(type) == "dumb"));
}

std::string Terminal::styled(std::string_view text, Style style) const {
  const char* code = "";
  switch (style) {
    case Style::Plain:
      return std::string(text);
    case Style::Bold:
      code = "1";
      break;
    case Style::Dim:
      code = "2";
      break;
    case Style::Green:
      code = "32";
      break;
    case Style::Red:
      code = "31";
      break;
    case Style::Yellow:
      code = "33";
      break;
  }
  if (!colours_ || text.empty()) return std::string(text);
  return "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m";
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  const char* end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    const gunichar c = g_utf8_get_char_validated(at, end - at);
    if (c == static_cast<gunichar>(-1) || c == static_cast<gunichar>(-2)) {
      ++columns;
      ++at;
      continue;
    }
    if (!g_unichar_iszerowidth(c)) columns += g_unichar_iswide(c) ? 2 : 1;
    at = g_utf8_next_char(at);
  }
  return columns;
}

std::string padded(const std::string& text, std::size_t columns) {
  const std::size_t taken = columnsOf(text);
  return taken >= columns ? text : text + std::string(columns - taken, ' ');
}

std::string harmless(std::string_view text) {
  std::string shown;
  const char* end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    const gunichar c = g_utf8_get_char_validated(at, end - at);
    const bool invalid = c == static_cast<gunichar>(-1) || c == static_cast<gunichar>(-2);
    const char* next = invalid ? at + 1 : g_utf8_next_char(at);
    if (invalid || g_unichar_iscntrl(c)) {
      shown += '?';
    } else {
      shown.append(at, next);
    }
    at = next;
  }
  return shown;
}

}  // namespace hushmode::cli
