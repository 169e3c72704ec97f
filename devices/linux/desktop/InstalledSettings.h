// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <giomm/settings.h>
#include <initializer_list>
#include <string>

namespace hushmode::devices {

/// A key of a settings schema, and the type that its value must have, as GVariant writes it.
struct SettingsKey {
  std::string name, type;
};

/// The settings of a schema that belongs to another program. Null when the schema is not installed, or has one of the
/// keys not or with another type: GSettings would end the process that asks for them.
Glib::RefPtr<Gio::Settings> installedSettings(const std::string& schema, std::initializer_list<SettingsKey> keys);

}  // namespace hushmode::devices
