#include "scheduler/EventChoice.h"

#include "model/DayHelpers.h"

namespace hushmode {

using platform::Date;

bool qualifiesAtOnce(Date eventStart, Date eventEnd, const std::optional<Window>& window, Date now) {
  if (hm_isBetweenDate(now, eventStart, eventEnd)) return true;
  if (!window) return false;
  const double start = eventStart - window->start, end = eventEnd - window->end;
  const bool goesOn = now - eventEnd < 0;
  if (start <= 0 && end >= 0) return true;
  if (start <= 0 && end <= 0 && goesOn) return true;
  if (start >= 0 && end <= 0 && goesOn) return true;
  return start >= 0 && end >= 0;
}

bool startsNext(Date eventStart, const std::optional<Date>& bestStart, Date now) {
  return eventStart >= now && (!bestStart || eventStart <= *bestStart);
}

}  // namespace hushmode
