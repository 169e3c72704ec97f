// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/GuardedPropertyListFile.h"
#include "platform/Foundation.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// The device's property-list files on a real disk: what lies in one folder of the device lies in one folder here,
/// under the same names. Files outside of that folder do not exist.
///
/// Whatever cannot be read or written is told to the diagnostics in a line that names the file and the reason; a file
/// that cannot be read is told of once per content. An array file that cannot be read is never overwritten without a
/// copy beside it. For one thread.
class DiskFiles final : public platform::PropertyListFiles {
 public:
  using Diagnostics = std::function<void(const std::string& line)>;

  /// `devicePrefix` ends with "/", as in "/var/mobile/Library/Preferences/". `calls` must outlive the object.
  DiskFiles(std::string devicePrefix, std::filesystem::path folder, Diagnostics diagnose,
            FileCalls& calls = FileCalls::system());

  bool fileExists(std::string_view path) const override;
  std::optional<platform::Array> arrayWithContentsOfFile(std::string_view path) const override;
  std::optional<platform::Dictionary> dictionaryWithContentsOfFile(std::string_view path) const override;
  bool writeArrayToFileAtomically(const platform::Array& array, std::string_view path) override;

  /// Where a device path lies on the disk; none when it is not below the prefix, or would lead out of the folder.
  std::optional<std::filesystem::path> diskPath(std::string_view path) const;

 private:
  template <class T>
  std::optional<T> contentsOf(std::string_view path, const char* expectation) const;
  void tellOnce(const std::string& line) const;

  std::string devicePrefix_;
  std::filesystem::path folder_;
  Diagnostics diagnose_;
  FileCalls& calls_;
  std::map<std::string, std::unique_ptr<GuardedPropertyListFile>> guarded_;
  mutable std::string lastTold_;
};

}  // namespace hushmode::devices
