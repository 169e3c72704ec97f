// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode agenda: every switch to come, from the real profiles and calendars, computed by the library and the host on
// the phone in memory.

#include "apps/cli/Commands.h"
#include "apps/cli/PlannedChange.h"
#include "apps/cli/Timeline.h"
#include "apps/client/Daemon.h"
#include "apps/client/Forecast.h"
#include "apps/client/Json.h"
#include "apps/client/ProfileStore.h"
#include "apps/client/UserTime.h"
#include "apps/pictures/AgendaBlocks.h"
#include "apps/pictures/AgendaSvg.h"
#include "apps/simulation/JsonReader.h"
#include "apps/simulation/TimeText.h"
#include "apps/simulation/WrongValue.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/NearTime.h"
#include "devices/shared/PropertyListFileBytes.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <langinfo.h>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace hushmode::cli {

using platform::Date;

namespace {

struct Options {
  unsigned days = 1;
  bool json = false;
  bool picture = false;
  std::string svg;   ///< Empty for none, "-" for standard output.
  std::string from;  ///< A day; empty for now.
};

bool wantsPicture(const Options& options) { return options.picture || !options.svg.empty(); }

/// Pictures are of whole days, so that what has begun before now is seen as well.
Date beginningOf(const Options& options, const devices::TimeZone& zone) {
  if (options.from.empty()) {
    const Date now = wallClock();
    return wantsPicture(options) ? simulation::beginningOfLocalDay(now, zone) : now;
  }
  const auto day = simulation::isDateOnly(options.from) ? simulation::parseTime(options.from, zone) : std::nullopt;
  if (day) return *day;
  throw simulation::wrongValue("--from " + options.from, tr("a day, such as 2026-11-24"),
                               nearestDay(options.from).value_or("").substr(0, 10));
}

Forecast forecastOf(const Options& options) {
  const auto zone = userZone();
  const Date begin = beginningOf(options, *zone);
  const auto store = ProfileStore::open();
  // The next day's own plan is not part of it.
  const Date end = simulation::beginningOfLocalDay(begin, *zone, static_cast<int>(options.days)).addingSeconds(-0.001);
  if (!store->isEnabled()) complain(tr("Hush Mode is off; this is what it would do"));
  return forecast(store->list(), begin, end, zone, complain);
}

/// Told before the forecast is made, which may take a while.
void requireFilePlace(const std::string& path) {
  std::error_code ignored;  // What cannot be looked at cannot be written either, and is told then.
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (!folder.empty() && !std::filesystem::is_directory(folder, ignored)) {
    throw simulation::InputError(
        tr("--svg {0}: expected a file in a folder that exists, not in {1}", path, folder.string()));
  }
  if (std::filesystem::exists(path, ignored) && !std::filesystem::is_regular_file(path, ignored)) {
    throw simulation::InputError(tr("--svg {}: expected a regular file, or - for standard output", path));
  }
}

void writePicture(const std::string& path, const std::string& picture) {
  if (path == "-") {
    std::cout << picture;
  } else if (const auto problem = devices::replaceFileBytes(devices::FileCalls::system(), path, picture)) {
    throw ServiceError(tr("{0} cannot be written: {1}", path, *problem));
  }
}

int drawn(const Options& options) {
  if (!options.svg.empty() && options.svg != "-") requireFilePlace(options.svg);
  const Forecast made = forecastOf(options);
  const auto days = dayPlans(made);
  if (!options.svg.empty()) {
    writePicture(options.svg, agendaSvg(days, *made.zone, wallClock()));
    return Done;
  }
  constexpr std::size_t most = 1000;
  const std::size_t columns = std::min(columnsOfOutput().value_or(BlockCanvas().columns), most);
  const bool blocks = std::string_view(::nl_langinfo(CODESET)) == "UTF-8";
  std::cout << agendaBlocks(days, *made.zone, wallClock(), {Terminal::of(STDOUT_FILENO), columns, blocks});
  return Done;
}

/// The profiles that the daemon has on, when the forecast begins now: they need not be switched on.
std::vector<platform::Dictionary> onAlready(const Forecast& made, const Options& options) {
  std::vector<platform::Dictionary> list;
  if (!options.from.empty() || !Daemon::running()) return list;
  std::copy_if(made.profiles.begin(), made.profiles.end(), std::back_inserter(list),
               [](const auto& each) { return booleanMeaning(each.find("applied")); });
  return list;
}

/// The switches to come, without those that the real phone has done before.
std::vector<host::Switch> toCome(const Forecast& made, const std::vector<platform::Dictionary>& on) {
  std::vector<host::Switch> list;
  std::copy_if(made.switches.begin(), made.switches.end(), std::back_inserter(list), [&](const host::Switch& each) {
    const bool atOnce = each.on && each.at < made.from.addingSeconds(1);
    return !atOnce || std::none_of(on.begin(), on.end(),
                                   [&](const auto& profile) { return identifierOf(profile) == each.identifier; });
  });
  return list;
}

int agenda(const Options& options) {
  if (wantsPicture(options)) return drawn(options);
  const Forecast made = forecastOf(options);
  const auto on = onAlready(made, options);
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  if (!options.json) {
    for (const auto& each : on) {
      std::cout << tr("{} is on now.", terminal.styled(harmless(titleOf(each)), Style::Bold)) << '\n';
    }
  }
  Timeline timeline(std::cout, terminal, made.zone,
                    [&](const host::Switch& each) { return plannedChange(each, made.found); });
  for (const host::Switch& each : toCome(made, on)) {
    if (!options.json) {
      timeline.add(each);
      continue;
    }
    std::cout << lineOf({{"time", simulation::isoTime(each.at, *made.zone)},
                         {"profile", each.profile},
                         {"identifier", each.identifier},
                         {"on", each.on},
                         {"reason", host::messageOf(each.reason).english()}})
              << '\n';
  }
  if (!options.json) timeline.finish();
  return Done;
}

}  // namespace

void addAgendaCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("agenda", tr("Every switch to come, by your own profiles and calendars"));
  command->add_option("--days", options->days, tr("How many days, today included"))->check(CLI::Range(1, 366));
  command->add_option("--from", options->from, tr("The first day, such as 2026-11-24, instead of today from now on"))
      ->type_name("DAY");
  CLI::Option* json = command->add_flag("--json", options->json, tr("Print one JSON object a line"));
  CLI::Option* picture = command->add_flag("--picture", options->picture, tr("Draw the days in the terminal"));
  command->add_option("--svg", options->svg, tr("Draw the days into this SVG file; - for standard output"))
      ->type_name("FILE")
      ->excludes(json)
      ->excludes(picture);
  picture->excludes(json);
  command->footer(
      tr("Networks that you will join cannot be known.\n\nExample:\n  {}", "hushmode agenda --days 7 --svg week.svg"));
  command->final_callback([options, &chosen] { chosen = [options] { return agenda(*options); }; });
}

}  // namespace hushmode::cli
