// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarFolder.h"
#include "devices/shared/CalendarSetSource.h"

#include <filesystem>
#include <string>

namespace hushmode::devices {

/// Calendars from a folder of iCalendar files.
class FolderCalendars final : public CalendarSetSource {
 public:
  /// Reads the folder. See `CalendarFolder`.
  explicit FolderCalendars(std::filesystem::path root, CalendarFolder::Diagnostics diagnostics = {},
                           std::string identifierPrefix = {});

  /// Looks at the folder again; tells of a change, and answers whether there was one.
  bool rescan();

 private:
  const CalendarSet& set() const override { return folder_.set(); }

  CalendarFolder folder_;
};

}  // namespace hushmode::devices
