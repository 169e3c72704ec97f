// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/Folders.h"

#include <cstdlib>
#include <glibmm/miscutils.h>

namespace hushmode::devices {

namespace {

std::filesystem::path baseDirectory(const char* variable, const char* belowHome) {
  const char* value = std::getenv(variable);
  if (value && *value == '/') return value;
  return std::filesystem::path(Glib::get_home_dir()) / belowHome;
}

}  // namespace

Folders Folders::ofUser() {
  return {baseDirectory("XDG_CONFIG_HOME", ".config") / "hushmode",
          baseDirectory("XDG_STATE_HOME", ".local/state") / "hushmode",
          {}};
}

}  // namespace hushmode::devices
