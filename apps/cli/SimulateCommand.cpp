// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode simulate: plays profiles and calendars, or a whole scenario, on the phone in memory.

#include "apps/cli/Commands.h"
#include "apps/cli/Timeline.h"
#include "apps/client/Json.h"
#include "apps/client/UserTime.h"
#include "apps/simulation/JsonReader.h"
#include "apps/simulation/Simulation.h"
#include "apps/simulation/TimeText.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/Words.h"
#include "devices/words/Text.h"

#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <unistd.h>

namespace hushmode::cli {

namespace {

using simulation::InputError;
using simulation::Scenario;

struct Options {
  std::optional<std::string> scenario;
  simulation::ScenarioOptions given;
  bool verbose = false, json = false, host = true;
};

/// Says on standard error how far a simulation has come, once it takes longer than a second.
class Progress {
 public:
  Progress(const Scenario& scenario) : from_(scenario.from), span_(scenario.to - scenario.from), zone_(scenario.zone) {}
  ~Progress() {
    if (shown_) std::cerr << '\n';
  }

  void reached(platform::Date date) {
    using namespace std::chrono_literals;
    const auto instant = std::chrono::steady_clock::now();
    if (instant - start_ < 1s || instant - last_ < 500ms || span_ <= 0) return;
    last_ = instant;
    const int percent = static_cast<int>(100 * (date - from_) / span_);
    // A terminal gets one line that changes; a log gets few.
    std::cerr << (terminal_ ? "\r"
                  : shown_  ? "\n"
                            : "")
              << tr("simulated up to {0}, {1}%", simulation::isoTime(date, *zone_).substr(0, 10), percent)
              << std::flush;
    shown_ = true;
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now(), last_ = start_;
  platform::Date from_;
  double span_;
  std::shared_ptr<const devices::TimeZone> zone_;
  bool terminal_ = isTerminal(STDERR_FILENO), shown_ = false;
};

Scenario scenarioOf(const Options& options) {
  if (options.scenario) return simulation::readScenario(*options.scenario, options.given);
  if (!options.given.profiles || !options.given.calendars) {
    throw InputError(tr("simulate: expected a scenario file, or both --profiles and --calendars"));
  }
  return simulation::scenarioFrom(options.given, wallClock());
}

int simulate(const Options& options) {
  Scenario scenario = scenarioOf(options);
  const auto zone = scenario.zone;
  Progress progress(scenario);
  Timeline timeline(std::cout, Terminal::of(STDOUT_FILENO), zone,
                    [](const host::Switch& each) { return inWords(host::difference(each.before, each.after)); });

  simulation::Audience audience;
  audience.decisions = options.json || options.verbose;
  audience.complaint = complain;
  audience.progress = [&](platform::Date date) { progress.reached(date); };
  if (options.json) {
    audience.entry = [&](const devices::RecordEntry& entry) { std::cout << lineOf(jsonOf(entry, *zone)) << '\n'; };
  } else {
    if (options.verbose) audience.entry = [&](const devices::RecordEntry& entry) { timeline.add(entry); };
    audience.switched = [&](const host::Switch& each) { timeline.add(each); };
  }

  simulation::Simulation simulation(std::move(scenario), std::move(audience),
                                    options.host ? simulation::Hosting::Full : simulation::Hosting::Least);
  simulation.run();
  if (!options.json) timeline.finish();
  return Done;
}

}  // namespace

void addSimulateCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("simulate", tr("Play profiles and calendars on a phone in memory and show every switch"));
  command->add_option("SCENARIO", options->scenario, tr("A scenario file (JSON)"))->type_name("FILE");
  command->add_option("--profiles", options->given.profiles, tr("The profiles, a property-list file"))
      ->type_name("FILE");
  command->add_option("--calendars", options->given.calendars, tr("A folder of iCalendar files"))->type_name("FOLDER");
  command->add_option("--from", options->given.from, tr("When to begin (without a scenario: today at midnight)"))
      ->type_name("TIME");
  command
      ->add_option("--to", options->given.to,
                   tr("When to end; a day means its end (without: the end of the first day)"))
      ->type_name("TIME");
  command->add_option("--zone", options->given.zone, tr("The phone's time zone, such as Europe/Berlin"))
      ->type_name("ZONE");
  command->add_flag("-v,--verbose", options->verbose, tr("Show the decisions, too"));
  command->add_flag("--host,!--no-host", options->host,
                    tr("With the host's guards, as on a real phone (the default), or the bare library"));
  command->add_flag("--json", options->json, tr("Print the whole record as JSON lines"));
  command->footer(
      tr("Times are local: 2026-11-24, 2026-11-24T09:30, or with seconds. Nothing is written to any file.\n\n"
         "Examples:\n"
         "  hushmode simulate examples/workday.json\n"
         "  hushmode simulate --profiles profiles.plist --calendars ~/.calendars --from 2026-11-24 --to 2026-11-30"));
  command->final_callback([options, &chosen] { chosen = [options] { return simulate(*options); }; });
}

}  // namespace hushmode::cli
