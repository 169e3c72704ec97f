// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListFileCalls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace hushmode::devices {

namespace {

template <class Call>
auto uninterrupted(Call call) {
  while (true) {
    const auto result = call();
    if (result != -1 || errno != EINTR) return result;
  }
}

}  // namespace

FileCalls& FileCalls::system() {
  static FileCalls calls;
  return calls;
}

int FileCalls::open(const char* path, int flags, mode_t mode) {
  return uninterrupted([&] { return ::open(path, flags, mode); });
}
ssize_t FileCalls::read(int file, void* bytes, std::size_t count) {
  return uninterrupted([&] { return ::read(file, bytes, count); });
}
ssize_t FileCalls::write(int file, const void* bytes, std::size_t count) {
  return uninterrupted([&] { return ::write(file, bytes, count); });
}
int FileCalls::fstat(int file, struct stat* status) { return ::fstat(file, status); }
int FileCalls::fchown(int file, uid_t owner, gid_t group) { return ::fchown(file, owner, group); }
int FileCalls::fchmod(int file, mode_t mode) { return ::fchmod(file, mode); }
int FileCalls::fsync(int file) {
  return uninterrupted([&] { return ::fsync(file); });
}
// Linux closes the file even when it says that it was interrupted.
int FileCalls::close(int file) { return ::close(file); }
int FileCalls::link(const char* existing, const char* path) { return ::link(existing, path); }
int FileCalls::rename(const char* from, const char* to) { return ::rename(from, to); }
int FileCalls::unlink(const char* path) { return ::unlink(path); }

}  // namespace hushmode::devices
