// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListFileCalls.h"
#include "platform/PropertyList.h"

#include <functional>
#include <optional>
#include <string>

namespace hushmode::devices {

/// A file that holds an array and that somebody may have damaged: cut short, emptied, edited by hand, or written by a
/// program of the future. What cannot be read as an array is not lost with the next save: before the file is replaced,
/// a copy of it is kept beside it, as "<name>.unreadable-1", "-2" and so on, the first that is free.
///
/// For one thread. Another process's writes between the check and the replacement are not seen.
class GuardedPropertyListFile {
 public:
  /// `diagnose` gets one line that names both files whenever a kept one is about to be replaced. `calls` must outlive
  /// the object.
  GuardedPropertyListFile(std::string path, std::function<void(const std::string&)> diagnose,
                          FileCalls& calls = FileCalls::system());

  /// Replaces the file with `array` as PropertyListFile::write does, keeping what cannot be read. Returns the file and
  /// why it could not; none on success. When no copy could be kept, the file stays as it is.
  ///
  /// A copy with the same content that is already there is enough. Where `path` is a symbolic link, the copy is beside
  /// the file that it leads to.
  [[nodiscard]] std::optional<std::string> write(const platform::Array& array);

 private:
  std::optional<std::string> keepUnreadable();
  std::optional<std::string> keepCopy(const std::string& reason, const std::string* bytes);
  bool isCopy(const std::string& copy, const std::string& file, const std::string* bytes) const;

  std::string path_;
  std::function<void(const std::string&)> diagnose_;
  FileCalls& calls_;
  /// Bytes that are known to be an array: the usual file need not be parsed before each save.
  std::string knownGood_;
};

}  // namespace hushmode::devices
