// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <libecal/libecal.h>
#include <map>
#include <set>
#include <string>

namespace hushmode::devices {

/// The text of a component, in iCalendar.
std::string textOfComponent(ICalComponent* component);

/// Makes whole iCalendar texts of the components that Evolution Data Server hands out one by one.
class EvolutionTexts {
 public:
  /// VTIMEZONEs by TZID.
  using Zones = std::map<std::string, std::string>;

  /// One without a UID, or null, is passed over.
  void add(ICalComponent* component);

  /// The TZIDs that are not in `known` and that the reader of the texts does not know itself.
  std::set<std::string> missingZones(const Zones& known) const;

  /// The texts by UID, each with all components that have this UID and the zones that they name.
  std::map<std::string, std::string> finished(const Zones& zones) const;

 private:
  struct Entry {
    std::string components;
    std::set<std::string> zones;  ///< Those that are not well known.
  };
  std::map<std::string, Entry> entries_;
};

}  // namespace hushmode::devices
