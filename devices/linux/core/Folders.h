// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace hushmode::devices {

/// The user's folder that an XDG variable names ("XDG_DATA_HOME"), by an absolute path as the standard says; else the
/// one below HOME (".local/share").
std::filesystem::path baseDirectory(const char* variable, const char* belowHome);

/// Makes the folder for the user alone, and missing ones around it, where it is not there yet. Throws
/// std::runtime_error with the path and the reason.
void makePrivateFolder(const std::filesystem::path& folder);

/// Where Hush Mode keeps its files, as the XDG base directories have it. None of them needs to exist.
struct Folders {
  std::filesystem::path config;  ///< The user's: profiles and settings.
  std::filesystem::path state;   ///< The program's own: saved volumes, ledger.
  std::filesystem::path data;    ///< What was installed: string tables. Empty where nothing was.

  /// The user's folders by XDG_CONFIG_HOME and XDG_STATE_HOME (absolute paths only, as the standard says; else those
  /// below HOME). `data` stays empty.
  static Folders ofUser();
};

}  // namespace hushmode::devices
