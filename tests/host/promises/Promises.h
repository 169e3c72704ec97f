// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/host/Life.h"

#include <ostream>

/// What the host promises whoever carries the phone: at each moment it is as quiet as the calendar says, and after the
/// last event everything is as it was, unless they changed it. Each promise is also kept when the host dies in the
/// midst of it, at any step, and is started again.
namespace hushmode::simulation {

// What is wanted of the phone at a moment.

inline const Change asBefore = [](PhoneState&) {};
/// As the profile "Work" asks.
inline const Change quiet = [](PhoneState& s) { s.ringtone = 0.25F, s.media = 0.125F; };
/// As a profile with every effect asks.
inline const Change quietWithAll = [](PhoneState& s) { quiet(s), s.doNotDisturb = true, s.icon = true; };
/// As the profile "Other" asks.
inline const Change otherQuiet = [](PhoneState& s) { s.ringtone = 0.5F, s.media = 0.25F; };

inline Change with(const Change& first, const Change& second) {
  return [=](PhoneState& state) { first(state), second(state); };
}

struct Promise {
  std::string name;
  std::string scenario;
  std::vector<Moment> moments = {};
  /// What is different in the end, made so by the phone's user. With several it is the first, unless a death makes it
  /// another.
  std::vector<Change> endings = {};

  Promise at(std::string time, Change wanted) const {
    Promise more = *this;
    more.moments.push_back({std::move(time), std::move(wanted)});
    return more;
  }
  /// The same, after that many of the steps.
  Promise atAfter(std::size_t steps, std::string time, Change wanted) const {
    Promise more = at(std::move(time), std::move(wanted));
    more.moments.back().after = steps;
    return more;
  }
  Promise endingWith(Change ending) const {
    Promise more = *this;
    more.endings.push_back(std::move(ending));
    return more;
  }
};

inline std::ostream& operator<<(std::ostream& out, const Promise& promise) { return out << promise.name; }

/// Kept on an undisturbed day.
class LongPromises : public ::testing::TestWithParam<Promise> {
 protected:
  void expectKept(const Life& life) const {
    const Promise& promise = GetParam();
    for (std::size_t i = 0; i < promise.moments.size(); ++i) {
      if (life.missed[i]) continue;
      PhoneState wanted = life.before;
      promise.moments[i].wanted(wanted);
      EXPECT_EQ(life.moments[i], wanted) << "at " << promise.moments[i].at
                                         << " not: " << differenceText(wanted, life.moments[i]);
    }
    std::string said;
    std::vector<Change> endings = promise.endings.empty() ? std::vector{asBefore} : promise.endings;
    if (!life.died) endings.resize(1);
    for (const Change& change : endings) {
      PhoneState wanted = life.before;
      change(wanted);
      if (life.end == wanted) return;
      said += "\n  not: " + differenceText(wanted, life.end);
    }
    ADD_FAILURE() << "in the end: " << differenceText(life.before, life.end) << said;
  }
  Life live(std::size_t deathAt = 0) const { return simulation::live(scenario_, GetParam().moments, deathAt); }

 private:
  const Scenario scenario_ = scenarioOf(GetParam().scenario);
};

/// Kept also when the host dies.
class Promises : public LongPromises {};

inline const auto nameOfPromise = [](const auto& info) { return info.param.name; };

/// The pieces of a scenario with one profile, "Work", which follows the calendar "work" from 8 to 17 and asks for 0.25
/// and 0.125.
struct DayParts {
  std::string events = "[]";
  std::string steps = "[]";
  std::string more = "";         ///< Of the profile.
  std::string otherEvents = "";  ///< Makes a second profile, "Other", which asks for 0.5 and 0.25, with these.
  std::string otherMore = "";
  std::string phone = "";
  std::string zone = "UTC";
  std::string from = "2024-05-14";
  std::string to = "";
  std::string hours = R"("startTime": "8:00 AM", "endTime": "5:00 PM", "allDayEventsIgnored": true)";
};

inline std::string profileText(int identifier, const std::string& title, const std::string& volumes,
                               const std::string& more) {
  return R"({"enabled": true, "identifier": )" + std::to_string(identifier) + R"(, "title": ")" + title + "\", " +
         volumes + ", " + more + "}";
}

inline std::string day(const DayParts& parts) {
  const bool two = !parts.otherEvents.empty();
  return R"({"zone": ")" + parts.zone + R"(", "from": ")" + parts.from + "\"" +
         (parts.to.empty() ? "" : R"(, "to": ")" + parts.to + "\"") + R"(, "phone": {"silentVibrate": true)" +
         (parts.phone.empty() ? "" : ", " + parts.phone) + R"(}, "profiles": [)" +
         profileText(5, "Work", R"("ringerVolume": 0.25, "playBackVolume": 0.125)",
                     parts.hours + R"(, "calendarIdentifiers": ["work"], "vibrate": true)" + parts.more) +
         (two ? ", " + profileText(
                           6, "Other", R"("ringerVolume": 0.5, "playBackVolume": 0.25)",
                           parts.hours + R"(, "calendarIdentifiers": ["other"], "vibrate": true)" + parts.otherMore)
              : "") +
         R"(], "calendars": [{"identifier": "work", "events": )" + parts.events + "}" +
         (two ? R"(, {"identifier": "other", "events": )" + parts.otherEvents + "}" : "") + R"(], "steps": )" +
         parts.steps + "}";
}

/// One event as a list.
inline std::string event(const std::string& start, const std::string& end, const std::string& more = "",
                         const std::string& uid = "1") {
  return R"({"uid": ")" + uid + R"(", "title": "Event )" + uid + R"(", "start": ")" + start + R"(", "end": ")" + end +
         "\"" + more + "}";
}
inline std::string list(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& each : items) text += (text.empty() ? "" : ", ") + each;
  return "[" + text + "]";
}
/// A step: step("09:30", "lock"), or with more members, each with a comma in front.
inline std::string step(const std::string& at, const std::string& what, const std::string& more = "") {
  return R"({"at": ")" + at + R"(", "do": ")" + what + "\"" + more + "}";
}

inline const std::string withTone = R"(, "playAlert": true)";
inline const std::string withAll =
    R"(, "playAlert": true, "dnDEnabled": true, "showOnStatusBar": true, "wakeUpScreen": true)";

}  // namespace hushmode::simulation
