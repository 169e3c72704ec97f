// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>

namespace hushmode::devices {

/// The system calls that reading and replacing a file take; a test makes each of them fail. Each is the POSIX call of
/// its name, with its result and `errno`; none is interrupted.
class FileCalls {
 public:
  virtual ~FileCalls() = default;
  /// The calls themselves.
  static FileCalls& system();

  virtual int open(const char* path, int flags, mode_t mode);
  virtual ssize_t read(int file, void* bytes, std::size_t count);
  virtual ssize_t write(int file, const void* bytes, std::size_t count);
  virtual int fstat(int file, struct stat* status);
  virtual int fchown(int file, uid_t owner, gid_t group);
  virtual int fchmod(int file, mode_t mode);
  virtual int fsync(int file);
  virtual int close(int file);
  virtual int link(const char* existing, const char* path);
  virtual int rename(const char* from, const char* to);
  virtual int unlink(const char* path);
};

}  // namespace hushmode::devices
