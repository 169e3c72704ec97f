// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode explain: why a profile is on or off at a moment.

#include "apps/advice/AppliedState.h"
#include "apps/advice/ExplanationWords.h"
#include "apps/cli/Commands.h"
#include "apps/client/Forecast.h"
#include "apps/client/ProfileStore.h"
#include "apps/client/UserTime.h"
#include "apps/profiles/MomentText.h"
#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"

#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using platform::Date;

namespace {

struct Options {
  std::string name;
  std::optional<std::string> at;
  bool verbose = false, json = false;
};

/// The network that the phone is on at this moment, as the daemon sees it.
void lookAtNetwork(Moment& moment) {
  const auto networks = knownNetworks();
  if (!networks) return;
  moment.isNetworkKnown = true;
  for (const KnownNetwork& each : *networks) {
    if (each.joined) moment.joinedNetwork = each.name;
  }
}

/// What the library has decided about the profile on that day up to the moment.
void printDecisions(const platform::Dictionary& profile, Date at,
                    const std::shared_ptr<const devices::TimeZone>& zone) {
  const auto print = [&](const devices::RecordEntry& entry) {
    if (entry.kind != devices::kind::log) return;
    std::cout << "  " << simulation::clockTime(entry.time, *zone) << "  " << harmless(entry.text()) << '\n';
  };
  std::cout << '\n' << tr("What was decided on that day until then:") << '\n';
  const Date midnight = simulation::beginningOfLocalDay(at, *zone);
  forecast(
      {profile}, midnight, at.addingSeconds(1), zone, [](const std::string&) {}, print);  // Complained already.
}

int explainProfile(const Options& options) {
  const auto store = ProfileStore::open();
  const auto profile = profileNamed(store->list(), options.name);
  const auto zone = userZone();
  const Date now = wallClock();
  const bool isNow = !options.at;
  Moment moment;
  moment.at = isNow ? now : parseMoment(*options.at, *zone, now);
  moment.masterSwitch = store->isEnabled();
  if (isNow) lookAtNetwork(moment);

  const auto known = knownEvents(simulation::beginningOfLocalDay(moment.at, *zone),
                                 simulation::beginningOfLocalDay(moment.at, *zone, lookAheadDays), *zone, complain);
  const Explanation explanation = explain(rulesOf(profile, known.calendars), moment, known.events, *zone);
  std::optional<AppliedState> state;
  const auto daemon = isNow ? Daemon::running() : std::nullopt;
  if (daemon) state = appliedState(*daemon, profile);

  if (options.json) {
    std::cout << lineOf(jsonOf(explanation, state, *zone)) << '\n';
  } else {
    print(std::cout, Terminal::of(STDOUT_FILENO), explanation, known.calendars, *zone);
    if (state) {
      for (const std::string& each : sentences(*state, explanation, *zone)) std::cout << each << '\n';
    } else if (isNow) {
      std::cout << tr("The daemon does not run, so that nothing is switched; start it with: systemctl --user start "
                      "hushmoded")
                << '\n';
    }
    if (options.verbose) printDecisions(profile, moment.at, zone);
  }
  return explanation.on ? Done : No;
}

}  // namespace

void addExplainCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("explain", tr("Why a profile is on or off, now or at another time"));
  command->add_option("NAME", options->name, tr("The profile's title"))->required()->type_name("PROFILE");
  command->add_option("--at", options->at, tr("When, such as 14:20, 2:20pm or \"2026-11-24 14:20\"; without: now"))
      ->type_name("TIME");
  command->add_flag("--verbose", options->verbose, tr("Also what was decided on that day until then, line by line"));
  command->add_flag("--json", options->json, tr("Print a JSON object"));
  command->footer(
      tr("For other times than now the profile counts as it is set now.\n\n"
         "Exit codes: 0 the profile is on at that minute, 1 it is off.\n\nExample:\n  {}",
         "hushmode explain Meetings --at 14:20"));
  command->final_callback([options, &chosen] { chosen = [options] { return explainProfile(*options); }; });
}

}  // namespace hushmode::cli
