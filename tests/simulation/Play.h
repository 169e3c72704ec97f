// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/JsonReader.h"
#include "apps/simulation/Simulation.h"
#include "apps/simulation/TimeText.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace hushmode::simulation {

/// What a scenario told its audience.
struct Played {
  std::vector<std::string> switches;  ///< "09:00:00 Work on "Standup": what changed"
  std::vector<std::string> complaints;
  std::vector<std::string> entries;  ///< The record's texts.
  PhoneState end;
};

/// Plays a scenario given as JSON text.
inline Played play(const std::string& json, Hosting hosting = Hosting::Least) {
  std::string name = (std::filesystem::temp_directory_path() / "hushmode-XXXXXX").string();
  const std::filesystem::path folder = ::mkdtemp(name.data());
  std::ofstream(folder / "scenario.json") << json;
  Scenario scenario = readScenario(folder / "scenario.json", {});
  std::filesystem::remove_all(folder);
  const auto zone = scenario.zone;
  Played played;
  Audience audience;
  audience.decisions = true;
  audience.switched = [&](const Switch& each) {
    played.switches.push_back(clockTime(each.at, *zone) + " " + each.profile + (each.on ? " on " : " off ") +
                              host::messageOf(each.reason).english() + ": " +
                              (each.withNext ? "with the next" : differenceText(each.before, each.after)));
  };
  audience.complaint = [&](const std::string& text) { played.complaints.push_back(text); };
  audience.entry = [&](const devices::RecordEntry& entry) { played.entries.push_back(entry.text()); };
  Simulation simulation(std::move(scenario), std::move(audience), hosting);
  simulation.run();
  played.end = stateOf(simulation.phone());
  return played;
}

/// A scenario on 14 May 2024 in UTC with one calendar, one profile that follows it from 8 to 17, and these pieces:
/// `events` and `steps` as JSON lists, `more` as further members of the profile, each with a comma in front.
inline std::string workday(const std::string& events, const std::string& steps = "[]", const std::string& more = "") {
  return R"({"zone": "UTC", "from": "2024-05-14", "phone": {"silentVibrate": true},
    "profiles": [{"identifier": 5, "title": "Work", "enabled": true, "startTime": "8:00 AM", "endTime": "5:00 PM",
      "ringerVolume": 0.25, "playBackVolume": 0.125, "vibrate": true, "calendarIdentifiers": ["work"],
      "allDayEventsIgnored": true)" +
         more + R"(}], "calendars": [{"identifier": "work", "events": )" + events + R"(}], "steps": )" + steps + "}";
}

inline const std::string standup = R"([{"uid": "1", "title": "Standup", "start": "09:00", "end": "10:00"}])";

}  // namespace hushmode::simulation
