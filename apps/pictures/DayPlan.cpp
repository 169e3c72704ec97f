// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/DayPlan.h"

#include "apps/profiles/ProfileRules.h"
#include "apps/simulation/TimeText.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

/// A profile, and the spans of the whole forecast in which it is on.
struct Planned {
  ProfileRules rules;
  std::vector<DaySpan> on;
  std::vector<PlannedSwitch> switches;
};

std::vector<Planned> plannedProfiles(const Forecast& forecast) {
  std::vector<Planned> profiles;
  for (const auto& each : forecast.profiles) {
    Planned profile{rulesOf(each, forecast.known.calendars), {}, {}};
    std::optional<Date> since;
    for (const host::Switch& change : forecast.switches) {
      if (change.identifier != profile.rules.identifier) continue;
      profile.switches.push_back({change.at, change.on});
      if (change.on && !since) since = change.at;
      if (!change.on && since) profile.on.push_back({*std::exchange(since, std::nullopt), change.at});
    }
    // A forecast of whole days ends just before the next one begins.
    if (since) profile.on.push_back({*since, Date(std::ceil(forecast.to.secondsSince1970()))});
    profiles.push_back(std::move(profile));
  }
  return profiles;
}

/// None when nothing of `span` lies within `day`. What has no length lies where it begins.
std::optional<DaySpan> cut(const DaySpan& span, const DaySpan& day) {
  const DaySpan part{std::max(span.start, day.start), std::min(span.end, day.end)};
  const bool isInstant = span.start == span.end;
  const bool isWithin = isInstant ? day.start <= span.start && span.start < day.end : part.start < part.end;
  return isWithin ? std::optional(part) : std::nullopt;
}

/// The host's rule decides; where it says no, it is asked again with one condition less, to find the one that failed.
Standing standingOf(host::Conditions conditions, const host::Happening& event, const DaySpan& part) {
  if (event.start == event.end) return Standing::NoLength;
  const auto isOn = [&] {
    const Date earliest = conditions.allDay ? part.start : std::max(part.start, conditions.windowStart);
    return host::expectation(conditions, {event}, earliest).on;
  };
  if (isOn()) return Standing::Counts;
  conditions.allDay = true;
  if (isOn()) return Standing::OutsideHours;
  if (event.status == platform::EKEventStatus::Canceled) return Standing::Cancelled;
  conditions.wantedStatus = 0;
  return isOn() ? Standing::OtherStatus : Standing::AllDayIgnored;
}

Lane laneOf(const Planned& profile, const std::vector<KnownEvent>& events, const DaySpan& day, const TimeZone& zone) {
  const host::Conditions conditions = conditionsOn(profile.rules, day.start, zone, false);
  Lane lane;
  lane.identifier = profile.rules.identifier;
  lane.title = profile.rules.title;
  lane.isAllDay = conditions.allDay;
  lane.window = conditions.allDay ? day : cut({conditions.windowStart, conditions.windowEnd}, day);
  for (const KnownEvent& each : events) {
    if (!follows(profile.rules, each)) continue;
    const auto part = cut({each.start, each.end}, day);
    if (!part) continue;
    lane.events.push_back({*part, each.start<day.start, each.end> day.end, each.title, each.allDay,
                           standingOf(conditions, happeningOf(each), *part)});
  }
  std::stable_sort(lane.events.begin(), lane.events.end(), [](const PlannedEvent& a, const PlannedEvent& b) {
    return std::pair(a.span.start, a.span.end) < std::pair(b.span.start, b.span.end);
  });
  for (const DaySpan& each : profile.on) {
    if (const auto part = cut(each, day)) lane.on.push_back(*part);
  }
  for (const PlannedSwitch& each : profile.switches) {
    if (day.start <= each.at && each.at < day.end) lane.switches.push_back(each);
  }
  return lane;
}

std::vector<Conflict> conflictsOf(const std::vector<Lane>& lanes) {
  std::vector<Date> moments;
  for (const Lane& lane : lanes) {
    for (const DaySpan& each : lane.on) moments.insert(moments.end(), {each.start, each.end});
  }
  std::sort(moments.begin(), moments.end());
  moments.erase(std::unique(moments.begin(), moments.end()), moments.end());
  std::vector<Conflict> conflicts;
  for (std::size_t i = 0; i + 1 < moments.size(); ++i) {
    const auto isOn = [&](const DaySpan& each) { return each.start <= moments[i] && moments[i] < each.end; };
    std::vector<std::size_t> together;
    for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
      if (std::any_of(lanes[lane].on.begin(), lanes[lane].on.end(), isOn)) together.push_back(lane);
    }
    if (together.size() < 2) continue;
    if (!conflicts.empty() && conflicts.back().span.end == moments[i] && conflicts.back().lanes == together) {
      conflicts.back().span.end = moments[i + 1];
    } else {
      conflicts.push_back({{moments[i], moments[i + 1]}, std::move(together)});
    }
  }
  return conflicts;
}

/// The clock may jump at the very beginning of a day; then midnight itself is skipped.
std::optional<ClockJump> jumpOf(const DaySpan& day, const TimeZone& zone) {
  auto before = static_cast<std::int64_t>(day.start.secondsSince1970()) - 1;
  auto after = static_cast<std::int64_t>(day.end.secondsSince1970()) - 1;
  const std::int64_t offset = zone.offsetAt(before);
  const auto seconds = static_cast<int>(zone.offsetAt(after) - offset);
  if (seconds == 0) return std::nullopt;
  while (after - before > 1) {
    const std::int64_t middle = before + (after - before) / 2;
    (zone.offsetAt(middle) == offset ? before : after) = middle;
  }
  return ClockJump{Date(static_cast<double>(after)), seconds};
}

}  // namespace

std::vector<DayPlan> dayPlans(const Forecast& forecast) {
  const TimeZone& zone = *forecast.zone;
  const auto profiles = plannedProfiles(forecast);
  std::vector<DayPlan> days;
  for (Date start = simulation::beginningOfLocalDay(forecast.from, zone); start < forecast.to;
       start = days.back().span.end) {
    DayPlan day{{start, simulation::beginningOfLocalDay(start, zone, 1)}, {}, {}, {}};
    for (const Planned& profile : profiles) {
      if (!profile.rules.enabled) continue;
      Lane lane = laneOf(profile, forecast.known.events, day.span, zone);
      if (!lane.events.empty() || !lane.on.empty() || !lane.switches.empty()) day.lanes.push_back(std::move(lane));
    }
    day.conflicts = conflictsOf(day.lanes);
    day.jump = jumpOf(day.span, zone);
    days.push_back(std::move(day));
  }
  return days;
}

}  // namespace hushmode::cli
