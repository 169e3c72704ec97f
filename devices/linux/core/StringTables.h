// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Foundation.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// A bundle that is a folder with a string table for each language: "de.lproj/Localizable.strings", a property-list
/// dictionary of texts by their keys. Tables are read when first asked for.
class StringTables final : public platform::Bundle {
 public:
  using Diagnostics = std::function<void(const std::string& line)>;

  /// `languages`: locale names, the preferred first, as `preferredLanguages` gives them; English comes last by itself.
  /// An empty `folder` has no tables. `diagnose` gets a line for a table that is there but cannot be read; it counts as
  /// empty.
  StringTables(std::string identifier, std::filesystem::path folder, std::vector<std::string> languages,
               Diagnostics diagnose);

  /// The text of the first language that has one.
  std::string localizedStringForKey(std::string_view key, std::optional<std::string_view> value) const override;
  std::string bundleIdentifier() const override { return identifier_; }

  /// The user's, by the variables LANGUAGE, LC_ALL, LC_MESSAGES and LANG: "de_AT", "de", ...
  static std::vector<std::string> preferredLanguages();

 private:
  const std::vector<platform::Dictionary>& tables() const;

  std::string identifier_;
  std::filesystem::path folder_;
  std::vector<std::string> languages_;
  Diagnostics diagnose_;
  mutable std::optional<std::vector<platform::Dictionary>> tables_;
};

}  // namespace hushmode::devices
