// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <cstdint>
#include <optional>

/// On or off at this second: the decisions alone, over values.
namespace hushmode {

/// Seconds truncated toward zero to 32 bits; beyond them the nearest bound. Thresholds compare these integers, so the
/// band around a start is open at -5 and at 10 seconds, and the band around an end at -5 and at 1.
std::int64_t wholeSeconds(double seconds);

/// Whether a start counts as now: from 4 seconds ago to 9 ahead.
constexpr bool isStartNow(std::int64_t secondsToStart) { return secondsToStart > -5 && secondsToStart < 10; }
/// Whether an end counts as now: from 4 seconds ago to this second.
constexpr bool isEndNow(std::int64_t secondsToEnd) { return secondsToEnd > -5 && secondsToEnd <= 0; }

enum class Switch { On, Off, Leave };

/// A timed profile on one of its networks, by its window's bounds.
Switch switchOnNetwork(std::int64_t secondsToStart, std::int64_t secondsToEnd, bool profileApplied);

struct FollowedEvent {
  std::int64_t secondsToStart = 0, secondsToEnd = 0;
  bool occurring = false;
  bool applied = false;  ///< Through this event.
  bool endsWithWindowOrLater = false;
};

/// A profile by the event that it follows.
Switch switchByEvent(const FollowedEvent& event);

/// When an applied profile is to be reverted: the event's end, but not later than the window's (`windowEnd`; none for
/// an all-day profile, whose event may end tomorrow). None without an event.
std::optional<platform::Date> revertDate(const std::optional<platform::Date>& eventEnd,
                                         const std::optional<platform::Date>& windowEnd);

/// The window's next bound: its start while that is ahead, else its end.
platform::Date nextBoundary(platform::Date windowStart, platform::Date windowEnd, platform::Date now);

}  // namespace hushmode
