// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/terminal/Terminal.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace hushmode::cli {

/// The width to write help in: that of the terminal, or what COLUMNS says; 80 for what is no terminal. Not more than
/// can be read with ease.
std::size_t helpColumns();

/// Help texts: what a command does, how it is called, its commands by purpose, its arguments with the words that they
/// take and what holds without them, and its footer. In a footer, lines that begin with two blanks are examples.
class HelpFormatter final : public CLI::FormatterBase {
 public:
  HelpFormatter(std::size_t columns, Terminal terminal) : columns_(columns), terminal_(terminal) {}
  std::string make_help(const CLI::App* command, std::string name, CLI::AppFormatMode mode) const override;

 private:
  struct Entry {
    std::string left, right;
  };
  std::string heading(const std::string& text) const;
  /// `left` is the width of the first of its two columns; what is wider stands on a line of its own.
  std::string entries(const std::vector<Entry>& entries, std::size_t left) const;
  static std::size_t leftOf(const std::vector<Entry>& entries);
  std::string usage(const CLI::App& command, const std::string& name) const;
  std::string commandGroups(const CLI::App& command) const;
  std::string arguments(const CLI::App& command) const;
  std::string footer(const CLI::App& command) const;

  std::size_t columns_;
  Terminal terminal_;
};

/// The command as people call it: "hushmode profile edit".
std::string fullName(const CLI::App& command);

/// The commands in it that people are told of, in order.
std::vector<const CLI::App*> shownCommands(const CLI::App& command);

/// Its arguments in the order of the help: positional ones first. Those of no group are left out.
std::vector<const CLI::Option*> shownArguments(const CLI::App& command);

/// A footer taken apart.
struct Footer {
  std::vector<std::string> notes;     ///< Paragraphs.
  std::vector<std::string> examples;  ///< Commands.
};
Footer footerOf(const CLI::App& command);

}  // namespace hushmode::cli
