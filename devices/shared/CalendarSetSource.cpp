// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarSetSource.h"

namespace hushmode::devices {

std::vector<CalendarOccurrence> CalendarSetSource::occurrences(platform::Date from, platform::Date to,
                                                               const TimeZone& local) const {
  // The set leaves out what starts at the very end of the span.
  auto found = set().occurrences(from, to.addingSeconds(1), local);
  std::erase_if(found, [&](const CalendarOccurrence& each) { return each.start > to; });
  return found;
}

}  // namespace hushmode::devices
