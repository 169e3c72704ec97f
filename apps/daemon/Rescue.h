// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/core/Log.h"

#include <filesystem>
#include <string>

namespace hushmode::daemon {

struct RescueOptions {
  std::filesystem::path calendarFolder, dataFolder;  ///< As the daemon's own.
  bool onlyLook = false;                             ///< Changes nothing.
};

/// Puts back what a daemon that died has left changed on the phone, from the ledger; for when no daemon runs. Waits
/// until the phone's services have what they were sent.
///
/// Answers what was found and done, as one JSON object (docs/json/rescue-report.schema.json), with the reason under
/// "error" when it could not be tried. Runs the main context.
std::string rescueReport(const RescueOptions& options, const devices::LogSink& sink);

}  // namespace hushmode::daemon
