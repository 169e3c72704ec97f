// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/usage/ValueKinds.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace hushmode::cli {

namespace {

using enum ValueKind::Source;

const std::vector<ValueKind>& kinds() {
  static const std::vector<ValueKind> all = {
      {"PROFILE", Names, {}, "profiles", false, {}, {}},
      {"CALENDAR", Names, {}, "calendars", false, {}, {}},
      {"CALENDARS", Names, {}, "calendars", true, {}, {}},
      {"NETWORK", Names, {}, "networks", false, {}, {}},
      {"NETWORKS", Names, {"none"}, "networks", true, {}, {}},
      {"ZONE", Names, {}, "zones", false, {}, {}},
      {"TONE", Names, {}, "tones", false, {}, {}},
      {"DAYS", Choices, {"mon", "tue", "wed", "thu", "fri", "sat", "sun"}, "", true, {}, {}},
      {"FILE", Files, {}, "", false, {}, {}},
      {"FOLDER", Folders, {}, "", false, {}, {}},
  };
  return all;
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

/// The parser's own words for the types of variables, in people's.
std::string plainWord(const std::string& type) {
  if (type == "UINT" || type == "INT" || type == "FLOAT") return "NUMBER";
  if (type == "TEXT") return "TEXT";
  if (type == "DIR") return "FOLDER";
  return type;
}

/// What a validator says of itself: "INT in [1 - 366]" or "{dark,light}".
void addLimits(const std::string& text, ValueKind& kind) {
  const auto open = text.find_first_of("[{"), close = text.find_last_of("]}");
  if (open == std::string::npos || close == std::string::npos || close < open) return;
  const std::string inside = text.substr(open + 1, close - open - 1);
  if (text[open] == '{') {
    kind.source = Choices;
    kind.choices = split(inside, ',');
    std::replace(kind.word.begin(), kind.word.end(), ',', '|');
    return;
  }
  if (const auto dash = inside.find(" - "); dash != std::string::npos) {
    kind.least = inside.substr(0, dash);
    kind.most = inside.substr(dash + 3);
  }
}

}  // namespace

ValueKind valueKindOf(const CLI::Option& argument) {
  if (argument.get_expected_max() == 0 || argument.get_type_size() == 0) return {};
  const std::string said = argument.get_type_name();
  const auto colon = said.find(':');
  ValueKind kind;
  kind.word = plainWord(said.substr(0, colon));
  if (said.starts_with("UINT")) kind.least = "0";
  const auto known =
      std::find_if(kinds().begin(), kinds().end(), [&](const ValueKind& each) { return each.word == kind.word; });
  if (known != kinds().end()) kind = *known;
  if (kind.word.find('|') != std::string::npos) {
    kind.source = Choices;
    kind.choices = split(kind.word, '|');
  }
  if (colon != std::string::npos) addLimits(said.substr(colon + 1), kind);
  return kind;
}

std::string shownWord(const std::string& word) {
  static constexpr std::array words{
      HUSHMODE_MARKED("CALENDARS"), HUSHMODE_MARKED("COMMAND"), HUSHMODE_MARKED("DAY"),      HUSHMODE_MARKED("DAYS"),
      HUSHMODE_MARKED("FILE"),      HUSHMODE_MARKED("FOLDER"),  HUSHMODE_MARKED("HOURS"),    HUSHMODE_MARKED("KIND"),
      HUSHMODE_MARKED("LENGTH"),    HUSHMODE_MARKED("NAME"),    HUSHMODE_MARKED("NETWORKS"), HUSHMODE_MARKED("NEW"),
      HUSHMODE_MARKED("NUMBER"),    HUSHMODE_MARKED("PROFILE"), HUSHMODE_MARKED("SCENARIO"), HUSHMODE_MARKED("TEXT"),
      HUSHMODE_MARKED("TIME"),      HUSHMODE_MARKED("TIMES"),   HUSHMODE_MARKED("TITLE"),    HUSHMODE_MARKED("TONE"),
      HUSHMODE_MARKED("VOLUME"),    HUSHMODE_MARKED("ZONE")};
  const auto place = std::find(words.begin(), words.end(), word);
  return place == words.end() ? word : tr(*place);
}

std::vector<std::string> optionNames(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& each : option.get_snames()) names.push_back("-" + each);
  for (const std::string& each : option.get_lnames()) names.push_back("--" + each);
  return names;
}

std::optional<std::string> defaultOf(const CLI::Option& argument) {
  const std::string value = argument.get_default_str();
  if (valueKindOf(argument).word.empty() || value.empty() || value == "{}" || value == "[]" || value == "\"\"")
    return std::nullopt;
  return value;
}

}  // namespace hushmode::cli
