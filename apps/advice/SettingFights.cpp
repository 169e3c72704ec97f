// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/SettingFights.h"

#include "apps/advice/ProfileRemedies.h"
#include "apps/profiles/MomentText.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <limits>
#include <map>

namespace hushmode::cli {

using platform::Date;
using platform::Dictionary;

namespace {

struct Span {
  Date start, end;
};

/// When each profile is on, in order; one that does not go off any more is on for ever.
std::map<std::int64_t, std::vector<Span>> spansOf(const std::vector<host::Switch>& switches) {
  std::map<std::int64_t, std::vector<Span>> spans;
  for (const host::Switch& each : switches) {
    auto& own = spans[each.identifier];
    if (each.on) {
      own.push_back({each.at, Date(std::numeric_limits<double>::infinity())});
    } else if (!own.empty()) {
      own.back().end = each.at;
    }
  }
  return spans;
}

std::optional<Date> firstTogether(const std::vector<Span>& some, const std::vector<Span>& others) {
  std::optional<Date> first;
  for (const Span& a : some) {
    for (const Span& b : others) {
      const Date start = std::max(a.start, b.start);
      if (start < std::min(a.end, b.end) && (!first || start < *first)) first = start;
    }
  }
  return first;
}

struct Difference {
  std::string text;     ///< "ringtone 5% and 20%, vibrate on and off"; empty for none.
  std::string options;  ///< That give the second profile the settings of the first.
};

Difference differenceOf(const Dictionary& first, const Dictionary& second) {
  Difference difference;
  for (const Setting& setting : profileSettings()) {
    if (setting.word != "ringtone" && setting.word != "media" && setting.word != "vibrate") continue;
    const std::string one = settingText(setting, first), other = settingText(setting, second);
    if (one == other) continue;
    difference.text += (difference.text.empty() ? "" : ", ") + tr("{0} {1} and {2}", setting.word, one, other);
    difference.options += fmt::format("{}--{} {}", difference.options.empty() ? "" : " ", setting.word, one);
  }
  return difference;
}

}  // namespace

void lintFights(const LintSubject& subject, const std::vector<ProfileRules>& rules, const devices::TimeZone& zone,
                std::vector<Finding>& findings) {
  auto spans = spansOf(subject.switches);
  for (std::size_t one = 0; one < rules.size(); ++one) {
    for (std::size_t other = one + 1; other < rules.size(); ++other) {
      const auto difference = differenceOf(subject.profiles[one], subject.profiles[other]);
      if (difference.text.empty()) continue;
      const auto first = firstTogether(spans[rules[one].identifier], spans[rules[other].identifier]);
      if (!first) continue;
      findings.push_back(
          {Severity::Warning, "profiles-fight",
           tr("\"{0}\" and \"{1}\" are both on, first on {2}, {3}, and differ: {4}. The one that goes on later holds.",
              rules[one].title, rules[other].title, simulation::dayHeading(*first, zone),
              simulation::minuteTime(*first, zone), difference.text),
           editCommand(rules[other], difference.options)});
    }
  }
}

}  // namespace hushmode::cli
