// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/Explanation.h"

#include "apps/simulation/TimeText.h"

#include <algorithm>

namespace hushmode::cli {

using devices::TimeZone;
using host::Conditions;
using platform::Date;
using platform::EKEventStatus;

namespace {

/// Whether the event counts while it goes on, by the host's own rule; those without a length never go on.
bool countsOnceBegun(const ProfileRules& rules, const KnownEvent& event) {
  Conditions conditions;
  conditions.enabled = conditions.allDay = true;
  conditions.wantedStatus = rules.wantedStatus;
  conditions.allDayEventsIgnored = rules.allDayEventsIgnored;
  return host::expectation(conditions, {happeningOf(event)}, event.start).on;
}

Verdict verdictOf(const ProfileRules& rules, const KnownEvent& event, Date at) {
  if (!follows(rules, event)) return Verdict::OtherCalendar;
  if (event.start > at) return Verdict::NotBegun;
  if (event.end <= at) return Verdict::Ended;
  if (countsOnceBegun(rules, event)) return Verdict::Counts;
  if (event.status == EKEventStatus::Canceled) return Verdict::Cancelled;
  return event.allDay && rules.allDayEventsIgnored ? Verdict::AllDayIgnored : Verdict::OtherStatus;
}

std::vector<ExplainedEvent> explainedEvents(const ProfileRules& rules, const std::vector<KnownEvent>& events, Date at,
                                            Date nextDay) {
  const KnownEvent *previous = nullptr, *next = nullptr;
  for (const KnownEvent& each : events) {
    if (!follows(rules, each) || !countsOnceBegun(rules, each)) continue;
    if (each.end <= at && (!previous || each.end > previous->end)) previous = &each;
    if (each.start > at && each.start < nextDay && (!next || each.start < next->start)) next = &each;
  }
  std::vector<ExplainedEvent> explained;
  for (const KnownEvent& each : events) {
    const bool goesOn = each.start <= at && at < each.end;
    if (goesOn || &each == previous || &each == next) explained.push_back({each, verdictOf(rules, each, at)});
  }
  return explained;
}

WindowState windowState(const ProfileRules& rules, const Conditions& conditions, Date at) {
  if (rules.allDay) return WindowState::AllDay;
  if (!hasReadableWindow(rules)) return WindowState::Unreadable;
  if (!canOpen(rules)) return WindowState::NeverOpens;
  if (at < conditions.windowStart) return WindowState::NotYetOpen;
  return at < conditions.windowEnd ? WindowState::Open : WindowState::Over;
}

NetworkState networkState(const ProfileRules& rules, const Moment& moment) {
  if (rules.networks.empty()) return NetworkState::HasNone;
  if (!moment.isNetworkKnown) return NetworkState::NotKnown;
  const auto& names = rules.networks;
  const bool joined =
      moment.joinedNetwork && std::find(names.begin(), names.end(), *moment.joinedNetwork) != names.end();
  return joined ? NetworkState::Joined : NetworkState::NotJoined;
}

Condition firstFailed(const Explanation& explanation) {
  if (!explanation.moment.masterSwitch) return Condition::MasterSwitch;
  if (!explanation.rules.enabled) return Condition::Enabled;
  if (explanation.window != WindowState::AllDay && explanation.window != WindowState::Open) return Condition::Window;
  // Either would do; who follows calendars waits for an event of them.
  const bool isForNetworksOnly = explanation.rules.calendars.empty() && !explanation.rules.networks.empty();
  return isForNetworksOnly ? Condition::Network : Condition::Event;
}

/// Day by day, since each has a window of its own.
std::optional<Change> nextChangeAfter(const Explanation& explanation, const std::vector<KnownEvent>& own,
                                      const std::vector<host::Happening>& happenings, const TimeZone& zone) {
  const Date at = explanation.moment.at;
  for (int day = 0; day < lookAheadDays; ++day) {
    const Date midnight = simulation::beginningOfLocalDay(at, zone, day);
    const Date nextMidnight = simulation::beginningOfLocalDay(at, zone, day + 1);
    const Conditions conditions =
        conditionsOn(explanation.rules, midnight, zone, explanation.network == NetworkState::Joined);
    const auto expectedAt = [&](Date moment) { return host::expectation(conditions, happenings, moment); };
    std::optional<Date> change;
    if (day > 0 && expectedAt(midnight).on != explanation.on) change = midnight;
    if (!change) change = host::nextChange(conditions, happenings, day == 0 ? at : midnight);
    if (!change || *change >= nextMidnight) continue;
    const host::Expectation then = expectedAt(*change);
    return Change{*change, then.on, then.event ? std::optional(own[*then.event]) : std::nullopt};
  }
  return std::nullopt;
}

}  // namespace

Explanation explain(const ProfileRules& rules, const Moment& moment, const std::vector<KnownEvent>& events,
                    const TimeZone& zone) {
  Explanation explanation;
  explanation.rules = rules;
  explanation.moment = moment;
  explanation.network = networkState(rules, moment);
  const Conditions conditions = conditionsOn(rules, moment.at, zone, explanation.network == NetworkState::Joined);
  explanation.window = windowState(rules, conditions, moment.at);
  explanation.windowStart = conditions.windowStart;
  explanation.windowEnd = conditions.windowEnd;
  explanation.events = explainedEvents(rules, events, moment.at, simulation::beginningOfLocalDay(moment.at, zone, 1));

  std::vector<KnownEvent> own;
  std::vector<host::Happening> happenings;
  for (const KnownEvent& each : events) {
    if (!follows(rules, each)) continue;
    own.push_back(each);
    happenings.push_back(happeningOf(each));
  }
  const host::Expectation expected = host::expectation(conditions, happenings, moment.at);
  explanation.on = moment.masterSwitch && expected.on;
  if (explanation.on && expected.event) explanation.onFor = own[*expected.event];
  if (!explanation.on) explanation.failed = firstFailed(explanation);
  if (moment.masterSwitch) explanation.next = nextChangeAfter(explanation, own, happenings, zone);
  return explanation;
}

}  // namespace hushmode::cli
