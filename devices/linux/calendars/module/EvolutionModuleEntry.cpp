// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionModuleEntry.h"

#include "devices/linux/calendars/EvolutionCalendars.h"

#include <utility>

extern "C" __attribute__((visibility("default"))) hushmode::devices::EvolutionEntry hushmode_evolution_calendars;

hushmode::devices::CalendarSource* hushmode_evolution_calendars(
    const Glib::RefPtr<Gio::DBus::Connection>& connection, hushmode::devices::Services& services,
    hushmode::devices::CalendarSet::Diagnostics& diagnostics) {
  return hushmode::devices::makeEvolutionCalendars(connection, services, std::move(diagnostics)).release();
}
