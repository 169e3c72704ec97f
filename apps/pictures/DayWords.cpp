// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/DayWords.h"

#include "apps/profiles/ClockText.h"
#include "devices/words/Text.h"

#include <cmath>
#include <cstdlib>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

int minuteOn(std::int64_t utc, const TimeZone& zone) {
  const std::int64_t local = zone.localFromUtc(utc);
  return static_cast<int>((local % 86400 + 86400) % 86400 / 60);
}

}  // namespace

std::string clockOn(const DayPlan& day, Date at, const TimeZone& zone) {
  if (at >= day.span.end) return clockText(1440);
  return clockText(minuteOn(static_cast<std::int64_t>(std::floor(at.secondsSince1970())), zone));
}

std::string spanText(const DayPlan& day, const DaySpan& span, const TimeZone& zone) {
  if (span == day.span) return tr("all day");
  if (span.start == day.span.start) return tr("until {}", clockOn(day, span.end, zone));
  if (span.end == day.span.end) return tr("from {}", clockOn(day, span.start, zone));
  return tr("{0}–{1}", clockOn(day, span.start, zone), clockOn(day, span.end, zone));
}

std::string hoursText(const DayPlan& day, const Lane& lane, const TimeZone& zone) {
  return lane.window ? spanText(day, *lane.window, zone) : tr("closed today");
}

std::string jumpText(const DayPlan& day, const TimeZone& zone) {
  const auto at = static_cast<std::int64_t>(day.jump->at.secondsSince1970());
  const int before = (minuteOn(at - 1, zone) + 1) % 1440, after = minuteOn(at, zone);
  return day.jump->seconds > 0 ? tr("{0} to {1} skipped", clockText(before), clockText(after))
                               : tr("{0} to {1} repeated", clockText(after), clockText(before == 0 ? 1440 : before));
}

std::string conflictText(const DayPlan& day, const Conflict& conflict, const TimeZone& zone) {
  const std::string when = spanText(day, conflict.span, zone);
  const std::string& first = day.lanes[conflict.lanes[0]].title;
  if (conflict.lanes.size() == 2) {
    return tr("{0}: {1} and {2} are both on", when, first, day.lanes[conflict.lanes[1]].title);
  }
  return trCount("{1}: {2} and {0} other are on", "{1}: {2} and {0} others are on", conflict.lanes.size() - 1, when,
                 first);
}

std::string titleOf(const PlannedEvent& event) {
  return event.title && !event.title->empty() ? *event.title : tr("(no title)");
}

std::string eventText(const DayPlan& day, const PlannedEvent& event, const std::string& title, const TimeZone& zone) {
  const std::string timed =
      event.allDay || event.beganBefore ? title : tr("{0} {1}", clockOn(day, event.span.start, zone), title);
  switch (event.standing) {
    case Standing::Counts:
      return timed;
    case Standing::OutsideHours:
      return tr("{} (outside the hours)", timed);
    case Standing::Cancelled:
      return tr("{} (cancelled)", timed);
    case Standing::OtherStatus:
      return tr("{} (other status)", timed);
    case Standing::AllDayIgnored:
      return tr("{} (all day, ignored)", timed);
    case Standing::NoLength:
      return tr("{} (no length)", timed);
  }
  return timed;
}

std::string nothingText() { return tr("Nothing is planned."); }

}  // namespace hushmode::cli
