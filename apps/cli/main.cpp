#include "apps/cli/Commands.h"
#include "apps/cli/Daemon.h"
#include "apps/cli/Text.h"
#include "apps/simulation/JsonReader.h"

#include <clocale>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

using namespace hushmode;

namespace {

/// A first word that is no command, told with the nearest one.
void requireKnownCommand(const CLI::App& program, int argc, char** argv) {
  if (argc < 2 || argv[1][0] == '-') return;
  std::vector<std::string> known;
  for (const CLI::App* command : program.get_subcommands({})) {
    if (command->get_name() == argv[1]) return;
    known.push_back(command->get_name());
  }
  const std::string near = simulation::nearestOf(argv[1], known);
  throw simulation::InputError("\"" + std::string(argv[1]) + "\" is no command" +
                               (near.empty() ? "; see hushmode --help" : "; did you mean \"" + near + "\"?"));
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");  // Property lists and times are written with a point, whatever the language.
  ::bindtextdomain("hushmode", HUSHMODE_LOCALE_FOLDER);
  ::textdomain("hushmode");
  CLI::App program("Hush Mode: silences a phone by calendar, clock and network.", "hushmode");
  program.set_version_flag("--version", HUSHMODE_VERSION);
  program.require_subcommand(1);
  program.footer(
      "Exit codes: 0 done, 1 no, 2 wrong input, 3 no daemon or service.\n"
      "\"hushmode COMMAND --help\" tells more of a command.");
  cli::Command chosen;
  cli::addProfileCommand(program, chosen);
  cli::addStatusCommands(program, chosen);
  cli::addQuietCommands(program, chosen);
  cli::addAgendaCommand(program, chosen);
  cli::addRescueCommand(program, chosen);
  cli::addSimulateCommand(program, chosen);
  cli::addEventsCommand(program, chosen);
  try {
    requireKnownCommand(program, argc, argv);
    program.parse(argc, argv);
    const int code = chosen();
    std::cout.flush();
    if (!std::cout) {
      std::cerr << "hushmode: the output could not be written\n";
      return cli::No;
    }
    return code;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program.exit(error);  // --help and --version are no mistakes.
    std::cerr << "hushmode: " << error.what() << "; see hushmode --help\n";
    return cli::WrongInput;
  } catch (const simulation::InputError& error) {
    std::cerr << "hushmode: " << error.what() << '\n';
    return cli::WrongInput;
  } catch (const cli::ServiceError& error) {
    std::cerr << "hushmode: " << error.what() << '\n';
    return cli::NoService;
  } catch (const std::exception& error) {
    std::cerr << "hushmode: unexpected: " << error.what() << '\n';
    return cli::No;
  }
}
