// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/usage/Help.h"

#include "apps/terminal/TextWrap.h"
#include "apps/usage/ValueKinds.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <sstream>

namespace hushmode::cli {

namespace {

constexpr std::size_t usualColumns = 80, leastColumns = 30, mostColumns = 100;
constexpr std::size_t mostLeft = 26;
// An explanation has at least that; where a line is too short for it, it stands below what it explains.
constexpr std::size_t leastRight = 26;

/// "--window TIMES", "NAME".
std::string nameOf(const CLI::Option& argument) {
  if (argument.get_positional()) return shownWord(argument.get_name(true));
  std::string names;
  for (const std::string& each : optionNames(argument)) names += (names.empty() ? "" : ", ") + each;
  const std::string word = shownWord(valueKindOf(argument).word);
  return word.empty() ? names : names + " " + word;
}

std::string explanationOf(const CLI::Option& argument) {
  const std::string text = argument.get_description();
  const auto kind = valueKindOf(argument);
  const auto without = defaultOf(argument);
  if (kind.least && kind.most && without) {
    return tr("{0} ({1} to {2}; {3} if not given)", text, *kind.least, *kind.most, *without);
  }
  if (kind.least && kind.most) return tr("{0} ({1} to {2})", text, *kind.least, *kind.most);
  return without ? tr("{0} ({1} if not given)", text, *without) : text;
}

bool isExample(const std::string& line) { return line.starts_with("  "); }

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

}  // namespace

std::size_t helpColumns() {
  const auto columns = columnsOfOutput();
  return columns ? std::clamp(*columns, leastColumns, mostColumns) : usualColumns;
}

std::string fullName(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  return parent ? fullName(*parent) + " " + command.get_name() : command.get_name();
}

std::vector<const CLI::App*> shownCommands(const CLI::App& command) {
  return command.get_subcommands([](const CLI::App* each) { return !each->get_group().empty(); });
}

std::vector<const CLI::Option*> shownArguments(const CLI::App& command) {
  auto shown = command.get_options([](const CLI::Option* each) { return !each->get_group().empty(); });
  std::stable_partition(shown.begin(), shown.end(), [](const CLI::Option* each) { return each->get_positional(); });
  // Everybody knows --help; what is special comes first.
  std::stable_partition(shown.begin(), shown.end(),
                        [&](const CLI::Option* each) { return each != command.get_help_ptr(); });
  return shown;
}

Footer footerOf(const CLI::App& command) {
  Footer footer;
  std::string paragraph;
  const auto lines = linesOf(command.get_footer());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const bool announces = i + 1 < lines.size() && isExample(lines[i + 1]) && lines[i].ends_with(":");
    if (isExample(lines[i])) {
      footer.examples.push_back(lines[i].substr(2));
    } else if (!lines[i].empty() && !announces) {
      paragraph += (paragraph.empty() ? "" : " ") + lines[i];
      continue;
    }
    if (!paragraph.empty()) footer.notes.push_back(std::exchange(paragraph, ""));
  }
  if (!paragraph.empty()) footer.notes.push_back(paragraph);
  return footer;
}

std::size_t HelpFormatter::leftOf(const std::vector<Entry>& entries) {
  std::size_t left = 0;
  for (const Entry& each : entries) {
    if (columnsOf(each.left) <= mostLeft) left = std::max(left, columnsOf(each.left));
  }
  return left;
}

std::string HelpFormatter::heading(const std::string& text) const {
  return "\n" + terminal_.styled(text, Style::Bold) + "\n";
}

std::string HelpFormatter::entries(const std::vector<Entry>& entries, std::size_t left) const {
  const bool inTwoColumns = columns_ >= 2 + left + 2 + leastRight;
  const std::size_t indent = inTwoColumns ? 2 + left + 2 : 6;
  std::string text;
  for (const Entry& each : entries) {
    const auto names = wrapped(each.left, columns_ - 2);
    for (std::size_t i = 0; i < names.size(); ++i) text += (i > 0 ? "\n    " : "  ") + names[i];
    const bool beside = inTwoColumns && columnsOf(each.left) <= left;
    std::string before = beside ? std::string(indent - 2 - columnsOf(each.left), ' ') : "\n" + std::string(indent, ' ');
    for (const std::string& line : wrapped(each.right, columns_ - indent)) {
      text += before + line;
      before = "\n" + std::string(indent, ' ');
    }
    text += '\n';
  }
  return text;
}

