// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/DayNames.h"

#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/JsonReader.h"
#include "apps/words/Clock.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <glib.h>
#include <memory>

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

}  // namespace

std::vector<std::string> parseDays(const std::string& text) {
  std::vector<std::string> codes;
  for (const std::string& each : splitList(text)) {
    const Day* day = dayNamed(each);
    if (!day) {
      throw simulation::InputError(tr("--days {}: expected days such as mon,tue,wed,thu,fri,sat,sun", text));
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
