// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// What may stand in the place of an argument. The tree of commands tells it by the argument's type name: "on|off" for
/// fixed words, "PROFILE", "CALENDARS", "NETWORKS", "DAYS", "ZONE", "TONE", "FILE" or "FOLDER" for what can be
/// completed, and any other word ("VOLUME") for what cannot. Limits are those of its validators.
struct ValueKind {
  enum class Source { Unknown, Choices, Names, Files, Folders };

  std::string word;  ///< For people: "VOLUME", "on|off". Empty for a flag, which takes no value.
  Source source = Source::Unknown;
  std::vector<std::string> choices;        ///< Of Choices: all of them. Of Names: what may be said instead of a name.
  std::string names;                       ///< Of Names: what "hushmode complete" lists.
  bool list = false;                       ///< Several may be given, with commas between.
  std::optional<std::string> least, most;  ///< Of numbers.
};

ValueKind valueKindOf(const CLI::Option& argument);

/// What stands for a value in a help text, in the user's language: "FILE". What can be typed so, as "on|off", stays.
std::string shownWord(const std::string& word);

/// "-v" and "--verbose", short ones first; none of a positional argument.
std::vector<std::string> optionNames(const CLI::Option& option);

/// What holds when it is not given, as it would be written; none for flags and where nothing or an empty text holds.
std::optional<std::string> defaultOf(const CLI::Option& argument);

}  // namespace hushmode::cli
