// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode doctor: what does not work on this phone, and what is wrong with the profiles, each with a remedy.

#include "apps/advice/ProfileLint.h"
#include "apps/advice/ServiceRemedies.h"
#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/client/Forecast.h"
#include "apps/client/Json.h"
#include "apps/client/ProfileStore.h"
#include "apps/client/UserTime.h"
#include "apps/simulation/JsonReader.h"
#include "apps/simulation/TimeText.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using devices::valueOf;
using platform::Date;
using enum Severity;

namespace {

struct Options {
  bool json = false;
};

constexpr int forecastDays = 31;
/// Of packaging/com.quorvel.Hushmode1.xml, as this program was written for it.
constexpr guint32 interfaceVersion = 3;

enum class Area { Daemon, Service, Calendar, Profile };

struct Line {
  Area area = Area::Daemon;
  std::string service;  ///< Its name, in the area of services.
  Finding finding;

  bool isWell() const { return finding.severity == Note && finding.remedy.empty(); }
};

using Lines = std::vector<Line>;

void add(Lines& lines, Area area, Finding finding) { lines.push_back({area, {}, std::move(finding)}); }

std::vector<ServiceStatus> servicesOf(const bus::Dictionary& properties) {
  std::vector<ServiceStatus> services;
  for (const auto& [name, state] : valueOf<bus::ServiceStates>(properties, "Services").value_or(bus::ServiceStates())) {
    services.push_back({name.raw(), std::get<0>(state), std::get<1>(state).raw()});
  }
  return services;
}

void lookAtMasterSwitch(Lines& lines, bool isOn) {
  if (isOn) return add(lines, Area::Daemon, {Note, "enabled", tr("Hush Mode is on."), {}});
  add(lines, Area::Daemon,
      {Warning, "switched-off", tr("Hush Mode is off, so that nothing falls silent."), "hushmode on"});
}

/// Answers whether the daemon sees the calendars of all accounts.
bool lookAtDaemon(Lines& lines, const Daemon& daemon, const std::vector<platform::Dictionary>& profiles) {
  const auto properties = daemon.properties();
  const guint32 version = valueOf<guint32>(properties, "Version").value_or(0);
  if (version < interfaceVersion) {
    add(lines, Area::Daemon,
        {Warning, "daemon-older", tr("The daemon that runs is older than this program."),
         "systemctl --user restart hushmoded"});
  } else if (version > interfaceVersion) {
    add(lines, Area::Daemon,
        {Warning, "daemon-newer", tr("The daemon that runs is newer than this program: two are installed."),
         "type -a hushmode"});
  } else {
    add(lines, Area::Daemon, {Note, "daemon-runs", tr("The daemon runs."), {}});
  }
  lookAtMasterSwitch(lines, valueOf<bool>(properties, "Enabled").value_or(false));
  bool accounts = false;
  const ServiceNeeds needs = needsOf(profiles);
  for (const ServiceStatus& each : servicesOf(properties)) {
    if (each.name == "calendar service") accounts = each.works;
    lines.push_back({Area::Service, each.name, serviceFinding(each, needs)});
  }
  return accounts;
}

/// Files that cannot be read are told by whoever reads them, so they are read here, whoever else does.
void lookAtCalendarFolder(Lines& lines, Date from, Date to, const devices::TimeZone& zone) {
  const auto folder = calendarFolder();
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return;
  eventsInFolder(from, to, zone, [&](const std::string& line) {
    add(lines, Area::Calendar,
        {Warning, "calendar-unreadable", line, tr("Mend that file, or take it out of {}", folder.string())});
  });
}

std::vector<platform::Dictionary> profilesIn(ProfileStore& store, Lines& lines) {
  try {
    return store.list();
  } catch (const simulation::InputError& error) {
    add(lines, Area::Profile,
        {Problem, "profiles-unreadable", error.what(), tr("Mend that file, or move it away and make profiles anew")});
    return {};
  }
}

Lines examine() {
  Lines lines;
  const auto zone = userZone();
  const Date now = wallClock(), end = simulation::beginningOfLocalDay(now, *zone, forecastDays);
  const auto store = ProfileStore::open();
  const auto profiles = profilesIn(*store, lines);
  const bool areProfilesRead = lines.empty();
  LintSubject subject;
  if (const auto daemon = Daemon::running()) {
    subject.accountsKnown = lookAtDaemon(lines, *daemon, profiles);
    subject.networks = knownNetworks();
  } else {
    add(lines, Area::Daemon,
        {Problem, "daemon-not-running",
         tr("The daemon does not run, so that nothing is switched, and services, networks and the "
            "calendars of accounts are not known."),
         "systemctl --user enable --now hushmoded"});
    lookAtMasterSwitch(lines, store->isEnabled());
  }
  lookAtCalendarFolder(lines, now, end, *zone);
  if (!areProfilesRead) return lines;
  auto made = forecast(profiles, now, end, zone, [](const std::string&) {});  // What it complains of is found here.
  subject.profiles = profiles;
  subject.known = std::move(made.known);
  subject.switches = std::move(made.switches);
  for (Finding& each : lint(subject, *zone)) add(lines, Area::Profile, std::move(each));
  return lines;
}

void printJson(const Lines& lines) {
  static constexpr std::array areas{"daemon", "service", "calendar", "profile"};
  static constexpr std::array severities{"note", "warning", "problem"};
  for (const Line& each : lines) {
    Json json = Json::object();
    json["area"] = areas.at(static_cast<std::size_t>(each.area));
    json["severity"] = each.isWell() ? "ok" : severities.at(static_cast<std::size_t>(each.finding.severity));
    json["name"] = each.finding.name;
    if (each.area == Area::Service) json["service"] = each.service;
    json["text"] = each.finding.text;
    json["remedy"] = each.finding.remedy.empty() ? Json(nullptr) : Json(each.finding.remedy);
    std::cout << lineOf(json) << '\n';
  }
}

void printArea(const Lines& lines, Area area, const std::string& heading) {
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  std::size_t severityColumns = 0, serviceColumns = 0;
  const auto severityOf = [](const Line& line) {
    const Severity severity = line.finding.severity;
    return line.isWell()         ? tr("ok")
           : severity == Problem ? tr("problem")
           : severity == Warning ? tr("warning")
                                 : tr("note");
  };
  bool isEmpty = true;
  for (const Line& each : lines) {
    severityColumns = std::max(severityColumns, columnsOf(severityOf(each)));
    serviceColumns = std::max(serviceColumns, columnsOf(harmless(serviceText(each.service))));
    isEmpty = isEmpty && each.area != area;
  }
  if (isEmpty) return;
  std::cout << terminal.styled(heading, Style::Bold) << '\n';
  for (const Line& each : lines) {
    if (each.area != area) continue;
    const Style style = each.isWell()                      ? Style::Green
                        : each.finding.severity == Problem ? Style::Red
                        : each.finding.severity == Warning ? Style::Yellow
                                                           : Style::Dim;
    std::cout << "  " << terminal.styled(padded(severityOf(each), severityColumns), style) << "  ";
    if (area == Area::Service) std::cout << padded(harmless(serviceText(each.service)), serviceColumns) << "  ";
    std::cout << harmless(each.finding.text) << '\n';
    if (!each.finding.remedy.empty()) {
      std::cout << std::string(severityColumns + 4, ' ') << terminal.styled("-> ", Style::Dim)
                << harmless(each.finding.remedy) << '\n';
    }
  }
  std::cout << '\n';
}

int doctor(const Options& options) {
  const Lines lines = examine();
  std::array<std::size_t, 3> counts{};
  for (const Line& each : lines) {
    if (!each.isWell()) ++counts.at(static_cast<std::size_t>(each.finding.severity));
  }
  const auto [notes, warnings, problems] = counts;
  if (options.json) {
    printJson(lines);
  } else {
    printArea(lines, Area::Daemon, tr("Daemon"));
    printArea(lines, Area::Service, tr("Services"));
    printArea(lines, Area::Calendar, tr("Calendar files"));
    printArea(lines, Area::Profile, tr("Profiles"));
    std::cout << (problems + warnings == 0 ? tr("Nothing is wrong.")
                                           : tr("Problems: {0}. Warnings: {1}. Notes: {2}.", problems, warnings, notes))
              << '\n';
  }
  return problems + warnings == 0 ? Done : No;
}

}  // namespace

void addDoctorCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("doctor", tr("What does not work on this phone or in your profiles, and how to mend it"));
  command->add_flag("--json", options->json, tr("Print one JSON object a line"));
  command->footer(
      tr("Exit codes: 0 nothing is wrong, 1 there is a problem or a warning.\n\nExample:\n  {}", "hushmode doctor"));
  command->final_callback([options, &chosen] { chosen = [options] { return doctor(*options); }; });
}

}  // namespace hushmode::cli
