// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/usage/WrongUse.h"

#include "apps/terminal/Terminal.h"
#include "apps/usage/Help.h"
#include "apps/usage/ValueKinds.h"
#include "apps/words/Nearest.h"
#include "devices/words/Text.h"

#include <algorithm>

namespace hushmode::cli {

namespace {

/// The command within the program: "profile edit: ". Empty for the program itself, which every message names.
std::string place(const CLI::App& command) {
  const std::string name = fullName(command);
  const auto blank = name.find(' ');
  return blank == std::string::npos ? "" : name.substr(blank + 1) + ": ";
}

/// The commands that were named, the program itself first.
std::vector<const CLI::App*> namedCommands(const CLI::App& program) {
  std::vector<const CLI::App*> named{&program};
  while (!named.back()->get_subcommands().empty()) named.push_back(named.back()->get_subcommands().back());
  return named;
}

std::vector<std::string> commandNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::App* each : shownCommands(command)) names.push_back(each->get_name());
  return names;
}

std::string listed(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& each : words) list += (list.empty() ? "" : ", ") + each;
  return list;
}

std::string unknownOption(const CLI::App& command, const std::string& given) {
  const std::string name = given.substr(0, given.find('='));
  std::vector<std::string> known;
  for (const CLI::Option* each : shownArguments(command)) {
    for (const std::string& option : optionNames(*each)) known.push_back(option);
  }
  // Short ones are all near each other.
  const std::string near = name.starts_with("--") ? nearestOf(name, known) : "";
  return near.empty() ? place(command) + tr("there is no option {0}; see {1} --help", harmless(name), fullName(command))
                      : place(command) + tr("there is no option {0}; did you mean {1}?", harmless(name), near);
}

std::string unknownCommand(const CLI::App& command, const std::string& given) {
  const std::string near = nearestOf(given, commandNames(command));
  if (!near.empty()) return place(command) + tr("\"{0}\" is no command; did you mean \"{1}\"?", harmless(given), near);
  for (const CLI::App* group : shownCommands(command)) {
    const auto names = commandNames(*group);
    if (std::find(names.begin(), names.end(), given) != names.end()) {
      return tr("\"{0}\" is no command; did you mean \"{1} {0}\"?", given, group->get_name());
    }
  }
  return place(command) + tr("\"{0}\" is no command; see {1} --help", harmless(given), fullName(command));
}

/// What the command line has too much; empty when nothing is.
std::string leftOver(const CLI::App& command) {
  const auto words = command.remaining();
  if (words.empty()) return "";
  const auto option = std::find_if(words.begin(), words.end(), [](const auto& each) { return each.starts_with("-"); });
  if (option != words.end()) return unknownOption(command, *option);
  if (!shownCommands(command).empty()) return unknownCommand(command, words.front());
  return place(command) + tr("\"{}\" is too much; a text with blanks needs quotation marks", harmless(words.front()));
}

/// The argument that the parser's message names first.
const CLI::Option* namedArgument(const CLI::App& command, const std::string& message) {
  const CLI::Option* named = nullptr;
  std::size_t first = std::string::npos, length = 0;
  for (const CLI::Option* each : command.get_options()) {
    const std::string name = each->get_name();
    const auto place = message.find(name);
    if (place > first || place == std::string::npos || (place == first && name.size() < length)) continue;
    named = each;
    first = place;
    length = name.size();
  }
  return named;
}

/// The flag that a value was given to: the parser says it without dashes. Empty when the mistake is another one.
std::string flagWithValue(const CLI::ParseError& error) {
  const std::string message = error.what();
  const auto place = message.find(" was given a disallowed flag override");
  if (place == std::string::npos || place == 0) return "";
  return (place == 1 ? "-" : "--") + message.substr(0, place);
}

/// The two arguments in a message of the parser.
std::pair<std::string, std::string> aroundWord(const std::string& message, const std::string& word) {
  const auto place = message.find(word);
  if (place == std::string::npos) return {message, ""};
  return {message.substr(0, place), message.substr(place + word.size())};
}

