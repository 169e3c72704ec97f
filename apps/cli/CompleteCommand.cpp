// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode complete: names for the shell's completion, one a line. It is asked at each press of a key, so it is quick,
// and silent about what does not work.

#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/client/KnownEvents.h"
#include "apps/client/Places.h"
#include "apps/client/ProfileStore.h"
#include "apps/client/UserTime.h"
#include "apps/profiles/ToneNames.h"
#include "apps/simulation/ZoneNames.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace hushmode::cli {

namespace {

std::vector<std::string> profileTitles() {
  std::vector<std::string> titles;
  for (const platform::Dictionary& each : ProfileStore::open()->list()) {
    if (const auto title = textMeaning(each.find("title"))) titles.push_back(*title);
  }
  return titles;
}

std::vector<KnownCalendar> inFiles() {
  const platform::Date now = wallClock();
  return knownEvents(now, now, *userZone(), [](const std::string&) {}).calendars;
}

/// Identifiers stand for titles that several calendars have.
std::vector<std::string> calendarNames() {
  // Without the daemon by way of the events: what large files hold is remembered there.
  const auto calendars = Daemon::running() ? knownCalendars() : inFiles();
  std::vector<std::string> names;
  for (const KnownCalendar& each : calendars) {
    const auto called = std::count_if(calendars.begin(), calendars.end(),
                                      [&](const KnownCalendar& other) { return other.title == each.title; });
    names.push_back(called == 1 ? each.title : each.identifier);
  }
  return names;
}

std::vector<std::string> networkNames() {
  std::vector<std::string> names;
  for (const KnownNetwork& each : knownNetworks().value_or(std::vector<KnownNetwork>())) names.push_back(each.name);
  return names;
}

const std::vector<std::pair<std::string, std::vector<std::string> (*)()>> kinds = {{"profiles", profileTitles},
                                                                                   {"calendars", calendarNames},
                                                                                   {"networks", networkNames},
                                                                                   {"zones", simulation::zoneNames},
                                                                                   {"tones", toneNames}};

int complete(const std::string& asked) {
  for (const auto& [kind, names] : kinds) {
    if (kind != asked) continue;
    try {
      for (const std::string& name : names()) {
        // A name with control characters can be no line, and nobody could type it.
        const bool isLine =
            std::none_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; });
        if (isLine && !name.empty()) std::cout << name << '\n';
      }
      return Done;
    } catch (const std::exception&) {
      return No;  // The command that is being typed will say why.
    }
  }
  throw std::logic_error("names of no kind");
}

}  // namespace

void addCompleteCommand(CLI::App& program, Command& chosen) {
  const auto asked = std::make_shared<std::string>();
  CLI::App* command = program.add_subcommand("complete", tr("Names for the shell's completion"));
  command->group("");  // Hidden: it is no command for people.
  command->add_option("KIND", *asked, tr("Which names"))
      ->required()
      ->check(CLI::IsMember({"profiles", "calendars", "networks", "zones", "tones"}))
      ->type_name("profiles|calendars|networks|zones|tones");
  command->final_callback([asked, &chosen] { chosen = [asked] { return complete(*asked); }; });
}

}  // namespace hushmode::cli
