// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ICalRecurrence.h"
#include "devices/shared/ICalText.h"
#include "devices/shared/TimeZone.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace hushmode::devices {

/// The time zones that files bring along, shared by all files with the same text for them.
class ICalZones {
 public:
  struct Definition {
    std::string identifier;
    std::shared_ptr<const TimeZone> zone;
  };
  /// The zone of a VTIMEZONE; its zone is null when the text does not describe one that can be used, or when following
  /// its rules is more work than a zone needs or the budget allows.
  const Definition& defined(std::string_view component, WorkBudget& budget);

  /// Lets go of the zones that no file uses any more.
  void forgetUnused();

 private:
  std::unordered_map<std::string, Definition> definitions_;
};

/// The zone that has this name outside of any file: that of the system's database, the same for the end of a prefixed
/// identifier ("/example.org/2024/Europe/Berlin"), that of a Windows name. Null when none has it.
std::shared_ptr<const TimeZone> wellKnownZone(std::string_view identifier);

/// Finds the zones that the times of one VCALENDAR name.
class ICalZoneResolver {
 public:
  /// The VTIMEZONEs of the calendar come before anything else of the same name.
  ICalZoneResolver(const std::vector<std::string_view>& timeZones, ICalZones& zones, WorkBudget& budget,
                   const ICalProblem& problem);

  /// By TZID: the VTIMEZONE, else the well-known zone. Null when there is neither.
  const TimeZone* resolve(std::string_view identifier);

  /// Every zone given out, to be kept as long as its times.
  std::vector<std::shared_ptr<const TimeZone>> takeZones();

 private:
  std::map<std::string, std::shared_ptr<const TimeZone>, std::less<>> zones_;
};

}  // namespace hushmode::devices
