// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/WriterLock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hushmode::devices {

WriterLock::WriterLock(const std::filesystem::path& stateFolder) {
  const auto failure = [](const std::filesystem::path& path) {
    return std::runtime_error(path.string() + ": " + std::strerror(errno));
  };
  std::error_code ignored;  // The next call says what is wrong.
  std::filesystem::create_directories(stateFolder.parent_path(), ignored);
  if (::mkdir(stateFolder.c_str(), 0700) != 0 && errno != EEXIST) throw failure(stateFolder);
  const auto path = stateFolder / "lock";
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor_ < 0) throw failure(path);
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  ::close(descriptor_);
  throw Held(path.string());
}

WriterLock::~WriterLock() { ::close(descriptor_); }

}  // namespace hushmode::devices
