// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/Folders.h"

#include "devices/words/Text.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <glibmm/miscutils.h>
#include <stdexcept>
#include <sys/stat.h>

namespace hushmode::devices {

std::filesystem::path baseDirectory(const char* variable, const char* belowHome) {
  const char* value = std::getenv(variable);
  if (value && *value == '/') return value;
  return std::filesystem::path(Glib::get_home_dir()) / belowHome;
}

void makePrivateFolder(const std::filesystem::path& folder) {
  std::error_code ignored;  // The next call says what is wrong.
  std::filesystem::create_directories(folder.parent_path(), ignored);
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
    throw std::runtime_error(tr("{0} cannot be made: {1}", folder.string(), std::strerror(errno)));
  }
}

Folders Folders::ofUser() {
  return {baseDirectory("XDG_CONFIG_HOME", ".config") / "hushmode",
          baseDirectory("XDG_STATE_HOME", ".local/state") / "hushmode",
          {}};
}

}  // namespace hushmode::devices
