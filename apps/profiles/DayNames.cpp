// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/DayNames.h"

#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/WrongValue.h"
#include "apps/words/Clock.h"
#include "apps/words/Nearest.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <glib.h>
#include <memory>
#include <optional>

namespace hushmode::cli {

namespace {

struct Day {
  const char *code, *shortName, *name;
};

/// From Sunday on, as the language's days are counted.
constexpr std::array<Day, 7> days{{{"SU", "sun", "sunday"},
                                   {"MO", "mon", "monday"},
                                   {"TU", "tue", "tuesday"},
                                   {"WE", "wed", "wednesday"},
                                   {"TH", "thu", "thursday"},
                                   {"FR", "fri", "friday"},
                                   {"SA", "sat", "saturday"}}};

/// A name without its letter case, and without the dot that closes an abbreviation.
std::string comparable(const std::string& name) {
  const std::unique_ptr<char, decltype(&g_free)> folded(g_utf8_casefold(name.data(), static_cast<gssize>(name.size())),
                                                        &g_free);
  std::string text = folded.get();
  if (text.ends_with('.')) text.pop_back();
  return text;
}

/// English first: what is in documents and scripts means the same in every language.
const Day* dayNamed(const std::string& given) {
  if (!g_utf8_validate(given.data(), static_cast<gssize>(given.size()), nullptr)) return nullptr;
  const std::string name = comparable(given);
  for (const Day& each : days) {
    if (name == each.shortName || name == each.name) return &each;
  }
  for (unsigned i = 0; i < days.size(); ++i) {
    if (name == comparable(shortWeekday(i)) || name == comparable(longWeekday(i))) return &days[i];
  }
  return nullptr;
}

/// The day of that name, or of the nearest one: its place in `days`.
std::optional<std::size_t> nearestDayOfWeek(const std::string& name) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < days.size(); ++i) {
    const auto weekday = static_cast<unsigned>(i);
    names.insert(names.end(), {days[i].shortName, days[i].name, shortWeekday(weekday), longWeekday(weekday)});
  }
  const Day* named = dayNamed(name);
  const Day* day = named ? named : dayNamed(nearestOf(name, names));
  return day ? std::optional(static_cast<std::size_t>(day - days.data())) : std::nullopt;
}

/// The days of one entry that is no day: "mon-fri", "weekdays", "wedd". None where it is like nothing.
std::vector<std::size_t> nearestDaysOfWeek(const std::string& entry) {
  if (!nearestOf(entry, {"weekday", "weekdays", "workdays"}).empty()) return {1, 2, 3, 4, 5};
  if (!nearestOf(entry, {"weekend", "weekends"}).empty()) return {6, 0};
  const auto dash = entry.find('-');
  const auto from = nearestDayOfWeek(entry.substr(0, dash));
  const auto to = dash == std::string::npos ? from : nearestDayOfWeek(entry.substr(dash + 1));
  if (!from || !to) return {};
  std::vector<std::size_t> meant{*from};
  while (meant.back() != *to) meant.push_back((meant.back() + 1) % days.size());
  return meant;
}

/// The list that was most likely meant: "mon,tue,wed" for "mon,tu,wedd"; empty as soon as one entry is like nothing.
std::string nearestDays(std::string text) {
  std::replace(text.begin(), text.end(), ' ', ',');
  std::string list;
  for (const std::string& each : splitList(text)) {
    const auto meant = nearestDaysOfWeek(each);
    if (meant.empty()) return "";
    for (const std::size_t day : meant) list += (list.empty() ? "" : ",") + std::string(days[day].shortName);
  }
  return list;
}

}  // namespace

std::vector<std::string> parseDays(const std::string& text) {
  std::vector<std::string> codes;
  for (const std::string& each : splitList(text)) {
    const Day* day = dayNamed(each);
    if (!day) {
      throw simulation::wrongValue("--days " + text, tr("days such as mon,tue,wed,thu,fri,sat,sun"), nearestDays(text));
    }
    codes.emplace_back(day->code);
  }
  return codes;
}

std::string daysText(const std::string& text) {
  if (text == "daily") return tr("every day");
  const auto codes = splitList(text);
  std::string list;
  for (unsigned i = 0; i < days.size(); ++i) {
    const unsigned day = (firstWeekday() + i) % days.size();
    if (std::find(codes.begin(), codes.end(), days[day].code) == codes.end()) continue;
    list = list.empty() ? shortWeekday(day) : tr("{0}, {1}", list, shortWeekday(day));
  }
  return list;
}

}  // namespace hushmode::cli
