// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <optional>

/// Which event a profile follows next: the decisions alone, over values.
namespace hushmode {

/// A profile's daily window, both bounds included.
struct Window {
  platform::Date start, end;
};

/// Whether an event that does not last all day qualifies at once. In progress it does. Otherwise, of an all-day profile
/// (no window) it does not, and of a timed one it does when it meets the window as `eventMeetsWindow` says: by the same
/// four clauses that listed it, asked again at this moment. The first and the last have no test for an end, so that
/// an event that is over can qualify.
bool qualifiesAtOnce(platform::Date eventStart, platform::Date eventEnd, const std::optional<Window>& window,
                     platform::Date now);

/// Whether, while nothing qualified at once, an event takes the place of the best so far (`bestStart`; none yet): it
/// must start at or after now, and at or before the best. So the earliest wins and, among equals, the last.
bool startsNext(platform::Date eventStart, const std::optional<platform::Date>& bestStart, platform::Date now);

/// Whether the chosen event is dropped in the end. The condition is inverted, and that is meant: an all-day event is
/// dropped exactly when the profile does not ignore all-day events.
constexpr bool isDroppedInTheEnd(bool eventAllDay, bool allDayEventsIgnored) {
  return eventAllDay && !allDayEventsIgnored;
}

}  // namespace hushmode
