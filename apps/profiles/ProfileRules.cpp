// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ProfileRules.h"

#include "apps/client/ProfileStore.h"
#include "apps/profiles/ProfileWords.h"
#include "model/TimeOfDay.h"
#include "util/Numbers.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace hushmode::cli {

using platform::Array;
using platform::Date;
using platform::Dictionary;

namespace {

constexpr std::int64_t daySeconds = 86400;
/// No time of day that anybody means is later; sums of greater numbers would not fit.
constexpr std::int64_t mostHours = 100000, mostMinutes = 60 * mostHours;

/// As the rules count it: what is no text stands for nothing.
std::optional<std::vector<std::string>> countingTexts(const platform::Value* value) {
  const Array* array = value ? value->as<Array>() : nullptr;
  if (!array) return std::nullopt;
  std::vector<std::string> texts;
  for (const auto& each : *array) {
    if (auto text = textMeaning(&each)) texts.push_back(std::move(*text));
  }
  return texts;
}

WindowTime windowTime(const Dictionary& profile, const char* key) {
  const auto stored = textMeaning(profile.find(key));
  WindowTime time{stored.value_or("12:00 AM"), 0, true};
  try {
    const TimeOfDayText text = splitTimeOfDay(time.text);
    const std::int64_t hours = std::clamp<std::int64_t>(hourOfDay(text.hours, text.period), 0, mostHours);
    const std::int64_t minutes = std::clamp<std::int64_t>(leadingInteger(text.minutes), 0, mostMinutes);
    time.minutes = static_cast<int>(hours * 60 + minutes);
  } catch (const std::out_of_range&) {
    time.minutes.reset();
  }
  time.isUsual = time.minutes && minuteOfDay(time.text) == time.minutes;
  return time;
}

std::vector<std::string> writable(const std::vector<KnownCalendar>& calendars) {
  std::vector<std::string> identifiers;
  for (const KnownCalendar& each : calendars) {
    if (each.writable) identifiers.push_back(each.identifier);
  }
  return identifiers;
}

}  // namespace

ProfileRules rulesOf(const Dictionary& profile, const std::vector<KnownCalendar>& calendars) {
  ProfileRules rules;
  rules.identifier = identifierOf(profile);
  rules.title = titleOf(profile);
  rules.enabled = booleanMeaning(profile.find("enabled"));
  rules.allDay = booleanMeaning(profile.find("allDay"));
  rules.start = windowTime(profile, "startTime");
  rules.end = windowTime(profile, "endTime");
  auto identifiers = countingTexts(profile.find("calendarIdentifiers"));
  rules.calendars = identifiers ? std::move(*identifiers) : writable(calendars);
  rules.networks = countingTexts(profile.find("wifiNetworks")).value_or(std::vector<std::string>());
  const std::int64_t status = integerMeaning(profile.find("applyProfileEventStatus"));
  rules.wantedStatus = status >= 0 && status <= 3 ? status : 0;
  rules.allDayEventsIgnored = booleanMeaning(profile.find("allDayEventsIgnored"));
  return rules;
}

bool hasReadableWindow(const ProfileRules& rules) { return rules.allDay || (rules.start.minutes && rules.end.minutes); }

bool canOpen(const ProfileRules& rules) {
  return rules.allDay || (hasReadableWindow(rules) && *rules.start.minutes < *rules.end.minutes);
}

host::Conditions conditionsOn(const ProfileRules& rules, Date day, const devices::TimeZone& zone, bool onOwnNetwork) {
  host::Conditions conditions;
  conditions.enabled = rules.enabled;
  conditions.allDay = rules.allDay;
  conditions.onOwnNetwork = onOwnNetwork;
  conditions.wantedStatus = rules.wantedStatus;
  conditions.allDayEventsIgnored = rules.allDayEventsIgnored;
  if (rules.allDay || !hasReadableWindow(rules)) return conditions;
  const auto local = zone.localFromUtc(static_cast<std::int64_t>(std::floor(day.secondsSince1970())));
  const std::int64_t midnight = local - ((local % daySeconds) + daySeconds) % daySeconds;
  const auto at = [&](const WindowTime& time) {
    return Date(static_cast<double>(zone.utcFromLocal(midnight + *time.minutes * std::int64_t(60))));
  };
  conditions.windowStart = at(rules.start);
  conditions.windowEnd = at(rules.end);
  return conditions;
}

bool follows(const ProfileRules& rules, const KnownEvent& event) {
  return std::find(rules.calendars.begin(), rules.calendars.end(), event.calendar) != rules.calendars.end();
}

host::Happening happeningOf(const KnownEvent& event) { return {event.start, event.end, event.status, event.allDay}; }

}  // namespace hushmode::cli
