// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What planning costs, nobody listening to the log: choosing an event, planning all profiles, switching one, loading
// and saving them.

#include "calendar/EventBinding.h"
#include "devices/shared/TimeZone.h"
#include "devices/simulated/SimulatedPhone.h"
#include "platform/Process.h"
#include "store/HMProfilesManager.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

using namespace hushmode;
using platform::Array;
using platform::Date;
using platform::Dictionary;

constexpr double day = 1715644800;  // 2024-05-14 00:00 UTC, a Tuesday

std::string calendarName(int i) { return "calendar-" + std::to_string(i); }

Dictionary profileDictionary(int i, int calendars) {
  Array identifiers;
  for (int c = 0; c < calendars; ++c) identifiers.emplace_back(calendarName(c));
  return {{"identifier", 1700000000 + i},
          {"title", "Profile " + std::to_string(i)},
          {"enabled", true},
          {"allDay", false},
          {"ringerVolume", 0.0625},
          {"playBackVolume", 0.0},
          {"deviceVolume", 0.0},
          {"playAlert", false},
          {"vibrate", true},
          {"vibrateAlert", true},
          {"showOnStatusBar", false},
          {"dnDEnabled", false},
          {"applyProfileEventStatus", 0},
          {"applied", false},
          {"alertSound", 1005},
          {"alertToneIdentifier", "texttone:Calendar Alert"},
          {"calendarIdentifiers", std::move(identifiers)},
          {"startTime", "8:00 AM"},
          {"endTime", "5:00 PM"},
          {"wifiNetworks", Array{}},
          {"wakeUpScreen", false},
          {"allDayEventsIgnored", true}};
}

/// A phone at 06:00 with profiles and events of today, at which nobody listens.
struct Bench {
  Bench(int profiles, int events, int calendars = 4) : phone(Date(day + 6 * 3600)), process(phone) {
    phone.record().setListening(false);
    phone.record().setKeepsEntries(false);
    for (int c = 0; c < calendars; ++c) phone.calendars().addCalendar(calendarName(c), calendarName(c));
    for (int e = 0; e < events; ++e) {
      const double start = day + 9 * 3600 + e * (28800.0 / events);
      phone.calendars().add({"event-" + std::to_string(e) + "@example.org", calendarName(e % calendars),
                             "Event number " + std::to_string(e), Date(start), Date(start + 600)});
    }
    Array list;
    for (int p = 0; p < profiles; ++p) list.emplace_back(profileDictionary(p, calendars));
    phone.files().memory().set(HMProfilesManager::profilesPath, list);
    phone.files().memory().set(HMProfilesManager::settingsPath, Dictionary{{"com.quorvel.hushmode.enabled", true}});
    manager = HMProfilesManager::sharedManager();
  }

  devices::SimulatedPhone phone;
  platform::Process process;
  std::shared_ptr<HMProfilesManager> manager;
};

/// The worst case: all events are over but the last, so that every one is looked at.
void chooseAnEvent(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  Bench bench(1, 0);
  const auto profile = bench.manager->profiles().front();
  HMProfilesManager::Events events;
  const auto details = std::make_shared<platform::EKEventDetails>();
  for (int e = 0; e < count; ++e) {
    // In the window and over by 06:00 of another day: no clause lets them qualify.
    const double start = day + 8.5 * 3600 - 86400 + e * 0.1;
    events.push_back(std::make_shared<platform::EKEvent>(details, Date(start), Date(start + 60)));
    setHm_profile(events.back(), profile);
  }
  for (auto _ : state) benchmark::DoNotOptimize(bench.manager->eventToBeScheduled(events));
  state.counters["per event"] = benchmark::Counter(static_cast<double>(state.iterations()) * count,
                                                   benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(chooseAnEvent)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void planProfiles(benchmark::State& state) {
  Bench bench(100, 200);
  for (auto _ : state) bench.manager->schedulePowerEventsForProfiles();
}
BENCHMARK(planProfiles)->Unit(benchmark::kMillisecond);

void applyAndRevert(benchmark::State& state) {
  Bench bench(10, 0);
  const auto profile = bench.manager->profiles().front();
  for (auto _ : state) {
    profile->apply();
    profile->revert();
    state.PauseTiming();
    bench.phone.time().runFor(10);  // The delayed steps, so that they do not pile up.
    state.ResumeTiming();
  }
}
BENCHMARK(applyAndRevert)->Unit(benchmark::kMicrosecond);

void makeProfilesOfDictionaries(benchmark::State& state) {
  Bench bench(1000, 0);
  for (auto _ : state) bench.manager->loadProfiles();
}
BENCHMARK(makeProfilesOfDictionaries)->Unit(benchmark::kMillisecond);

void makeDictionariesOfProfiles(benchmark::State& state) {
  Bench bench(1000, 0);
  for (auto _ : state) bench.manager->saveAllProfilesToDisk(nullptr, false, std::nullopt);
}
BENCHMARK(makeDictionariesOfProfiles)->Unit(benchmark::kMillisecond);

}  // namespace
