// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "calendar/EventMatch.h"

namespace hushmode {

bool eventMeetsWindow(platform::Date eventStart, platform::Date eventEnd, platform::Date windowStart,
                      platform::Date windowEnd, platform::Date now) {
  const double start = eventStart - windowStart, end = eventEnd - windowEnd;
  const bool goesOn = now - eventEnd < 0;
  if (start <= 0 && end >= 0) return true;
  if (start <= 0 && end <= 0 && goesOn) return true;
  if (start >= 0 && end <= 0 && goesOn) return true;
  return start >= 0 && end >= 0;
}

}  // namespace hushmode