std::string HelpFormatter::usage(const CLI::App& command, const std::string& name) const {
  std::string call = name;
  const bool hasCommands = !shownCommands(command).empty();
  if (hasCommands)
    call += " " + std::string(command.get_require_subcommand_min() > 0 ? tr("COMMAND") : tr("[COMMAND]"));
  bool others = false;
  for (const CLI::Option* each : shownArguments(command)) {
    const bool several = each->get_expected_max() >= CLI::detail::expected_max_vector_size;
    const std::string text = nameOf(*each) + (several ? "..." : "");
    if (each->get_required())
      call += " " + text;
    else if (each->get_positional())
      call += " [" + text + "]";
    else
      others = true;
  }
  if (others && !hasCommands) call += " " + tr("[OPTIONS]");
  std::string text;
  const std::string word = tr("Usage:");
  const bool beside = columnsOf(word) + 1 + columnsOf(call) <= columns_ || columns_ >= usualColumns;
  const std::size_t indent = beside ? columnsOf(word) + 1 : 2;
  for (const std::string& line : wrapped(call, columns_ - indent)) {
    if (text.empty()) {
      text = terminal_.styled(word, Style::Bold) + (beside ? " " : "\n  ") + line;
    } else {
      text += "\n" + std::string(indent + 2, ' ') + line;
    }
  }
  return text + "\n";
}

std::string HelpFormatter::commandGroups(const CLI::App& command) const {
  std::vector<std::string> groups;
  for (const CLI::App* each : shownCommands(command)) {
    if (std::find(groups.begin(), groups.end(), each->get_group()) == groups.end()) groups.push_back(each->get_group());
  }
  std::size_t left = 0;  // The same for all groups.
  for (const CLI::App* each : shownCommands(command)) left = std::max(left, columnsOf(each->get_name()));
  std::string text;
  for (const std::string& group : groups) {
    std::vector<Entry> inGroup;
    for (const CLI::App* each : shownCommands(command)) {
      if (each->get_group() == group) inGroup.push_back({each->get_name(), each->get_description()});
    }
    text += heading(group == "Subcommands" ? tr("Commands:") : group + ":") + entries(inGroup, left);
  }
  return text;
}

std::string HelpFormatter::arguments(const CLI::App& command) const {
  std::vector<Entry> positional, options;
  for (const CLI::Option* each : shownArguments(command)) {
    (each->get_positional() ? positional : options).push_back({nameOf(*each), explanationOf(*each)});
  }
  std::string text;
  if (!positional.empty()) text += heading(tr("Arguments:")) + entries(positional, leftOf(positional));
  if (!options.empty()) text += heading(tr("Options:")) + entries(options, leftOf(options));
  return text;
}

std::string HelpFormatter::footer(const CLI::App& command) const {
  std::string text;
  const auto add = [&](const std::vector<std::string>& lines, const std::string& indent) {
    for (const std::string& line : lines) text += indent + line + "\n";
  };
  const Footer footer = footerOf(command);
  for (const std::string& note : footer.notes) {
    text += "\n";
    add(wrapped(note, columns_), "");
  }
  if (!footer.examples.empty()) text += heading(footer.examples.size() > 1 ? tr("Examples:") : tr("Example:"));
  for (const std::string& example : footer.examples) add(wrappedCommand(example, columns_ - 2), "  ");
  return text;
}

std::string HelpFormatter::make_help(const CLI::App* command, std::string, CLI::AppFormatMode) const {
  std::string text;
  for (const std::string& line : wrapped(command->get_description(), columns_)) text += line + "\n";
  return text + "\n" + usage(*command, fullName(*command)) + commandGroups(*command) + arguments(*command) +
         footer(*command);
}

}  // namespace hushmode::cli
