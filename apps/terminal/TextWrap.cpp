// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/terminal/TextWrap.h"

#include "apps/terminal/Terminal.h"

namespace hushmode::cli {

namespace {

/// The words of a text; of a command those between blanks that no quotation marks hold together.
std::vector<std::string> wordsOf(std::string_view text, bool isCommand) {
  std::vector<std::string> words(1);
  char quote = 0;
  for (const char c : text) {
    if (isCommand && (c == '"' || c == '\'') && (quote == 0 || quote == c)) quote = quote ? 0 : c;
    if (c != ' ' || quote) {
      words.back() += c;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  if (words.back().empty()) words.pop_back();
  return words;
}

std::vector<std::string> filled(const std::vector<std::string>& words, std::size_t columns, const std::string& end,
                                const std::string& indent) {
  std::vector<std::string> lines;
  std::string line;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::size_t room = columns - (i + 1 < words.size() ? columnsOf(end) : 0);
    if (!line.empty() && line != indent && columnsOf(line) + 1 + columnsOf(words[i]) > room) {
      lines.push_back(line + end);
      line = indent;
    }
    if (!line.empty() && line != indent) line += ' ';
    line += words[i];
  }
  if (!line.empty()) lines.push_back(line);
  return lines;
}

}  // namespace

std::vector<std::string> wrapped(std::string_view paragraph, std::size_t columns) {
  return filled(wordsOf(paragraph, false), columns, "", "");
}

std::vector<std::string> wrappedCommand(std::string_view command, std::size_t columns) {
  // An option and its value stay together.
  std::vector<std::string> pieces;
  for (const std::string& word : wordsOf(command, true)) {
    const bool isValue = !pieces.empty() && pieces.back().starts_with("--") && !word.starts_with("-") &&
                         pieces.back().find(' ') == std::string::npos;
    if (isValue) {
      pieces.back() += " " + word;
    } else {
      pieces.push_back(word);
    }
  }
  return filled(pieces, columns, " \\", "  ");
}

}  // namespace hushmode::cli
