// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/calendars/FolderWatch.h"
#include "devices/shared/CalendarFolder.h"
#include "devices/shared/CalendarSetSource.h"

#include <filesystem>

namespace hushmode::devices {

/// Calendars from a folder of iCalendar files, read again whenever something changes in it. Their identifiers begin
/// with "folder:". See `CalendarFolder`.
class WatchedCalendarFolder final : public CalendarSetSource {
 public:
  static constexpr const char* serviceName = "calendar folder";

  /// Reads the folder, which need not exist. `diagnostics` takes a line for each file that cannot be used.
  WatchedCalendarFolder(const std::filesystem::path& root, Services& services,
                        CalendarFolder::Diagnostics diagnostics = {});

 private:
  const CalendarSet& set() const override { return folder_.set(); }
  bool read();

  std::filesystem::path root_;
  Services& services_;
  CalendarFolder folder_;
  FolderWatch watch_;
};

}  // namespace hushmode::devices
