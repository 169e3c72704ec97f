// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "scheduler/SwitchDecision.h"

#include <limits>

namespace hushmode {

using platform::Date;

std::int64_t wholeSeconds(double seconds) {
  constexpr auto lowest = std::numeric_limits<std::int32_t>::min(), highest = std::numeric_limits<std::int32_t>::max();
  if (!(seconds > lowest)) return lowest;
  if (!(seconds < highest)) return highest;
  return static_cast<std::int64_t>(seconds);
}

Switch switchOnNetwork(std::int64_t secondsToStart, std::int64_t secondsToEnd, bool profileApplied) {
  if (isStartNow(secondsToStart)) return Switch::On;
  return isEndNow(secondsToEnd) || profileApplied ? Switch::Off : Switch::Leave;
}

Switch switchByEvent(const FollowedEvent& event) {
  if ((isStartNow(event.secondsToStart) || event.occurring) && !event.applied) return Switch::On;
  if (isEndNow(event.secondsToEnd)) return Switch::Off;
  if (!event.applied) return Switch::Leave;
  return !event.occurring || event.endsWithWindowOrLater ? Switch::Off : Switch::Leave;
}

std::optional<Date> revertDate(const std::optional<Date>& eventEnd, const std::optional<Date>& windowEnd) {
  if (eventEnd && windowEnd && *eventEnd - *windowEnd > 0) return windowEnd;
  return eventEnd;
}

Date nextBoundary(Date windowStart, Date windowEnd, Date now) {
  return windowStart - now > 0 ? windowStart : windowEnd;
}

}  // namespace hushmode
