// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A day on which the host dies and starts again, at every moment at which something happens, and just before and after
// it.

#include "apps/simulation/Simulation.h"
#include "apps/simulation/TimeText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace hushmode::properties {
namespace {

using platform::Array;
using platform::Date;
using platform::Dictionary;
using simulation::Scenario;
using simulation::Step;

constexpr Date begin{1715673600};  // 14 May 2024, 08:00 UTC.
constexpr double hour = 3600;

Date at(double hours) { return begin.addingSeconds((hours - 8) * hour); }

/// Two profiles: one with everything that takes time, which follows two meetings, and one that follows a network.
Scenario workday() {
  Scenario scenario;
  scenario.zone = devices::TimeZone::named("UTC");
  scenario.from = begin;
  scenario.to = at(23);
  const Dictionary meetings{{"identifier", 5},
                            {"title", "Meetings"},
                            {"enabled", true},
                            {"startTime", "8:00 AM"},
                            {"endTime", "5:00 PM"},
                            {"ringerVolume", 0.25},
                            {"playBackVolume", 0.125},
                            {"playAlert", true},
                            {"vibrate", true},
                            {"wakeUpScreen", true},
                            {"dnDEnabled", true},
                            {"showOnStatusBar", true},
                            {"calendarIdentifiers", Array{"work"}},
                            {"allDayEventsIgnored", true}};
  Dictionary office = meetings;
  office.set("identifier", 6);
  office.set("title", "Office");
  office.set("playAlert", false);
  office.set("calendarIdentifiers", Array{"none"});
  office.set("wifiNetworks", Array{"Office"});
  scenario.profiles = {meetings, office};
  scenario.prepare.emplace_back([](devices::SimulatedPhone& phone) {
    phone.calendars().add({"1", "work", "Standup", at(9), at(10)});
    phone.calendars().add({"2", "work", "Review", at(9.5), at(10.5)});
  });
  const auto join = [](simulation::Simulation& s) {
    s.phone().wifi().join("Office");
    s.host().networkChanged();
  };
  const auto leave = [](simulation::Simulation& s) {
    s.phone().wifi().leave();
    s.host().networkChanged();
  };
  scenario.steps = {{at(9.25), [](simulation::Simulation& s) { s.phone().calendars().move("2", at(9.75), at(10.75)); }},
                    {at(12), join},
                    {at(14), leave}};
  return scenario;
}

struct Evening {
  bool anyApplied = false, ringtoneSaved = false, doNotDisturb = false, icon = false;
  float ringtone = 0;
  bool operator==(const Evening&) const = default;
};

void PrintTo(const Evening& evening, std::ostream* out) {
  *out << (evening.anyApplied ? "applied" : "nobody applied") << ", ringtone " << evening.ringtone
       << (evening.ringtoneSaved ? " with another saved" : "") << (evening.doNotDisturb ? ", do not disturb" : "")
       << (evening.icon ? ", icon" : "");
}

/// Plays the day with the host dead from each of `deaths` on for `seconds`, and adds the moments of its record to
/// `moments`.
Evening play(const std::vector<Date>& deaths, double seconds, std::set<double>* moments = nullptr) {
  Scenario scenario = workday();
  for (const Date death : deaths) {
    scenario.steps.push_back({death, [](simulation::Simulation& s) { s.kill(); }});
    scenario.steps.push_back({death.addingSeconds(seconds), [](simulation::Simulation& s) { s.start(); }});
  }
  std::stable_sort(scenario.steps.begin(), scenario.steps.end(),
                   [](const Step& a, const Step& b) { return a.at < b.at; });
  simulation::Audience audience;
  if (moments) {
    audience.entry = [moments](const devices::RecordEntry& entry) { moments->insert(entry.time.secondsSince1970()); };
  }
  audience.complaint = [](const std::string& text) { ADD_FAILURE() << text; };
  simulation::Simulation simulation(std::move(scenario), std::move(audience), simulation::Hosting::Least);
  simulation.run();
  Evening evening;
  for (const auto& profile : HMProfilesManager::sharedManager()->profiles()) {
    evening.anyApplied = evening.anyApplied || profile->isApplied();
  }
  const auto state = simulation::stateOf(simulation.phone());
  evening.ringtone = *state.ringtone;
  evening.doNotDisturb = *state.doNotDisturb;
  evening.icon = *state.icon;
  evening.ringtoneSaved = simulation.phone().defaults().valueForKey("com.quorvel.hushmode-ringtone").has_value();
  return evening;
}

const Evening asInTheMorning{false, false, false, false, 0.8F};

/// The moments of an undisturbed day after its first plan.
std::set<double> momentsOfTheDay() {
  std::set<double> moments;
  EXPECT_EQ(play({}, 0, &moments), asInTheMorning);
  moments.erase(begin.secondsSince1970());
  EXPECT_GT(moments.size(), 25U);
  return moments;
}

TEST(AHostThatDiesAndIsBackASecondLater, LeavesTheEveningAsItWas) {
  for (const double moment : momentsOfTheDay()) {
    for (const double beside : {-0.1, 0.0, 0.1}) {
      const Date death(moment + beside);
      EXPECT_EQ(play({death}, 1), asInTheMorning)
          << "died at " << simulation::isoTime(death, *devices::TimeZone::named("UTC"));
    }
  }
}

TEST(AHostThatIsAwayForALongTime, LeavesTheEveningAsItWas) {
  for (const double moment : momentsOfTheDay()) {
    const Date death(moment);
    EXPECT_EQ(play({death}, 1.5 * hour), asInTheMorning)
        << "died at " << simulation::isoTime(death, *devices::TimeZone::named("UTC"));
  }
}

TEST(AHostThatDiesAgainAndAgain, LeavesTheEveningAsItWas) {
  for (const double every : {7.0, 61.0, 607.0}) {
    std::vector<Date> deaths;
    for (double hours = 8.9; hours < 15; hours += every / hour) deaths.push_back(at(hours));
    EXPECT_EQ(play(deaths, 0.4), asInTheMorning) << "died every " << every << " s";
  }
}

}  // namespace
}  // namespace hushmode::properties
