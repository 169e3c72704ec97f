// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/advice/AppliedState.h"
#include "apps/advice/Explanation.h"
#include "apps/client/Json.h"
#include "apps/terminal/Terminal.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace hushmode::cli {

/// The explanation for people: a heading, the conditions in order with the first that failed marked, the events, and
/// the conclusion.
void print(std::ostream& out, const Terminal& terminal, const Explanation& explanation,
           const std::vector<KnownCalendar>& calendars, const devices::TimeZone& zone);

/// "Meetings is off at 14:20: no event of its calendars goes on then. Next: on at 14:30 for "Interview"."
std::string conclusion(const Explanation& explanation, const devices::TimeZone& zone);

/// One object; `state` where the moment is now and a daemon runs.
Json jsonOf(const Explanation& explanation, const std::optional<AppliedState>& state, const devices::TimeZone& zone);

}  // namespace hushmode::cli
