// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

namespace hushmode {

/// Whether a timed profile's window, `windowStart` to `windowEnd`, lets an event count today. Of four clauses one must
/// hold, each exactly as it stands, gaps included:
///  1. the event covers the window (also after it has ended);
///  2. it starts before or with the window and ends before or with it, and has not ended (also before the window
///  opens);
///  3. it lies inside the window and has not ended;
///  4. it starts after or with the window's start and ends after or with its end (also after the window has closed).
bool eventMeetsWindow(platform::Date eventStart, platform::Date eventEnd, platform::Date windowStart,
                                   platform::Date windowEnd, platform::Date now);

}  // namespace hushmode
