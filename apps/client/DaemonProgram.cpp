// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/DaemonProgram.h"

#include "apps/client/Daemon.h"
#include "devices/words/Text.h"

#include <filesystem>
#include <glibmm/spawn.h>

namespace hushmode::cli {

namespace {

std::string daemonProgram() {
  std::error_code error;
  const auto here = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const auto installed = (here / HUSHMODE_DAEMON_FROM_HERE).lexically_normal();
  for (const auto& each : {installed, (here / "../daemon/hushmoded").lexically_normal()}) {
    if (std::filesystem::is_regular_file(each, error)) return each.string();
  }
  throw ServiceError(tr("the daemon's program is not at {}; install it with this one", installed.string()));
}

}  // namespace

std::string outputOfDaemonProgram(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {daemonProgram()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::string output;
  int status = 0;
  try {
    Glib::spawn_sync({}, words, Glib::SpawnFlags::DEFAULT, {}, &output, nullptr, &status);
  } catch (const Glib::Error& error) {
    throw ServiceError(tr("{0} cannot be run: {1}", words.front(), std::string(error.what())));
  }
  if (status != 0) throw ServiceError(tr("{} ended with an error", words.front()));
  return output;
}

}  // namespace hushmode::cli
