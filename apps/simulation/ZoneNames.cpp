// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/ZoneNames.h"

#include "apps/words/Nearest.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace hushmode::simulation {

namespace {

/// "Berlin" of "Europe/Berlin".
std::string placeOf(const std::string& zone) { return zone.substr(zone.rfind('/') + 1); }

}  // namespace

std::vector<std::string> zoneNames() {
  std::vector<std::string> names{"UTC"};
  // Columns, the third of which is the name.
  std::ifstream table("/usr/share/zoneinfo/zone1970.tab");
  for (std::string line; std::getline(table, line);) {
    std::istringstream columns(line);
    std::string countries, place, name;
    if (!line.starts_with("#") && columns >> countries >> place >> name) names.push_back(name);
  }
  return names;
}

std::string nearestZone(const std::string& given) {
  const auto zones = zoneNames();
  if (given.find('/') != std::string::npos) return nearestOf(given, zones);
  std::vector<std::string> places;
  for (const std::string& each : zones) places.push_back(placeOf(each));
  const auto place = std::find(places.begin(), places.end(), nearestOf(given, places));
  return place == places.end() ? "" : zones[static_cast<std::size_t>(place - places.begin())];
}

}  // namespace hushmode::simulation
