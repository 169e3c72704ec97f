// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalZone.h"

#include "devices/shared/ICalProperty.h"

#include <algorithm>
#include <string>
#include <vector>

namespace hushmode::devices {

namespace {

constexpr WallTime kRulesFrom = dayNumber(1950, 1, 1) * kSecondsPerDay;
constexpr WallTime kRulesTo = dayNumber(2150, 1, 1) * kSecondsPerDay;
/// A zone that still changes its clock here does so by a rule without end.
constexpr WallTime kEndless = dayNumber(2148, 1, 1) * kSecondsPerDay;
/// From `utc` on the clock is `offset` seconds ahead of UTC.
struct Transition {
  std::int64_t utc, offset, offsetBefore;
};

class ICalZone : public TimeZone {
 public:
  /// `transitions` is ordered and not empty. `others`, if there is one, is followed before the first transition and,
  /// unless `endless`, from the last one on.
  ICalZone(std::string name, std::vector<Transition> transitions, bool endless, std::shared_ptr<const TimeZone> others)
      : name_(std::move(name)), transitions_(std::move(transitions)), endless_(endless), others_(std::move(others)) {}

  const std::string& name() const override { return name_; }

  std::int64_t offsetAt(std::int64_t utc) const override {
    const auto next = firstAfter(utc);
    const bool known = next != transitions_.begin() && (endless_ || next != transitions_.end());
    if (!known && others_) return others_->offsetAt(utc);
    return next == transitions_.begin() ? next->offsetBefore : std::prev(next)->offset;
  }

  std::int64_t utcFromLocal(std::int64_t local) const override {
    const std::int64_t before = offsetAt(local - kSecondsPerDay), after = offsetAt(local + kSecondsPerDay);
    if (offsetAt(local - before) == before) return local - before;
    if (offsetAt(local - after) == after) return local - after;
    return local - before;
  }

  std::int64_t startOfDay(std::int64_t localMidnight) const override {
    const std::int64_t utc = utcFromLocal(localMidnight);
    if (localFromUtc(utc) == localMidnight) return utc;
    // The clock jumped over midnight: the day begins with the jump.
    const auto next = firstAfter(utc);
    return next == transitions_.begin() ? utc : std::prev(next)->utc;
  }

 private:
  std::vector<Transition>::const_iterator firstAfter(std::int64_t utc) const {
    return std::upper_bound(
        transitions_.begin(), transitions_.end(), utc,
        [](std::int64_t instant, const Transition& transition) { return instant < transition.utc; });
  }

  std::string name_;
  std::vector<Transition> transitions_;
  bool endless_;
  std::shared_ptr<const TimeZone> others_;
};

/// The offset that a property of the observance gives; absent when it does not.
std::optional<int> offsetOf(icalcomponent* observance, icalproperty_kind kind) {
  icalproperty* property = icalcomponent_get_first_property(observance, kind);
  if (property == nullptr) return std::nullopt;
  return kind == ICAL_TZOFFSETFROM_PROPERTY ? icalproperty_get_tzoffsetfrom(property)
                                            : icalproperty_get_tzoffsetto(property);
}

/// Appends the transitions of one STANDARD or DAYLIGHT; false when it is not usable.
bool appendTransitions(icalcomponent* observance, WorkBudget& budget, std::vector<Transition>& transitions) {
  const std::optional<int> before = offsetOf(observance, ICAL_TZOFFSETFROM_PROPERTY);
  const std::optional<int> offset = offsetOf(observance, ICAL_TZOFFSETTO_PROPERTY);
  icalproperty* first = icalcomponent_get_first_property(observance, ICAL_DTSTART_PROPERTY);
  const std::optional<WallTime> start = first != nullptr ? wallTimeOf(icalproperty_get_dtstart(first)) : std::nullopt;
  if (!before || !offset || !start) return false;

  const ICalTime firstOnset{*start};
  std::vector<WallTime> onsets{firstOnset.wall};
  forEachProperty(observance, ICAL_RDATE_PROPERTY, [&](icalproperty* property) {
    if (const auto wall = wallTimeOf(icalproperty_get_rdate(property).time)) onsets.push_back(*wall);
  });
  bool complete = true;
  forEachProperty(observance, ICAL_RRULE_PROPERTY, [&](icalproperty* property) {
    const std::string_view text = icalproperty_get_value_as_string(property);
    auto rule = recurrenceRuleOf(text, firstOnset);
    if (!rule) return;
    // The UNTIL of an observance is in UTC (then the text has a "Z"), its onsets are in local time.
    if (rule->until && text.find('Z') != std::string_view::npos) *rule->until += *before;
    complete = ICalRecurrence(*rule, firstOnset.wall).expand(kRulesFrom, kRulesTo, budget, onsets) && complete;
  });
  for (const WallTime onset : onsets) transitions.push_back({onset - *before, *offset, *before});
  return complete;
}

}  // namespace

std::shared_ptr<const TimeZone> zoneOf(icalcomponent* vtimezone, WorkBudget& budget,
                                       std::shared_ptr<const TimeZone> wellKnown) {
  icalproperty* identifier = icalcomponent_get_first_property(vtimezone, ICAL_TZID_PROPERTY);
  if (identifier == nullptr) return nullptr;
  std::vector<Transition> transitions;
  for (const auto kind : {ICAL_XSTANDARD_COMPONENT, ICAL_XDAYLIGHT_COMPONENT}) {
    for (icalcomponent* observance = icalcomponent_get_first_component(vtimezone, kind); observance != nullptr;
         observance = icalcomponent_get_next_component(vtimezone, kind)) {
      if (!appendTransitions(observance, budget, transitions)) return nullptr;
    }
  }
  if (transitions.empty()) return nullptr;
  std::sort(transitions.begin(), transitions.end(),
            [](const Transition& a, const Transition& b) { return a.utc < b.utc; });
  const bool hasDaylight = icalcomponent_get_first_component(vtimezone, ICAL_XDAYLIGHT_COMPONENT) != nullptr;
  const bool endless = !hasDaylight || transitions.back().utc > kEndless;
  return std::make_shared<ICalZone>(icalproperty_get_tzid(identifier), std::move(transitions), endless,
                                    std::move(wellKnown));
}

}  // namespace hushmode::devices
