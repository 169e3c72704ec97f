// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/shared/CalendarSet.h"
#include "devices/shared/CalendarSource.h"

#include <giomm/dbusconnection.h>

namespace hushmode::devices {

/// The one symbol of the module. Program and module are built and installed together: what passes between them is C++.
inline constexpr const char* kEvolutionEntry = "hushmode_evolution_calendars";
/// The calendars are the caller's, to be deleted.
using EvolutionEntry = CalendarSource*(const Glib::RefPtr<Gio::DBus::Connection>& connection, Services& services,
                                       CalendarSet::Diagnostics& diagnostics);

}  // namespace hushmode::devices
