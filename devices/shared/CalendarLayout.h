// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace hushmode::devices {

/// What tells whether a file is still the one that was read.
struct CalendarFileSignature {
  std::uint64_t inode = 0, size = 0;
  std::int64_t modifiedSeconds = 0, modifiedNanoseconds = 0;
  friend bool operator==(const CalendarFileSignature&, const CalendarFileSignature&) = default;
};

/// Where a calendar lies in the folder of calendars.
struct CalendarPlace {
  struct File {
    std::string path;
    CalendarFileSignature signature;
  };
  std::string identifier;    ///< Path below the root, with "/".
  std::string accountTitle;  ///< Name of the folder around it.
  std::string displayName;   ///< What its `displayname` file says; empty when it has none.
  std::string ownName;       ///< The name of its folder, or of its file without the suffix.
  bool writable = false;
  std::vector<File> files;  ///< Ordered by name.
};

/// Looks where calendars lie below `root`, see `CalendarFolder`. Ordered by identifier. Opens no calendar file. What
/// cannot be looked into is reported by one line and left out; a root that does not exist has no calendars.
std::vector<CalendarPlace> calendarPlaces(const std::filesystem::path& root,
                                          const std::function<void(const std::string&)>& report);

}  // namespace hushmode::devices
