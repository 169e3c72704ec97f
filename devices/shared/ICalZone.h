#pragma once

#include "devices/shared/TimeZone.h"

#include <libical/ical.h>
#include <memory>

namespace hushmode::devices {

/// The zone that a VTIMEZONE component describes (RFC 5545, 3.6.5); null when it does not describe one completely, or
/// changes its clock more often than any zone does. Its rules are followed from 1950 to 2150.
///
/// Some programs describe only the years around their export. `wellKnown`, the zone that has this name elsewhere (null
/// if there is none), is asked about the time before the first change that the component tells of, and about that after
/// the last one when it has changes to daylight saving time but no rule for the future ones.
std::shared_ptr<const TimeZone> zoneOf(icalcomponent* vtimezone, std::shared_ptr<const TimeZone> wellKnown);

}  // namespace hushmode::devices
