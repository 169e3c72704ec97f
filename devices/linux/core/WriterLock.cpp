// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/WriterLock.h"

#include "devices/linux/core/Folders.h"
#include "devices/words/Text.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace hushmode::devices {

WriterLock::WriterLock(const std::filesystem::path& stateFolder) {
  makePrivateFolder(stateFolder);
  const auto path = stateFolder / "lock";
  descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor_ < 0) throw std::runtime_error(tr("{0} cannot be opened: {1}", path.string(), std::strerror(errno)));
  if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
  ::close(descriptor_);
  throw Held(path.string());
}

WriterLock::~WriterLock() { ::close(descriptor_); }

}  // namespace hushmode::devices
