// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ProfileRemedies.h"

#include "apps/profiles/ProfileWords.h"
#include "apps/terminal/ShellWord.h"
#include "apps/terminal/Terminal.h"
#include "devices/words/Text.h"

#include <algorithm>

namespace hushmode::cli {

namespace {

/// "17:30" of minutes after midnight.
std::string clockOf(int minutes) { return fmt::format("{:02}:{:02}", minutes / 60 % 24, minutes % 60); }

/// What somebody who wrote that time meant.
std::optional<int> meantBy(const WindowTime& time) {
  const auto normal = fileTimeOf(time.text);
  return normal ? minuteOfDay(*normal) : std::nullopt;
}

}  // namespace

std::string profileWord(const ProfileRules& rules) {
  const bool canBeTyped = rules.isNamedByTitle && !rules.title.empty() && rules.title.front() != '-' &&
                          harmless(rules.title) == rules.title;
  return canBeTyped ? shellWord(rules.title) : std::to_string(rules.identifier);
}

std::string editCommand(const ProfileRules& rules, const std::string& options) {
  return "hushmode profile edit " + profileWord(rules) + " " + options;
}

std::string hoursOverMidnight(const ProfileRules& rules) {
  const std::string allDay = editCommand(rules, "--all-day");
  const std::string start = clockOf(rules.start.minutes.value_or(0)), end = clockOf(rules.end.minutes.value_or(0));
  if (start == end) return allDay;
  return allDay + " && hushmode schedule " + profileWord(rules) + " " + start + "-" + end;
}

std::string windowAsMeant(const ProfileRules& rules) {
  const auto start = meantBy(rules.start), end = meantBy(rules.end);
  const bool isWindow = start && end && *start < *end;
  return editCommand(rules, "--window " + (isWindow ? clockOf(*start) + "-" + clockOf(*end) : "08:00-17:00"));
}

std::string calendarsOption(const std::vector<std::string>& identifiers, const std::vector<KnownCalendar>& calendars) {
  std::string names;
  for (const std::string& identifier : identifiers) {
    const std::string title = calendarTitle(identifier, calendars);
    const auto bearers =
        std::count_if(calendars.begin(), calendars.end(), [&](const auto& each) { return each.title == title; });
    const bool isClear = bearers == 1 && title.find(',') == std::string::npos && harmless(title) == title;
    names += (names.empty() ? "" : ", ") + (isClear ? title : identifier);
  }
  return "--calendars " + shellWord(names);
}

}  // namespace hushmode::cli
