// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/Forecast.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A forecast by local days: what pictures of it draw.
namespace hushmode::cli {

/// `start` <= `end`; the end does not belong to it.
struct DaySpan {
  platform::Date start{0}, end{0};
  bool operator==(const DaySpan&) const = default;
};

/// Whether an event switches its profile on, on that day; and why not.
enum class Standing {
  Counts,
  OutsideHours,  ///< Its profile's window is not open while it goes on.
  Cancelled,
  OtherStatus,    ///< Its profile wants events of another status.
  AllDayIgnored,  ///< Its profile ignores events that last all day.
  NoLength,
};

struct PlannedEvent {
  DaySpan span;  ///< The part within the day.
  bool beganBefore = false, goesOn = false;
  std::optional<std::string> title;
  bool allDay = false;
  Standing standing = Standing::Counts;
};

struct PlannedSwitch {
  platform::Date at{0};
  bool on = false;
};

/// One profile on one day.
struct Lane {
  std::int64_t identifier = 0;
  std::string title;                    ///< As `titleOf` says.
  bool isAllDay = false;                ///< Its window is the whole day.
  std::optional<DaySpan> window;        ///< None when it does not open.
  std::vector<PlannedEvent> events;     ///< Ordered by start, end.
  std::vector<DaySpan> on;              ///< The parts within the day, in order.
  std::vector<PlannedSwitch> switches;  ///< In order.
};

/// Several profiles are on at the same time, and only one of them can decide what the phone sounds like.
struct Conflict {
  DaySpan span;
  std::vector<std::size_t> lanes;  ///< Places in the day's list.
};

/// The clock is changed, to or from daylight saving.
struct ClockJump {
  platform::Date at{0};
  int seconds = 0;  ///< Ahead, so much of the local time is skipped; back (below 0), so much of it is repeated.
};

struct DayPlan {
  DaySpan span;  ///< From local midnight to local midnight: 23, 24 or 25 hours, seldom others.
  std::optional<ClockJump> jump;
  std::vector<Lane> lanes;  ///< Of the enabled profiles that have events or are on that day, in the profiles' order.
  std::vector<Conflict> conflicts;  ///< In order.
};

/// One for each local day that the forecast touches.
std::vector<DayPlan> dayPlans(const Forecast& forecast);

}  // namespace hushmode::cli
