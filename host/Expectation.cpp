// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/Expectation.h"

#include <algorithm>

namespace hushmode::host {

using platform::Date;
using platform::EKEventStatus;

namespace {

bool isOpen(const Conditions& conditions, Date now) {
  return conditions.allDay || (conditions.windowStart <= now && now < conditions.windowEnd);
}

bool counts(const Conditions& conditions, const Happening& event) {
  if (event.status == EKEventStatus::Canceled) return false;
  if (event.allDay && conditions.allDayEventsIgnored) return false;
  return conditions.wantedStatus <= 0 || static_cast<std::int64_t>(event.status) == conditions.wantedStatus;
}

}  // namespace

Expectation expectation(const Conditions& conditions, const std::vector<Happening>& events, Date now) {
  if (!conditions.enabled || !isOpen(conditions, now)) return {};
  if (conditions.onOwnNetwork) return {.on = true, .byNetwork = true, .event = {}};
  Expectation answer;
  for (std::size_t index = 0; index < events.size(); ++index) {
    const Happening& event = events[index];
    if (!counts(conditions, event) || now < event.start || event.end <= now) continue;
    if (!answer.event || event.end > events[*answer.event].end) answer.event = index;
    answer.on = true;
  }
  return answer;
}

std::optional<Date> nextChange(const Conditions& conditions, const std::vector<Happening>& events, Date now) {
  if (!conditions.enabled) return std::nullopt;
  std::vector<Date> moments;
  const auto add = [&](Date moment) {
    if (moment > now) moments.push_back(moment);
  };
  if (!conditions.allDay) {
    add(conditions.windowStart);
    add(conditions.windowEnd);
  }
  for (const Happening& event : events) {
    add(event.start);
    add(event.end);
  }
  std::sort(moments.begin(), moments.end());
  const bool on = expectation(conditions, events, now).on;
  const auto change = std::find_if(moments.begin(), moments.end(),
                                   [&](Date moment) { return expectation(conditions, events, moment).on != on; });
  return change == moments.end() ? std::nullopt : std::optional(*change);
}

std::optional<Date> onUntil(const Conditions& conditions, const std::vector<Happening>& events, Date now) {
  if (!expectation(conditions, events, now).on) return std::nullopt;
  return nextChange(conditions, events, now);
}

}  // namespace hushmode::host
