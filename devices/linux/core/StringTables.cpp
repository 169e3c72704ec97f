// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/StringTables.h"

#include "devices/shared/PropertyListFile.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <glib.h>
#include <utility>

namespace hushmode::devices {

using platform::Dictionary;

StringTables::StringTables(std::string identifier, std::filesystem::path folder, std::vector<std::string> languages,
                           Diagnostics diagnose)
    : identifier_(std::move(identifier)),
      folder_(std::move(folder)),
      languages_(std::move(languages)),
      diagnose_(std::move(diagnose)) {
  languages_.emplace_back("en");
}

std::vector<std::string> StringTables::preferredLanguages() {
  std::vector<std::string> languages;
  for (const char* const* name = g_get_language_names_with_category("LC_MESSAGES"); *name; ++name) {
    if (std::string_view(*name) != "C") languages.emplace_back(*name);
  }
  return languages;
}

const std::vector<Dictionary>& StringTables::tables() const {
  if (tables_) return *tables_;
  tables_.emplace();
  if (folder_.empty()) return *tables_;
  for (const std::string& language : languages_) {
    // A language comes from outside: it must not lead out of the folder.
    if (language.find('/') != std::string::npos) continue;
    const auto path = folder_ / (language + ".lproj") / "Localizable.strings";
    auto content = PropertyListFile(path.string()).read();
    if (content.state == PropertyListFileContent::State::Missing) continue;
    Dictionary* table = content.value ? content.value->as<Dictionary>() : nullptr;
    if (table) {
      tables_->push_back(std::move(*table));
    } else if (diagnose_) {
      diagnose_(content.error.empty() ? tr("{}: top level: expected a dictionary", path.string()) : content.error);
    }
  }
  return *tables_;
}

std::string StringTables::localizedStringForKey(std::string_view key, std::optional<std::string_view> value) const {
  for (const Dictionary& table : tables()) {
    const platform::Value* entry = table.find(key);
    if (const auto* text = entry ? entry->as<std::string>() : nullptr) return *text;
  }
  return std::string(value && !value->empty() ? *value : key);
}

}  // namespace hushmode::devices
