// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace hushmode::cli {

/// What is wrong with a command line that the parser refused, in one line: which command, what was expected, and the
/// nearest valid choice.
std::string wrongUse(const CLI::App& program, const CLI::ParseError& error);

/// The same of a command that there is not, which cannot be helped with either; empty when all that were named exist.
std::string wrongCommand(const CLI::App& program);

}  // namespace hushmode::cli
