// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode on, off, status, log, calendars, networks: what Hush Mode does now, and has done.

#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/client/Json.h"
#include "apps/client/Places.h"
#include "apps/client/ProfileStore.h"
#include "apps/client/UserTime.h"
#include "apps/profiles/MomentText.h"
#include "apps/simulation/TimeText.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using devices::valueOf;
using platform::Date;

namespace {

struct Options {
  bool json = false;
  unsigned limit = 20;
};

std::string text(const bus::Dictionary& each, const char* key) {
  return valueOf<Glib::ustring>(each, key).value_or(Glib::ustring()).raw();
}

std::optional<Date> date(const bus::Dictionary& each, const char* key) {
  const auto seconds = valueOf<double>(each, key);
  return seconds ? std::optional(Date(*seconds)) : std::nullopt;
}

int setEnabled(bool enabled) {
  const auto store = ProfileStore::open();
  store->setEnabled(enabled);
  if (enabled) {
    std::cout << tr("Hush Mode is on.") << '\n';
    tellUnlessLive(*store, std::cout);
  } else if (store->isLive()) {
    std::cout << tr("Hush Mode is off; within some seconds everything is as it was.") << '\n';
  } else {
    std::cout << tr("Hush Mode is off. What a daemon that died has left quiet comes back with: hushmode rescue")
              << '\n';
  }
  return Done;
}

Json jsonOf(const Glib::VariantBase& value, const devices::TimeZone& zone);

Json jsonOf(const bus::Dictionary& each, const devices::TimeZone& zone) {
  Json json = Json::object();
  for (const auto& [key, value] : each) {
    const auto moment = date(each, key.c_str());
    json[key.raw()] = moment ? Json(simulation::isoTime(*moment, zone)) : jsonOf(value, zone);
  }
  return json;
}

Json jsonOf(const Glib::VariantBase& value, const devices::TimeZone& zone) {
  if (const auto flag = valueOf<bool>(value)) return *flag;
  if (const auto number = valueOf<gint64>(value)) return *number;
  if (const auto number = valueOf<guint32>(value)) return *number;
  if (const auto string = valueOf<Glib::ustring>(value)) return string->raw();
  if (const auto texts = valueOf<std::vector<Glib::ustring>>(value)) {
    Json list = Json::array();
    for (const auto& each : *texts) list.push_back(each.raw());
    return list;
  }
  if (const auto entries = valueOf<bus::Dictionaries>(value)) {
    Json list = Json::array();
    for (const auto& each : *entries) list.push_back(jsonOf(each, zone));
    return list;
  }
  if (const auto states = valueOf<bus::ServiceStates>(value)) {
    Json services = Json::object();
    for (const auto& [name, state] : *states) {
      services[name.raw()] = {{"works", std::get<0>(state)}, {"detail", std::get<1>(state).raw()}};
    }
    return services;
  }
  return nullptr;
}

/// The host looks at the phone when the next profile is to switch, or a second later where that profile has a wake-up
/// of its own, and else at midnight. A profile's wake-up alone can be one of an event that is gone. None for midnight.
std::optional<Date> nextSwitch(const bus::Dictionaries& armed, const devices::TimeZone& zone) {
  const auto look =
      std::find_if(armed.begin(), armed.end(), [](const auto& each) { return !each.contains("profile"); });
  const auto looksAt = look == armed.end() ? std::nullopt : date(*look, "date");
  if (!looksAt || *looksAt == simulation::beginningOfLocalDay(*looksAt, zone)) return std::nullopt;
  for (const auto& each : armed) {
    const auto wakesAt = date(each, "date");
    if (wakesAt && *wakesAt <= *looksAt && *looksAt <= wakesAt->addingSeconds(1.5)) return wakesAt;
  }
  return looksAt;
}

int status(const Options& options) {
  const auto properties = Daemon::required().properties();
  const auto zone = userZone();
  if (options.json) {
    Json json = Json::object();
    for (const auto& [name, value] : properties) json[name.raw()] = jsonOf(value, *zone);
    std::cout << lineOf(json) << '\n';
    return Done;
  }
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  if (!valueOf<bool>(properties, "Enabled").value_or(false)) {
    std::cout << terminal.styled(tr("Hush Mode is off."), Style::Yellow) << ' ' << tr("Switch it on with: hushmode on")
              << '\n';
    return Done;
  }
  const auto applied = valueOf<bus::Dictionaries>(properties, "Applied").value_or(bus::Dictionaries());
  if (applied.empty()) std::cout << tr("Nothing is quiet now.") << '\n';
  for (const auto& each : applied) {
    const std::string title = terminal.styled(harmless(text(each, "title")), Style::Bold);
    const std::string reason = harmless(bus::reasonText(each));
    const auto until = date(each, "until");
    std::cout << (until ? tr("{0} is on for {1}, until {2}.", title, reason, momentText(*until, wallClock(), *zone))
                        : tr("{0} is on for {1}.", title, reason))
              << '\n';
  }
  if (const auto next =
          nextSwitch(valueOf<bus::Dictionaries>(properties, "Armed").value_or(bus::Dictionaries()), *zone)) {
    std::cout << tr("The next switch is planned for {}.", momentText(*next, wallClock(), *zone)) << '\n';
  } else {
    std::cout << tr("No more switches are planned for today.") << '\n';
  }
  for (const auto& [name, state] : valueOf<bus::ServiceStates>(properties, "Services").value_or(bus::ServiceStates())) {
    const auto& [works, detail] = state;
    if (!works) {
      std::cout << terminal.styled(tr("{0} rests: {1}", serviceText(name.raw()), harmless(detail.raw())), Style::Yellow)
                << '\n';
    }
  }
  return Done;
}

int log(const Options& options) {
  const auto switches =
      Daemon::required().ask<bus::Dictionaries>("RecentSwitches", devices::argumentsOf(guint32(options.limit)));
  const auto zone = userZone();
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  std::string day;
  for (const auto& each : switches) {
    if (options.json) {
      std::cout << lineOf(jsonOf(each, *zone)) << '\n';
      continue;
    }
    const Date at = date(each, "date").value_or(Date(0));
    const std::string heading = simulation::dayHeading(at, *zone);
    if (heading != day) std::cout << (day.empty() ? "" : "\n") << terminal.styled(heading, Style::Bold) << '\n';
    day = heading;
    const bool on = valueOf<bool>(each, "on").value_or(false);
    std::cout << "  " << simulation::clockTime(at, *zone) << "  " << harmless(text(each, "profile")) << "  "
              << terminal.styled(on ? tr("on") : tr("off"), on ? Style::Green : Style::Dim) << "  "
              << harmless(bus::reasonText(each)) << "  " << terminal.styled(text(each, "change"), Style::Dim) << '\n';
  }
  if (switches.empty() && !options.json) std::cout << tr("Nothing was switched since the daemon started.") << '\n';
  return Done;
}

int calendars(const Options& options) {
  const auto known = knownCalendars();
  std::size_t columns = 0;
  for (const KnownCalendar& each : known) columns = std::max(columns, columnsOf(harmless(each.title)));
  for (const KnownCalendar& each : known) {
    if (options.json) {
      std::cout << lineOf({{"identifier", each.identifier},
                           {"title", each.title},
                           {"account", each.account},
                           {"writable", each.writable}})
                << '\n';
    } else {
      std::cout << padded(harmless(each.title), columns) << "  " << harmless(each.account)
                << (each.writable ? "" : tr(" (read only)")) << '\n';
    }
  }
  if (options.json) return Done;
  if (known.empty()) {
    std::cout << tr("There are no calendars. Put iCalendar files into {}", (calendarFolder() / "NAME").string())
              << '\n';
  }
  if (!Daemon::running()) {
    std::cout << tr("Calendars of accounts are not listed: the daemon knows them, and does not run.") << '\n';
  }
  return Done;
}

int networks(const Options& options) {
  const auto known = knownNetworks();
  if (!known) Daemon::required();
  for (const KnownNetwork& each : *known) {
    if (options.json) {
      std::cout << lineOf({{"name", each.name}, {"joined", each.joined}}) << '\n';
    } else {
      std::cout << harmless(each.name) << (each.joined ? tr("  (joined now)") : "") << '\n';
    }
  }
  if (known->empty() && !options.json) std::cout << tr("The phone knows no network.") << '\n';
  return Done;
}

}  // namespace

void addStatusCommands(CLI::App& program, Command& chosen) {
  const auto add = [&](const char* name, const std::string& help, auto work) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = program.add_subcommand(name, help);
    command->footer(tr("Example:\n  {}", std::string("hushmode ") + name));
    command->final_callback([options, work, &chosen] { chosen = [options, work] { return work(*options); }; });
    return std::pair(command, options);
  };
  const auto withJson = [](const auto& made) {
    made.first->add_flag("--json", made.second->json, tr("Print JSON"));
    return made;
  };
  add("on", tr("Switch Hush Mode on"), [](const Options&) { return setEnabled(true); });
  add("off", tr("Switch Hush Mode off; what is quiet comes back at once"),
      [](const Options&) { return setEnabled(false); });
  withJson(add("status", tr("What is quiet now, for what, until when; what comes next; what does not work"), status));
  const auto logging = withJson(add("log", tr("The recent switches, with their reasons"), log));
  logging.first->add_option("--limit", logging.second->limit, tr("How many at most; 0 for all that are kept"));
  withJson(add("calendars", tr("The calendars that profiles can follow"), calendars));
  withJson(add("networks", tr("The WiFi networks that the phone knows"), networks));
}

}  // namespace hushmode::cli
