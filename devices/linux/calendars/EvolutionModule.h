// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/shared/CalendarSet.h"
#include "devices/shared/CalendarSource.h"

#include <giomm/dbusconnection.h>
#include <memory>

namespace hushmode::devices {

/// The file of the module, found along the run path of the program.
inline constexpr const char* kEvolutionModule = "hushmode-evolution.so";

/// The same as `makeEvolutionCalendars`, for programs that are to be small: what speaks with Evolution Data Server is a
/// module, loaded once the bus knows that service. Its libraries are as large as all others together.
std::unique_ptr<CalendarSource> makeEvolutionCalendarsFromModule(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                                                                 Services& services,
                                                                 CalendarSet::Diagnostics diagnostics = {});

}  // namespace hushmode::devices
