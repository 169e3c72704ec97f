// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ICalEntry.h"

#include <libical/ical.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace hushmode::devices {

using ICalComponentPointer = std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)>;

/// The first component of the text; null when there is none.
ICalComponentPointer parsedComponent(const std::string& text);

/// Calls `visit` with each property of the kind.
template <class Visit>
void forEachProperty(icalcomponent* component, icalproperty_kind kind, Visit visit) {
  for (icalproperty* property = icalcomponent_get_first_property(component, kind); property != nullptr;
       property = icalcomponent_get_next_property(component, kind)) {
    visit(property);
  }
}

/// The value of a content line that holds text, unescaped. Unlike the parser's, with the blanks at its end.
std::string textOf(std::string_view line);

/// The TZID parameter; empty when there is none.
std::string_view timeZoneIdentifierOf(icalproperty* property);

/// The wall time of a value, its zone left aside; absent when it is not a time at all.
std::optional<WallTime> wallTimeOf(const icaltimetype& time);

/// The rule that the value of an RRULE writes. An UNTIL is on the wall clock of `start`. Absent when it cannot be
/// understood, or counts in a calendar other than the Gregorian.
std::optional<RecurrenceRule> recurrenceRuleOf(std::string_view value, const ICalTime& start);

}  // namespace hushmode::devices
