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
/// Answers one JSON object: "values" with what was not as it should be, each as docs/json/rescue.schema.json has it;
/// "taken", whether the sound server has what it was sent; "saved", whether the disk knows that nothing is left to put
/// back. When it could not be tried, only "error" with the reason. Runs the main context.
std::string rescueReport(const RescueOptions& options, const devices::LogSink& sink);

}  // namespace hushmode::daemon
