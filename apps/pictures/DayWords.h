// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/pictures/DayPlan.h"

#include <string>

/// What pictures of days say, in the user's language. Titles are as they were given: to be made harmless by who shows
/// them.
namespace hushmode::cli {

/// "09:30"; "24:00" at the end of the day.
std::string clockOn(const DayPlan& day, platform::Date at, const devices::TimeZone& zone);

/// "09:30–09:45"; "from 22:00", "until 06:00" or "all day" for what is cut at the day's ends.
std::string spanText(const DayPlan& day, const DaySpan& span, const devices::TimeZone& zone);

/// "08:00–18:00", "all day", or "closed today".
std::string hoursText(const DayPlan& day, const Lane& lane, const devices::TimeZone& zone);

/// "02:00 to 03:00 skipped"; for a day with a jump.
std::string jumpText(const DayPlan& day, const devices::TimeZone& zone);

/// "20:00–21:00: Evening and Work are both on".
std::string conflictText(const DayPlan& day, const Conflict& conflict, const devices::TimeZone& zone);

/// `title` with what the picture has to say of the event: "09:30 Standup", "Budget review (cancelled)".
std::string eventText(const DayPlan& day, const PlannedEvent& event, const std::string& title,
                      const devices::TimeZone& zone);
std::string titleOf(const PlannedEvent& event);

/// "Nothing is planned."
std::string nothingText();

}  // namespace hushmode::cli
