// hushmode agenda: every switch to come, from the real profiles and calendars, computed by the library and the host on
// the phone in memory.

#include "apps/cli/Commands.h"
#include "apps/cli/Forecast.h"
#include "apps/cli/Json.h"
#include "apps/cli/ProfileStore.h"
#include "apps/cli/Terminal.h"
#include "apps/cli/Text.h"
#include "apps/cli/Timeline.h"
#include "apps/simulation/TimeText.h"

#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using platform::Date;

namespace {

struct Options {
  unsigned days = 1;
  bool json = false;
};

Forecast forecastOf(const Options& options) {
  const auto store = ProfileStore::open();
  const auto zone = userZone();
  const Date now = wallClock();
  // The next day's own plan is not part of it.
  const Date end = simulation::beginningOfLocalDay(now, *zone, static_cast<int>(options.days)).addingSeconds(-0.001);
  if (!store->isEnabled()) std::cerr << "hushmode: " << tr("Hush Mode is off; this is what it would do") << '\n';
  return forecast(store->list(), now, end, zone,
                  [](const std::string& line) { std::cerr << "hushmode: " << harmless(line) << '\n'; });
}

int agenda(const Options& options) {
  const Forecast made = forecastOf(options);
  Timeline timeline(std::cout, Terminal::of(STDOUT_FILENO), made.zone, false);
  for (const host::Switch& each : made.switches) {
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
  command->add_flag("--json", options->json, tr("Print one JSON object a line"));
  command->footer(tr("Networks that you will join cannot be known.\n\nExample:\n  {}", "hushmode agenda --days 7"));
  command->final_callback([options, &chosen] { chosen = [options] { return agenda(*options); }; });
}

}  // namespace hushmode::cli
