// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/FullHost.h"
#include "apps/simulation/JsonReader.h"
#include "apps/simulation/TimeText.h"
#include "tests/simulation/Play.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::simulation {

/// Changes of what the phone shows, to say what is wanted of it.
using Change = std::function<void(PhoneState&)>;

/// A moment of a life at which the phone is looked at.
struct Moment {
  std::string at;  ///< As in a scenario.
  Change wanted;   ///< What is different then from what there was in the beginning.
  /// How many of the steps come before it; absent: those of its time and earlier ones. For clocks that are set back.
  std::optional<std::size_t> after = std::nullopt;
};

/// A volume that the phone was told to take.
struct VolumeWrite {
  platform::Date at;
  bool media;
  double volume;
};

/// What a life of the host came to.
struct Life {
  PhoneState before, end;
  std::vector<PhoneState> moments;
  /// Moments of which nothing is promised: the host was dead, had not settled after its new start, or was dead or died
  /// when its user asked it for something, which may have been done or not.
  std::vector<bool> missed;
  std::vector<VolumeWrite> writes;
  std::vector<std::string> complaints;
  std::size_t entries = 0;    ///< That the host caused.
  std::size_t questions = 0;  ///< That the user was asked.
  bool died = false, diedInStep = false;
};

inline host::Host& hostOf(Simulation& simulation) { return static_cast<FullHost&>(simulation.host()).host(); }

/// A scenario from JSON text.
inline Scenario scenarioOf(const std::string& json) {
  std::string name = (std::filesystem::temp_directory_path() / "hushmode-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(name.data());
  std::ofstream(folder / "scenario.json") << json;
  Scenario scenario = readScenario(folder / "scenario.json", {});
  std::filesystem::remove_all(folder);
  return scenario;
}

/// Plays a scenario with the real host. With `deathAt` the host dies as it causes that entry of the record, and is
/// started again `restartSeconds` later.
inline Life live(Scenario scenario, const std::vector<Moment>& moments = {}, std::size_t deathAt = 0,
                 double restartSeconds = 2) {
  Life life;
  life.moments.resize(moments.size());
  life.missed.resize(moments.size());
  Simulation* playing = nullptr;
  double deathTime = 0;
  bool inStep = false;  // Stays so where a death ends the step.
  const auto isRecovering = [&] {
    if (!playing->hasDied()) return false;
    if (life.diedInStep) return true;
    const double since = playing->phone().time().uptime() - deathTime;
    return since < restartSeconds + 2 * host::Host::settleSeconds;
  };
  std::vector<Step> steps;
  for (std::size_t taken = 0; taken <= scenario.steps.size(); ++taken) {
    for (std::size_t i = 0; i < moments.size(); ++i) {
      const auto at = parseTime(moments[i].at, *scenario.zone, scenario.from);
      if (!at) throw std::invalid_argument(moments[i].at);
      const auto later =
          std::find_if(scenario.steps.begin(), scenario.steps.end(), [&](const Step& step) { return step.at > *at; });
      const auto place = moments[i].after.value_or(static_cast<std::size_t>(later - scenario.steps.begin()));
      if (place != taken) continue;
      steps.push_back({*at, [&life, &isRecovering, i](Simulation& simulation) {
                         life.moments[i] = stateOf(simulation.phone());
                         life.missed[i] = isRecovering();
                       }});
    }
    if (taken == scenario.steps.size()) continue;
    steps.push_back({scenario.steps[taken].at, [&inStep, perform = scenario.steps[taken].perform](Simulation& s) {
                       inStep = true;
                       perform(s);
                       inStep = false;
                     }});
  }
  scenario.steps = std::move(steps);
  Audience audience;
  audience.complaint = [&](const std::string& line) {
    life.complaints.push_back(line);
    life.diedInStep = life.diedInStep || line.find("host is not running") != std::string::npos;
  };
  audience.entry = [&](const devices::RecordEntry& entry) {
    life.entries += entry.kind != devices::kind::phone;
    if (life.entries == deathAt && playing && entry.kind != devices::kind::phone) {
      deathTime = playing->phone().time().uptime();
      life.diedInStep = inStep;
    }
    if (entry.kind == devices::kind::alert && *entry.fields.find("operation")->as<std::string>() == "show") {
      ++life.questions;
    }
    if (entry.kind != devices::kind::effect) return;
    const std::string name = *entry.fields.find("name")->as<std::string>();
    const auto volume = [&] { return *entry.fields.find("volume")->as<double>(); };
    if (name == "setMediaVolume") life.writes.push_back({entry.time, true, volume()});
    if (name == "setVolumeTo" && *entry.fields.find("category")->as<std::string>() == "Ringtone") {
      life.writes.push_back({entry.time, false, volume()});
    }
  };
  Simulation simulation(std::move(scenario), std::move(audience), Hosting::Full);
  playing = &simulation;
  if (deathAt > 0) simulation.setDeath(deathAt, restartSeconds);
  life.before = stateOf(simulation.phone());
  try {
    simulation.run();
  } catch (const InputError&) {
    // A question that died with the host cannot be answered any more.
    if (!simulation.hasDied()) throw;
    life.end = life.before;
    life.missed.assign(moments.size(), true);
    life.died = true;
    return life;
  }
  life.end = stateOf(simulation.phone());
  life.died = simulation.hasDied();
  return life;
}

}  // namespace hushmode::simulation
