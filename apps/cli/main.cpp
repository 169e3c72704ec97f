// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/simulation/JsonReader.h"
#include "apps/usage/Help.h"
#include "apps/usage/WrongUse.h"
#include "apps/words/Language.h"
#include "devices/words/Text.h"

#include <exception>
#include <iostream>
#include <string>
#include <unistd.h>

using namespace hushmode;

namespace {

/// Adds commands of one purpose; those that have said one of their own keep it.
template <class... Add>
void addCommands(CLI::App& program, cli::Command& chosen, const std::string& purpose, Add... add) {
  (add(program, chosen), ...);
  for (CLI::App* each : program.get_subcommands({})) {
    if (each->get_group() == "Subcommands") each->group(purpose);
  }
}

void addAllCommands(CLI::App& program, cli::Command& chosen) {
  addCommands(program, chosen, tr("Profiles"), cli::addProfileCommand, cli::addExportCommand, cli::addImportCommand);
  addCommands(program, chosen, tr("Now"), cli::addStatusCommands, cli::addQuietCommands, cli::addRescueCommand);
  addCommands(program, chosen, tr("What comes, and why"), cli::addAgendaCommand, cli::addExplainCommand,
              cli::addDoctorCommand);
  addCommands(program, chosen, tr("Trying it out"), cli::addSimulateCommand, cli::addEventsCommand);
  addCommands(program, chosen, tr("Help"), cli::addHelpCommand, cli::addCompleteCommand);
}

int run(CLI::App& program, const cli::Command& chosen, int argc, char** argv) {
  try {
    program.parse(argc, argv);
    return chosen();
  } catch (const CLI::ParseError& error) {
    const bool isMistake = error.get_exit_code() != 0;  // --help and --version are none, but for help with nothing.
    const std::string mistake = isMistake ? cli::wrongUse(program, error) : cli::wrongCommand(program);
    if (mistake.empty()) return program.exit(error);
    cli::complain(mistake);
    return cli::WrongInput;
  } catch (const simulation::InputError& error) {
    cli::complain(error.what());
    return cli::WrongInput;
  } catch (const cli::ServiceError& error) {
    cli::complain(error.what());
    return cli::NoService;
  } catch (const std::exception& error) {
    cli::complain(tr("unexpected: {}", error.what()));
    return cli::No;
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  useLanguageOfEnvironment();
  CLI::App program(tr("Hush Mode: silences a phone by calendar, clock and network."), "hushmode");
  program.formatter(std::make_shared<cli::HelpFormatter>(cli::helpColumns(), cli::Terminal::of(STDOUT_FILENO)));
  program.option_defaults()->always_capture_default()->disable_flag_override();  // "--json=5" is a slip.
  program.set_help_flag("-h,--help", tr("Print this help"));
  program.set_version_flag("--version", HUSHMODE_VERSION, tr("Print the version"));
  program.require_subcommand(1);
  program.footer(
      tr("Exit codes: 0 done, 1 no, 2 wrong input, 3 no daemon, or a service or disk that fails.\n\n"
         "\"hushmode COMMAND --help\" tells more of a command.\n\n"
         "Examples:\n"
         "  hushmode profile add Work --window 08:00-17:00 --ringtone 5%\n"
         "  hushmode quiet 90m\n"
         "  hushmode status"));
  cli::Command chosen;
  addAllCommands(program, chosen);
  const int code = run(program, chosen, argc, argv);
  std::cout.flush();
  if (!std::cout) {
    cli::complain(tr("the output could not be written"));
    return cli::NoService;
  }
  return code;
}
