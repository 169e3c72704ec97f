// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/FolderPrefix.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What the phone knows: calendars and networks, from the daemon while it runs; else the calendar folder alone.
namespace hushmode::cli {

using devices::folderPrefix;

struct KnownCalendar {
  std::string identifier, title, account;
  bool writable = false;
};

struct KnownNetwork {
  std::string name;
  bool joined = false;
};

std::vector<KnownCalendar> knownCalendars();
/// None without the daemon: nobody knows.
std::optional<std::vector<KnownNetwork>> knownNetworks();

/// Where calendars lie that belong to no account: the folder that the daemon reads; where none runs, the usual one.
/// Asked for once in a process.
std::filesystem::path calendarFolder();

/// The identifiers of calendars that people name by title or identifier. Throws simulation::InputError with the nearest
/// title, and for a title that several have, with their accounts.
std::vector<std::string> calendarsNamed(const std::vector<std::string>& names,
                                        const std::vector<KnownCalendar>& calendars);

/// The title of a calendar; its identifier when it is not known.
std::string calendarTitle(const std::string& identifier, const std::vector<KnownCalendar>& calendars);

}  // namespace hushmode::cli
