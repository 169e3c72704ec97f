// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ICalRecurrence.h"
#include "devices/shared/TimeZone.h"

#include <libical/ical.h>
#include <memory>

namespace hushmode::devices {

/// The zone that a VTIMEZONE component describes (RFC 5545, 3.6.5); null for one that it does not describe completely,
/// or whose rules are more work to follow than the budget allows. They are followed from 1950 to 2150.
///
/// Some programs describe only the years around their export. `wellKnown`, the zone that has this name elsewhere (null
/// if there is none), is asked about the time before the first change that the component tells of, and about that after
/// the last one when it has changes to daylight saving time but no rule for the future ones.
std::shared_ptr<const TimeZone> zoneOf(icalcomponent* vtimezone, WorkBudget& budget,
                                       std::shared_ptr<const TimeZone> wellKnown);

}  // namespace hushmode::devices
