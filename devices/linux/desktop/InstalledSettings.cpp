// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/InstalledSettings.h"

#include <algorithm>
#include <giomm/settingsschema.h>
#include <giomm/settingsschemakey.h>
#include <giomm/settingsschemasource.h>

namespace hushmode::devices {

Glib::RefPtr<Gio::Settings> installedSettings(const std::string& schema, std::initializer_list<SettingsKey> keys) {
  const auto source = Gio::SettingsSchemaSource::get_default();  // Null where no schema at all is installed.
  const auto found = source ? source->lookup(schema, true) : nullptr;
  if (!found) return {};
  const bool complete = std::all_of(keys.begin(), keys.end(), [&](const SettingsKey& key) {
    return found->has_key(key.name) && found->get_key(key.name)->get_value_type().get_string() == key.type;
  });
  return complete ? Gio::Settings::create(schema) : nullptr;
}

}  // namespace hushmode::devices
