// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hushmode::cli {

enum class Style { Plain, Bold, Dim, Green, Red, Yellow };

/// Colours for a stream that people look at, and none for any other.
class Terminal {
 public:
  /// Colours only if the descriptor is a terminal, TERM is not "dumb", and NO_COLOR is not set.
  static Terminal of(int fileDescriptor);
  explicit Terminal(bool colours) : colours_(colours) {}

  std::string styled(std::string_view text, Style style) const;

 private:
  bool colours_;
};

bool isTerminal(int fileDescriptor);

/// How many columns standard output has: what COLUMNS says, else the terminal. None where neither tells.
std::optional<std::size_t> columnsOfOutput();

/// Says a line on standard error, under the name of the command line; harmless.
void complain(const std::string& line);

/// How many columns a UTF-8 text takes: wide characters count twice, combining ones not at all.
std::size_t columnsOf(std::string_view text);

/// `text` with blanks behind it up to `columns`.
std::string padded(const std::string& text, std::size_t columns);

/// `text` fit to be shown: control characters, which could command the terminal, become "?".
std::string harmless(std::string_view text);

}  // namespace hushmode::cli
