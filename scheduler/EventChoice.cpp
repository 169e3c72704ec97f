// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "scheduler/EventChoice.h"

#include "calendar/EventMatch.h"
#include "model/DayHelpers.h"

namespace hushmode {

using platform::Date;

bool qualifiesAtOnce(Date eventStart, Date eventEnd, const std::optional<Window>& window, Date now) {
  if (hm_isBetweenDate(now, eventStart, eventEnd)) return true;
  if (!window) return false;
  return eventMeetsWindow(eventStart, eventEnd, window->start, window->end, now);
}

bool startsNext(Date eventStart, const std::optional<Date>& bestStart, Date now) {
  return eventStart >= now && (!bestStart || eventStart <= *bestStart);
}

}  // namespace hushmode
