#include "apps/cli/Commands.h"
#include "apps/simulation/JsonReader.h"

#include <exception>
#include <iostream>

using namespace hushmode;

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  CLI::App program("Hush Mode: silences a phone by calendar, clock and network.", "hushmode");
  program.set_version_flag("--version", HUSHMODE_VERSION);
  program.require_subcommand(1);
  program.footer(
      "Exit codes: 0 done, 1 the output could not be written, 2 wrong input.\n"
      "\"hushmode COMMAND --help\" tells more of a command.");
  cli::Command chosen;
  cli::addSimulateCommand(program, chosen);
  cli::addEventsCommand(program, chosen);
  try {
    program.parse(argc, argv);
    const int code = chosen();
    std::cout.flush();
    if (!std::cout) {
      std::cerr << "hushmode: the output could not be written\n";
      return cli::OutputFailed;
    }
    return code;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program.exit(error);  // --help and --version are no mistakes.
    std::cerr << "hushmode: " << error.what() << "; see hushmode --help\n";
    return cli::WrongInput;
  } catch (const simulation::InputError& error) {
    std::cerr << "hushmode: " << error.what() << '\n';
    return cli::WrongInput;
  } catch (const std::exception& error) {
    std::cerr << "hushmode: unexpected: " << error.what() << '\n';
    return cli::OutputFailed;
  }
}
