// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace hushmode::cli {

/// Runs the daemon's program, which lies where it was installed or built with this one, and answers what it prints on
/// standard output. Throws ServiceError when it is not there or ends with an error.
std::string outputOfDaemonProgram(const std::vector<std::string>& arguments);

}  // namespace hushmode::cli
