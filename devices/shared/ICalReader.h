// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ICalEntry.h"
#include "devices/shared/ICalZones.h"

#include <string_view>

namespace hushmode::devices {

/// Reads the events of an iCalendar text. What cannot be used is left out and reported.
///
/// Each event is parsed by itself and only as far as its occurrences need it, so that neither the parser's tree of a
/// large file nor the descriptions, attendees and alarms in it cost memory or time. An event without a UID gets one
/// made of `source` and its place among such events.
ICalFile readICalFile(std::string_view text, std::string_view source, ICalZones& zones, const ICalProblem& problem);

}  // namespace hushmode::devices
