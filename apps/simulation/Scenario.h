// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "devices/simulated/SimulatedPhone.h"
#include "platform/PropertyList.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::simulation {

class Simulation;

/// Something that happens to the phone, its data or its host at a moment.
struct Step {
  platform::Date at;
  std::function<void(Simulation&)> perform;
};

/// A day, or a year, of a phone: its first state, the profiles, the calendars, and what happens.
struct Scenario {
  std::shared_ptr<const devices::TimeZone> zone;
  platform::Date from{0}, to{0};
  bool enabled = true;       ///< The master switch.
  bool hostPlans = true;     ///< The host plans at start, midnights and changes of network.
  platform::Array profiles;  ///< Profile dictionaries.
  /// A folder of iCalendar files; without one, the events that `prepare` puts into the phone.
  std::optional<std::filesystem::path> calendarFolder;
  /// Brings the phone into its first state.
  std::vector<std::function<void(devices::SimulatedPhone&)>> prepare;
  std::vector<Step> steps;  ///< In the order in which they are performed.
};

/// What the command line says over a scenario file, or instead of one.
struct ScenarioOptions {
  std::optional<std::string> profiles, calendars;  ///< Paths.
  std::optional<std::string> from, to, zone;       ///< Texts.
};

/// Reads a scenario file. Paths in it are relative to its folder. Throws InputError.
Scenario readScenario(const std::filesystem::path& file, const ScenarioOptions& options);

/// A scenario of nothing but profiles and calendars. `today` is used without `from`. Throws InputError.
Scenario scenarioFrom(const ScenarioOptions& options, platform::Date today);

/// The profile dictionaries in a property-list file. Throws InputError when it is not an array.
platform::Array readProfiles(const std::filesystem::path& file);

/// The zone of that name; without a name, the machine's. Throws InputError for an unknown one.
std::shared_ptr<const devices::TimeZone> zoneNamed(const std::optional<std::string>& name);

/// The instants of `from` and `to` (each may be absent). A `to` without a clock time means the end of that day; none,
/// the end of the day of `from`. Throws InputError.
void setSpan(Scenario& scenario, const std::optional<std::string>& from, const std::optional<std::string>& to,
             platform::Date today);

}  // namespace hushmode::simulation
