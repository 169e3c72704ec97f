#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace hushmode::cli {

/// Exit codes of all commands.
enum ExitCode : int {
  Done = 0,
  OutputFailed = 1,  ///< What was to be printed could not be written.
  WrongInput = 2,    ///< An option, a file, or a time that cannot be used; nothing was written.
};

/// A command's work, to be run once its options are parsed; the result is the exit code.
using Command = std::function<int()>;

/// Adds a command to the program. `chosen` becomes its work when the command is given.
void addSimulateCommand(CLI::App& program, Command& chosen);
void addEventsCommand(CLI::App& program, Command& chosen);

}  // namespace hushmode::cli