std::string expectation(const CLI::Option& argument) {
  const ValueKind kind = valueKindOf(argument);
  if (kind.least && kind.most) return tr("a number from {0} to {1}", *kind.least, *kind.most);
  if (kind.least) return tr("a number from {} on", *kind.least);
  if (kind.source == ValueKind::Source::Choices) return tr("one of {}", listed(kind.choices));
  return kind.word == "NUMBER" ? tr("a whole number") : shownWord(kind.word);
}

/// The value that was most likely meant: one of the choices, or a number within its limits. Empty where none is near.
std::string nearestValue(const std::string& given, const ValueKind& kind) {
  if (!kind.choices.empty()) return nearestOf(given, kind.choices);
  if (!kind.least) return "";
  const bool isNegative = given.starts_with("-");
  const auto start = static_cast<std::size_t>(isNegative), end = given.find_first_not_of("0123456789", start);
  std::string digits = given.substr(start, end == std::string::npos ? end : end - start);
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - (digits.empty() ? 0 : 1)));
  if (digits.empty()) return "";
  // By their length first: they may be too long for any number.
  const auto isLess = [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  };
  if (isNegative || isLess(digits, *kind.least)) return *kind.least;
  if (kind.most && isLess(*kind.most, digits)) return *kind.most;
  constexpr std::size_t mostDigits = 9;
  return digits.size() <= mostDigits ? digits : "";
}

}  // namespace

std::string wrongCommand(const CLI::App& program) {
  for (const CLI::App* command : namedCommands(program)) {
    const auto words = command->remaining();
    const auto word = std::find_if(words.begin(), words.end(), [](const auto& each) { return !each.starts_with("-"); });
    if (word != words.end() && !shownCommands(*command).empty()) return unknownCommand(*command, *word);
  }
  return "";
}

std::string wrongUse(const CLI::App& program, const CLI::ParseError& error) {
  const auto named = namedCommands(program);
  for (const CLI::App* each : named) {
    if (const std::string text = leftOver(*each); !text.empty()) return text;
  }
  const CLI::App& command = *named.back();
  const std::string at = place(command);
  const CLI::Option* argument = namedArgument(command, error.what());
  if (const std::string flag = flagWithValue(error); !flag.empty()) return at + tr("{} takes no value", flag);
  if (dynamic_cast<const CLI::RequiredError*>(&error)) {
    if (!argument) return at + tr("expected a command, one of {}", listed(commandNames(command)));
    return at + tr("{0} is missing: {1}", shownWord(argument->get_name()), argument->get_description());
  }
  if (argument && dynamic_cast<const CLI::ArgumentMismatch*>(&error)) {
    if (argument->results().size() > 1) return at + tr("{} may be given only once", argument->get_name());
    return at + tr("{0} needs {1} behind it", argument->get_name(), expectation(*argument));
  }
  const auto results = argument ? argument->results() : std::vector<std::string>();
  const bool isWrongValue =
      dynamic_cast<const CLI::ConversionError*>(&error) || dynamic_cast<const CLI::ValidationError*>(&error);
  if (isWrongValue && !results.empty()) {
    const ValueKind kind = valueKindOf(*argument);
    const std::string near = nearestValue(results.back(), kind);
    const std::string given = argument->get_name() + " " + harmless(results.back());
    return near.empty() ? at + tr("{0}: expected {1}", given, expectation(*argument))
                        : at + tr("{0}: expected {1}; did you mean \"{2}\"?", given, expectation(*argument), near);
  }
  if (dynamic_cast<const CLI::ExcludesError*>(&error)) {
    const auto [one, other] = aroundWord(error.what(), " excludes ");
    return at + tr("{0} and {1} exclude each other", one, other);
  }
  if (dynamic_cast<const CLI::RequiresError*>(&error)) {
    const auto [one, other] = aroundWord(error.what(), " requires ");
    return at + tr("{0} is only allowed together with {1}", one, other);
  }
  // The parser's own words for the rest, which no command here comes to.
  return at + tr("{0}; see {1} --help", harmless(error.what()), fullName(command));
}

}  // namespace hushmode::cli
