// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace hushmode::devices {

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
