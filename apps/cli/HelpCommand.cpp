// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode help: the same as --help; and all of it for programs, from which the manual and the completion are made.

#include "apps/cli/Commands.h"
#include "apps/client/Json.h"
#include "apps/simulation/JsonReader.h"
#include "apps/usage/Help.h"
#include "apps/usage/ValueKinds.h"
#include "devices/words/Text.h"
#include "host/ProfileCheck.h"

#include <iostream>
#include <memory>

namespace hushmode::cli {

using simulation::InputError;

namespace {

struct Options {
  std::vector<std::string> words;
  bool json = false;
};

Json jsonOf(const CLI::Option& argument) {
  using enum ValueKind::Source;
  const ValueKind kind = valueKindOf(argument);
  Json json = Json::object();
  if (argument.get_positional()) {
    json["name"] = argument.get_name(true);
    json["several"] = argument.get_expected_max() >= CLI::detail::expected_max_vector_size;
  } else {
    json["names"] = optionNames(argument);
  }
  json["help"] = argument.get_description();
  json["required"] = argument.get_required();
  if (kind.word.empty()) return json;
  Json value = {{"word", kind.word}};
  if (kind.source == Choices || !kind.choices.empty()) value["choices"] = kind.choices;
  if (kind.source == Names) value["names"] = kind.names;
  if (kind.source == Files) value["path"] = "file";
  if (kind.source == Folders) value["path"] = "folder";
  if (kind.list) value["list"] = true;
  if (kind.least && kind.most) value["range"] = {*kind.least, *kind.most};
  if (const auto without = defaultOf(argument)) value["default"] = *without;
  json["value"] = value;
  return json;
}

Json jsonOf(const CLI::App& command) {
  const Footer footer = footerOf(command);
  Json json = {{"name", fullName(command)},
               {"purpose", command.get_parent() ? command.get_group() : ""},
               {"help", command.get_description()},
               {"arguments", Json::array()},
               {"notes", footer.notes},
               {"examples", footer.examples},
               {"commands", Json::array()}};
  for (const CLI::Option* each : shownArguments(command)) json["arguments"].push_back(jsonOf(*each));
  for (const CLI::App* each : shownCommands(command)) json["commands"].push_back(jsonOf(*each));
  return json;
}

Json profileKeysJson() {
  Json keys = Json::array();
  for (const host::ProfileKey& each : host::profileKeys()) keys.push_back(std::string(each.name));
  return keys;
}

int help(const CLI::App& program, const Options& options) {
  const CLI::App* command = &program;
  for (const std::string& word : options.words) {
    const CLI::App* inner = nullptr;
    std::vector<std::string> known;
    for (const CLI::App* each : shownCommands(*command)) {
      known.push_back(each->get_name());
      if (each->get_name() == word) inner = each;
    }
    if (!inner) {
      const std::string near = simulation::nearestOf(word, known);
      throw InputError(near.empty() ? tr("\"{0}\" is no command; see {1} --help", word, fullName(*command))
                                    : tr("\"{0}\" is no command; did you mean \"{1}\"?", word, near));
    }
    command = inner;
  }
  if (!options.json) {
    // Not its own help(), which tells of the command that was given: this one.
    std::cout << command->get_formatter()->make_help(command, "", CLI::AppFormatMode::Normal);
    return Done;
  }
  Json json = jsonOf(*command);
  if (command == &program) json["profileKeys"] = profileKeysJson();
  std::cout << lineOf(json) << '\n';
  return Done;
}

}  // namespace

void addHelpCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("help", tr("What a command does, and how it is called"));
  command->add_option("COMMAND", options->words, tr("The command, in one word or two"))->type_name("COMMAND");
  command->add_flag("--json", options->json, tr("Print a JSON object, with all commands in it"));
  command->footer(tr("Example:\n  {}", "hushmode help profile edit"));
  command->final_callback(
      [options, &program, &chosen] { chosen = [options, &program] { return help(program, *options); }; });
}

}  // namespace hushmode::cli
