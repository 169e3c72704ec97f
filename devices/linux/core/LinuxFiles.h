// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/core/Folders.h"
#include "devices/shared/DiskFiles.h"

#include <optional>

namespace hushmode::devices {

/// The device's property-list files on a Linux phone: its preferences lie in the user's configuration folder, what Hush
/// Mode keeps for itself in the state folder. New files and folders are the user's alone.
class LinuxFiles final : public platform::PropertyListFiles {
 public:
  static constexpr const char* preferencesPrefix = "/var/mobile/Library/Preferences/";
  static constexpr const char* statePrefix = "/var/mobile/Library/Hushmode/";

  LinuxFiles(const Folders& folders, const DiskFiles::Diagnostics& diagnose);

  bool fileExists(std::string_view path) const override;
  std::optional<platform::Array> arrayWithContentsOfFile(std::string_view path) const override;
  std::optional<platform::Dictionary> dictionaryWithContentsOfFile(std::string_view path) const override;
  bool writeArrayToFileAtomically(const platform::Array& array, std::string_view path) override;

  /// Where a device path lies on the disk; none where it lies in neither of the folders.
  std::optional<std::filesystem::path> diskPath(std::string_view path) const { return filesOf(path).diskPath(path); }

 private:
  const DiskFiles& filesOf(std::string_view path) const {
    return path.starts_with(statePrefix) ? state_ : preferences_;
  }
  DiskFiles& filesOf(std::string_view path) { return path.starts_with(statePrefix) ? state_ : preferences_; }

  DiskFiles preferences_, state_;
};

}  // namespace hushmode::devices
