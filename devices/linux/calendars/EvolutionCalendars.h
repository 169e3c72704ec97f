// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/shared/CalendarSet.h"
#include "devices/shared/CalendarSource.h"

#include <chrono>
#include <giomm/dbusconnection.h>
#include <memory>

namespace hushmode::devices {

/// What the calendars of Evolution Data Server are called in `Services`.
inline constexpr const char* kEvolutionServiceName = "calendar service";
/// Of its registry on the bus, with the interface that libecal 2.0 speaks.
inline constexpr const char* kEvolutionRegistryName = "org.gnome.evolution.dataserver.Sources5";

/// The enabled calendars of Evolution Data Server, which holds those of GNOME and Phosh. Their identifiers begin with
/// "evolution:".
///
/// There are none at first: a calendar appears when the service has told its events, and stays as it was last known
/// while the service is away. Where the service is not installed, nothing else happens; when it comes, it is used.
///
/// `connection` is the session bus, null where there is none; the service's own library connects to the bus that
/// DBUS_SESSION_BUS_ADDRESS names, which must be the same. `diagnostics` takes a line for each event that cannot be
/// used. A service that does not answer within `answerLimit` is given up and tried again later. For the thread of the
/// main loop.
///
/// This is all that the rest of the program sees of it, so that the service's library need not be loaded without it:
/// EvolutionModule.h.
std::unique_ptr<CalendarSource> makeEvolutionCalendars(
    const Glib::RefPtr<Gio::DBus::Connection>& connection, Services& services,
    CalendarSet::Diagnostics diagnostics = {}, std::chrono::milliseconds answerLimit = std::chrono::seconds(30));

}  // namespace hushmode::devices
