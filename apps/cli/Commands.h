// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <CLI/CLI.hpp>
#include <functional>

namespace hushmode::cli {

/// Exit codes of all commands.
enum ExitCode : int {
  Done = 0,
  No = 1,          ///< The answer is no.
  WrongInput = 2,  ///< An option, a file, or a time that cannot be used; nothing was changed.
  NoService = 3,   ///< No daemon, or a service or a disk that did not do what was asked: nothing was changed, or
                   ///< nothing but what was to be printed is missing.
};

/// A command's work, to be run once its options are parsed; the result is the exit code.
using Command = std::function<int()>;

/// Adds a command to the program. `chosen` becomes its work when the command is given.
void addSimulateCommand(CLI::App& program, Command& chosen);
void addEventsCommand(CLI::App& program, Command& chosen);
void addProfileCommand(CLI::App& program, Command& chosen);
void addStatusCommands(CLI::App& program, Command& chosen);
void addQuietCommands(CLI::App& program, Command& chosen);
void addAgendaCommand(CLI::App& program, Command& chosen);
void addExplainCommand(CLI::App& program, Command& chosen);
void addDoctorCommand(CLI::App& program, Command& chosen);
void addHelpCommand(CLI::App& program, Command& chosen);
void addCompleteCommand(CLI::App& program, Command& chosen);
void addRescueCommand(CLI::App& program, Command& chosen);
void addExportCommand(CLI::App& program, Command& chosen);
void addImportCommand(CLI::App& program, Command& chosen);

}  // namespace hushmode::cli
