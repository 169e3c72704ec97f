// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/Places.h"

#include "apps/client/Daemon.h"
#include "apps/simulation/JsonReader.h"
#include "devices/linux/base/Variants.h"
#include "devices/linux/core/Folders.h"
#include "devices/shared/CalendarFolder.h"
#include "devices/words/Text.h"

namespace hushmode::cli {

using simulation::InputError;

namespace {

std::filesystem::path foundCalendarFolder() {
  if (const auto daemon = Daemon::running()) {
    if (const auto folder = devices::textOf(daemon->properties(), "CalendarFolder")) return *folder;
  }
  return devices::baseDirectory("XDG_DATA_HOME", ".local/share") / "hushmode" / "calendars";
}

}  // namespace

std::filesystem::path calendarFolder() {
  static const auto folder = foundCalendarFolder();
  return folder;
}

std::vector<KnownCalendar> knownCalendars() {
  std::vector<KnownCalendar> calendars;
  if (const auto daemon = Daemon::running()) {
    for (const auto& each : daemon->ask<bus::Dictionaries>("ListCalendars")) {
      const auto text = [&](const char* key) {
        return devices::valueOf<Glib::ustring>(each, key).value_or(Glib::ustring()).raw();
      };
      calendars.push_back({text("identifier"), text("title"), text("account"),
                           devices::valueOf<bool>(each, "writable").value_or(false)});
    }
    return calendars;
  }
  devices::CalendarFolder folder(calendarFolder(), {}, folderPrefix);
  folder.rescan();
  for (const auto& each : folder.calendars()) {
    calendars.push_back(
        {each.identifier, each.title, tr("calendar folder"), each.calendar->allowsContentModifications()});
  }
  return calendars;
}

std::optional<std::vector<KnownNetwork>> knownNetworks() {
  const auto daemon = Daemon::running();
  if (!daemon) return std::nullopt;
  std::vector<KnownNetwork> networks;
  for (const auto& each : daemon->ask<bus::Dictionaries>("ListNetworks")) {
    networks.push_back({devices::valueOf<Glib::ustring>(each, "name").value_or(Glib::ustring()).raw(),
                        devices::valueOf<bool>(each, "joined").value_or(false)});
  }
  return networks;
}

std::vector<std::string> calendarsNamed(const std::vector<std::string>& names,
                                        const std::vector<KnownCalendar>& calendars) {
  std::vector<std::string> identifiers;
  for (const std::string& name : names) {
    std::vector<const KnownCalendar*> found;
    std::vector<std::string> titles;
    for (const KnownCalendar& each : calendars) {
      if (each.identifier == name) found = {&each};
      if (each.identifier == name) break;
      if (each.title == name) found.push_back(&each);
      titles.push_back(each.title);
    }
    if (found.size() == 1) {
      identifiers.push_back(found.front()->identifier);
      continue;
    }
    if (found.size() > 1) {
      std::string several;
      for (const auto* each : found) several += (several.empty() ? "" : ", ") + each->identifier;
      throw InputError(tr("several calendars are called \"{0}\"; name one of {1}", name, several));
    }
    const std::string near = simulation::nearestOf(name, titles);
    throw InputError(near.empty() ? tr("no calendar is called \"{}\"; see hushmode calendars", name)
                                  : tr("no calendar is called \"{0}\"; did you mean \"{1}\"?", name, near));
  }
  return identifiers;
}

std::string calendarTitle(const std::string& identifier, const std::vector<KnownCalendar>& calendars) {
  for (const KnownCalendar& each : calendars) {
    if (each.identifier == identifier) return each.title;
  }
  return identifier;
}

}  // namespace hushmode::cli
