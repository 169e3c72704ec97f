// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/KnownEvents.h"
#include "apps/client/Places.h"
#include "devices/shared/TimeZone.h"
#include "host/Expectation.h"
#include "platform/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// A time of day of the profiles file, as the library reads it.
struct WindowTime {
  std::string text;            ///< As it stands in the file; "12:00 AM" when absent.
  std::optional<int> minutes;  ///< After local midnight; none when it has no ":", so that the profile rests.
  bool isUsual = true;         ///< Like "8:00 AM". Others read as something that nobody means: "14:30" is 00:30.
};

/// When a profile is to be on, as the library reads it from a dictionary of the profiles file.
struct ProfileRules {
  std::int64_t identifier = 0;
  std::string title;           ///< As `titleOf` says.
  bool isNamedByTitle = true;  ///< Commands find it by its title; false where another one comes first.
  bool enabled = false, allDay = false;
  WindowTime start, end;               ///< Of no meaning when all-day.
  std::vector<std::string> calendars;  ///< Identifiers; those that are writable now when the profile names none yet.
  std::vector<std::string> networks;   ///< By name.
  std::int64_t wantedStatus = 0;       ///< Of events, 1 to 3; 0: any.
  bool allDayEventsIgnored = false;
};

ProfileRules rulesOf(const platform::Dictionary& profile, const std::vector<KnownCalendar>& calendars);

/// Whether its window is open at some minute of a usual day.
bool canOpen(const ProfileRules& rules);
bool hasReadableWindow(const ProfileRules& rules);

/// Its conditions on the local day of `day`. A window that cannot be read is never open.
host::Conditions conditionsOn(const ProfileRules& rules, platform::Date day, const devices::TimeZone& zone,
                              bool onOwnNetwork);

bool follows(const ProfileRules& rules, const KnownEvent& event);
host::Happening happeningOf(const KnownEvent& event);

}  // namespace hushmode::cli
