// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/JsonReader.h"
#include "apps/simulation/Scenario.h"
#include "devices/simulated/MemoryCalendars.h"

/// The pieces of a scenario file; see docs/scenarios.md.
namespace hushmode::simulation {

/// A moment: a whole date and time, or a clock time on the scenario's first day. Fails at the value's place.
platform::Date readTime(const JsonReader& json, const Scenario& scenario);

/// A property-list value of a JSON one. Null has no counterpart and fails.
platform::Value readValue(const JsonReader& json);
platform::Dictionary readDictionary(const JsonReader& json);

/// An event with "uid", "start", "end", and optionally "title", "status", "allDay".
devices::SimulatedEvent readEvent(const JsonReader& json, const std::string& calendar, const Scenario& scenario);
platform::EKEventStatus readEventStatus(const JsonReader& json);

/// What brings the phone into the state that the "phone" object describes.
void readPhone(const JsonReader& json, Scenario& scenario);

/// One entry of "steps".
Step readStep(const JsonReader& json, const Scenario& scenario);

/// A switch of something that can break: a class or selector that is taken away or given back, writes or reads that
/// fail.
std::function<void(devices::SimulatedPhone&)> readFault(const JsonReader& json);

}  // namespace hushmode::simulation
