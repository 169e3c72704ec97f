// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <stdexcept>

namespace hushmode::devices {

/// The lock of whoever may write the user's profiles and put back what they changed: the daemon while it runs, and a
/// program that does such a thing while it does not. It ends with the process, however that ends.
class WriterLock {
 public:
  /// Another process holds the lock.
  class Held : public std::runtime_error {
   public:
    using std::runtime_error::runtime_error;
  };

  /// Makes the state folder, for the user alone, where it is missing. Does not wait. Throws Held with the lock's path,
  /// and std::runtime_error with the path and the reason when there can be no lock.
  explicit WriterLock(const std::filesystem::path& stateFolder);
  ~WriterLock();
  WriterLock(const WriterLock&) = delete;
  WriterLock& operator=(const WriterLock&) = delete;

 private:
  int descriptor_;
};

}  // namespace hushmode::devices
