#pragma once

#include "apps/simulation/JsonReader.h"
#include "tests/simulation/Play.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace hushmode::simulation {

/// A scenario from JSON text.
inline Scenario scenarioOf(const std::string& json) {
  std::string name = (std::filesystem::temp_directory_path() / "hushmode-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(name.data());
  std::ofstream(folder / "scenario.json") << json;
  Scenario scenario = readScenario(folder / "scenario.json", {});
  std::filesystem::remove_all(folder);
  return scenario;
}

/// What a life of the host came to.
struct Life {
  PhoneState before, end;
  std::size_t entries = 0;  ///< That the host caused.
  bool died = false;
};

inline Life live(const Scenario& scenario, std::size_t deathAt = 0, double restartSeconds = 2) {
  Life life;
  Audience audience;
  audience.entry = [&](const devices::RecordEntry& entry) { life.entries += entry.kind != devices::kind::phone; };
  Simulation simulation(scenario, std::move(audience), Hosting::Full);
  if (deathAt > 0) simulation.setDeath(deathAt, restartSeconds);
  life.before = stateOf(simulation.phone());
  try {
    simulation.run();
  } catch (const InputError&) {
    // A question that died with the host cannot be answered any more.
    if (!simulation.hasDied()) throw;
    life.end = life.before;
    life.died = true;
    return life;
  }
  life.end = stateOf(simulation.phone());
  life.died = simulation.hasDied();
  return life;
}

}  // namespace hushmode::simulation
