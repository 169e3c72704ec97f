// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/LinuxFiles.h"

namespace hushmode::devices {

using platform::Array;
using platform::Dictionary;

LinuxFiles::LinuxFiles(const Folders& folders, const DiskFiles::Diagnostics& diagnose)
    : preferences_(preferencesPrefix, folders.config, diagnose), state_(statePrefix, folders.state, diagnose) {}

bool LinuxFiles::fileExists(std::string_view path) const { return filesOf(path).fileExists(path); }

std::optional<Array> LinuxFiles::arrayWithContentsOfFile(std::string_view path) const {
  return filesOf(path).arrayWithContentsOfFile(path);
}

std::optional<Dictionary> LinuxFiles::dictionaryWithContentsOfFile(std::string_view path) const {
  return filesOf(path).dictionaryWithContentsOfFile(path);
}

bool LinuxFiles::writeArrayToFileAtomically(const Array& array, std::string_view path) {
  return filesOf(path).writeArrayToFileAtomically(array, path);
}

}  // namespace hushmode::devices
