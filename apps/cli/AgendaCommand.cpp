// hushmode agenda: every switch to come, from the real profiles and calendars, computed by the library and the host on
// the phone in memory.

#include "apps/cli/Commands.h"
#include "apps/cli/Json.h"
#include "apps/cli/Places.h"
#include "apps/cli/ProfileStore.h"
#include "apps/cli/Terminal.h"
#include "apps/cli/Text.h"
#include "apps/cli/Timeline.h"
#include "apps/simulation/Simulation.h"
#include "apps/simulation/TimeText.h"
#include "util/Numbers.h"

#include <chrono>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using platform::Array;
using platform::Date;
using platform::Dictionary;

namespace {

struct Options {
  unsigned days = 1;
  bool json = false;
};

constexpr std::string_view folderPrefix = "folder:";

Date now() {
  using namespace std::chrono;
  return Date(duration<double>(system_clock::now().time_since_epoch()).count());
}

/// Profiles as they are, but for what is of this moment, and with the calendar folder as the only account.
Array forSimulation(const std::vector<Dictionary>& profiles, bool& others) {
  Array array;
  for (Dictionary profile : profiles) {
    profile.set("applied", false);
    if (const auto* value = profile.find("calendarIdentifiers")) {
      Array identifiers;
      for (const auto& each : value->as<Array>() ? *value->as<Array>() : Array()) {
        const std::string identifier = textMeaning(&each).value_or("");
        if (identifier.starts_with(folderPrefix)) {
          identifiers.emplace_back(identifier.substr(folderPrefix.size()));
        } else {
          others = true;
        }
      }
      profile.set("calendarIdentifiers", identifiers);
    }
    array.emplace_back(std::move(profile));
  }
  return array;
}

int agenda(const Options& options) {
  const auto store = ProfileStore::open();
  simulation::Scenario scenario;
  scenario.zone = simulation::zoneNamed(std::nullopt);
  scenario.from = now();
  scenario.to = simulation::beginningOfLocalDay(scenario.from, *scenario.zone, static_cast<int>(options.days))
                    .addingSeconds(-0.001);  // The next day's own plan is not part of it.
  scenario.calendarFolder = calendarFolder();
  bool others = false;
  scenario.profiles = forSimulation(store->list(), others);
  if (!store->isEnabled()) std::cerr << "hushmode: " << tr("Hush Mode is off; this is what it would do") << '\n';
  if (others) {
    std::cerr << "hushmode: "
              << tr("events of calendars that do not lie in {} are not known here", calendarFolder().string()) << '\n';
  }
  Timeline timeline(std::cout, Terminal::of(STDOUT_FILENO), scenario.zone, false);
  const auto zone = scenario.zone;
  simulation::Audience audience;
  audience.complaint = [](const std::string& text) { std::cerr << "hushmode: " << harmless(text) << '\n'; };
  audience.switched = [&](const host::Switch& each) {
    if (!options.json) return timeline.add(each);
    std::cout << lineOf({{"time", simulation::isoTime(each.at, *zone)},
                         {"profile", each.profile},
                         {"identifier", each.identifier},
                         {"on", each.on},
                         {"reason", each.reason}})
              << '\n';
  };
  simulation::Simulation simulation(std::move(scenario), std::move(audience), simulation::Hosting::Full);
  simulation.run();
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
