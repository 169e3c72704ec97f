// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <optional>
#include <string>
#include <vector>

/// Hush Mode's own calendar: a folder of iCalendar files beside the user's, through which "quiet from now on" and quiet
/// hours are events like all others.
namespace hushmode::cli {

struct OwnEvent {
  std::string uid, title;
  std::string profile;               ///< The title of the profile that it was made for.
  std::optional<std::string> hours;  ///< Of quiet hours: "22:00-06:00".
  std::string days;                  ///< Of quiet hours: "daily", or "mon,tue".
};

class OwnCalendar {
 public:
  /// As profiles name it.
  static constexpr const char* identifier = "folder:Hush Mode";

  // Each adds one event, in the place of one of the same kind and profile, and waits until a running daemon has noticed
  // it: false when it has not after some seconds. Throws ServiceError when it cannot be written.

  /// One span.
  static bool addQuiet(const std::string& profile, platform::Date from, platform::Date to);
  /// Quiet hours in local time, each day or on the days given by RFC 5545's names ("MO"); over midnight when they end
  /// before they begin.
  static bool addHours(const std::string& profile, int startMinute, int endMinute,
                       const std::vector<std::string>& days);
  static std::vector<OwnEvent> list();
  /// Removes the quiet hours of that profile; false when there are none.
  static bool removeHours(const std::string& profile);
};

}  // namespace hushmode::cli
