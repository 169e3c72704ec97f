// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarContents.h"
#include "devices/shared/CalendarLayout.h"
#include "devices/shared/ICalZones.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The files that a calendar was read from.
class CalendarFiles {
 public:
  using Report = CalendarContents::Report;

  /// Reads the files that are new or changed into `contents`, and takes out those that are gone. Answers whether
  /// `contents` changed.
  ///
  /// A file that cannot be read any more, or that is half-written, leaves in place what it held before, until it can be
  /// read again.
  bool update(const std::vector<CalendarPlace::File>& files, CalendarContents& contents, ICalZones& zones,
              const Report& report);

  /// Files larger than this are not read.
  static constexpr std::uint64_t kLargestFile = 64U << 20;

 private:
  struct Known {
    CalendarFileSignature signature;  ///< At the last look at it.
    CalendarFileSignature taken;      ///< Of what the contents hold of it.
    bool takenWhole = false;
    bool isUnreadable = false;
    std::string obstacle;  ///< Why the contents hold something older, or nothing; empty for neither.
  };

  bool read(const CalendarPlace::File& file, Known& known, CalendarContents& contents, ICalZones& zones,
            const Report& report);

  std::map<std::string, Known, std::less<>> known_;  ///< By path.
};

}  // namespace hushmode::devices
