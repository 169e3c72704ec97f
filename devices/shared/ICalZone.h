#pragma once

#include "devices/shared/TimeZone.h"

#include <libical/ical.h>
#include <memory>

namespace hushmode::devices {

/// The zone that a VTIMEZONE component describes (RFC 5545, 3.6.5); null when it does not describe one completely, or
/// changes its clock more often than any zone does. Its rules are followed from 1950 to 2150.
std::shared_ptr<const TimeZone> zoneOf(icalcomponent* vtimezone);

}  // namespace hushmode::devices
