// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/MomentText.h"

#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/TimeText.h"
#include "apps/simulation/WrongValue.h"
#include "apps/terminal/Scanner.h"
#include "apps/words/NearTime.h"
#include "devices/words/Text.h"

#include <optional>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

constexpr std::size_t dayLength = std::string_view("2026-11-24").size();

/// Seconds east of UTC of a closing "+01:00", which is taken off; none when there is no such offset.
std::optional<int> takeOffset(std::string& text) {
  constexpr std::size_t length = std::string_view("+01:00").size();
  if (text.size() < dayLength + length) return std::nullopt;
  const char sign = text[text.size() - length];
  if (sign != '+' && sign != '-') return std::nullopt;
  Scanner scanner(std::string_view(text).substr(text.size() - length + 1));
  const auto hours = scanner.number(2, 2);
  if (!hours || *hours > 23 || !scanner.take(":")) return std::nullopt;
  const auto minutes = scanner.number(2, 2);
  if (!minutes || *minutes > 59) return std::nullopt;
  text.resize(text.size() - length);
  return (sign == '-' ? -1 : 1) * (*hours * 3600 + *minutes * 60);
}

std::optional<Date> withOffset(std::string text) {
  const auto offset = takeOffset(text);
  if (!offset || text.find('T') == std::string::npos) return std::nullopt;
  const auto asUtc = simulation::parseTime(text, *TimeZone::utc());
  return asUtc ? std::optional(asUtc->addingSeconds(-*offset)) : std::nullopt;
}

/// A clock of twelve or 24 hours on the local day of `day`.
std::optional<Date> clockOn(Date day, const std::string& clock, const TimeZone& zone) {
  const auto time = fileTimeOf(clock);
  const auto minute = time ? minuteOfDay(*time) : std::nullopt;
  if (!minute) return std::nullopt;
  return simulation::parseTime(fmt::format("{:02}:{:02}", *minute / 60, *minute % 60), zone, day);
}

}  // namespace

Date parseMoment(const std::string& text, const TimeZone& zone, Date now) {
  if (!simulation::isDateOnly(text)) {
    if (const auto moment = simulation::parseTime(text, zone, now)) return *moment;
    if (const auto moment = withOffset(text)) return *moment;
    if (const auto moment = clockOn(now, text, zone)) return *moment;
    if (text.size() > dayLength && (text[dayLength] == ' ' || text[dayLength] == 'T')) {
      const auto day = simulation::parseTime(text.substr(0, dayLength), zone);
      const auto moment = day ? clockOn(*day, text.substr(dayLength + 1), zone) : std::nullopt;
      if (moment) return *moment;
    }
  }
  const auto clock = nearestClock(text), day = nearestDay(text);
  // A day alone is no moment, whatever its form.
  const std::string near = clock ? *clock : day && !simulation::isDateOnly(*day) ? *day : "";
  throw simulation::wrongValue("--at " + text, tr("a time such as 14:20, 2:20pm or \"2026-11-24 14:20\""), near);
}

bool isSameDay(Date a, Date b, const TimeZone& zone) {
  return simulation::beginningOfLocalDay(a, zone) == simulation::beginningOfLocalDay(b, zone);
}

std::string momentText(Date date, Date today, const TimeZone& zone) {
  const std::string clock = simulation::minuteTime(date, zone);
  return isSameDay(date, today, zone) ? clock : tr("{0}, {1}", simulation::dayHeading(date, zone), clock);
}

}  // namespace hushmode::cli
