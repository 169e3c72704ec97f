// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/Forecast.h"

#include "apps/simulation/Simulation.h"
#include "apps/simulation/TimeText.h"

#include <utility>

namespace hushmode::cli {

using platform::Array;
using platform::Date;

namespace {

/// Told apart from what profiles set.
constexpr float someRingtone = 0.7651f, someMedia = 0.4327f;

/// As they are, but for what is of this moment.
Array unapplied(const std::vector<platform::Dictionary>& profiles) {
  Array array;
  for (platform::Dictionary each : profiles) {
    each.set("applied", false);
    array.emplace_back(std::move(each));
  }
  return array;
}

void putInto(devices::SimulatedPhone& phone, const KnownEvents& known) {
  auto& calendars = phone.eventKit().memory();
  for (const KnownCalendar& each : known.calendars) {
    calendars.addCalendar(each.identifier, each.title, each.account, each.writable);
  }
  for (const KnownEvent& each : known.events) {
    calendars.add({each.uid, each.calendar, each.title, each.start, each.end, each.status, each.allDay});
  }
}

}  // namespace

Forecast forecast(std::vector<platform::Dictionary> profiles, Date from, Date to,
                  std::shared_ptr<const devices::TimeZone> zone, const Complaint& complaint,
                  const std::function<void(const devices::RecordEntry&)>& decisions) {
  Forecast made{zone, from, to, std::move(profiles), {}, {}, {}};
  made.known = knownEvents(simulation::beginningOfLocalDay(from, *zone), to, *zone, complaint);

  simulation::Scenario scenario;
  scenario.zone = zone;
  scenario.from = from;
  scenario.to = to;
  scenario.profiles = unapplied(made.profiles);
  scenario.prepare.push_back([&](devices::SimulatedPhone& phone) {
    putInto(phone, made.known);
    phone.sound().setVolume(devices::SimulatedSound::ringtone, someRingtone);
    phone.sound().setMediaVolume(someMedia);
    phone.defaults().domains()["com.apple.springboard"] =
        platform::Dictionary{{"ring-vibrate", true}, {"silent-vibrate", true}};
    made.found = simulation::stateOf(phone);
  });
  simulation::Audience audience;
  audience.complaint = complaint;
  audience.switched = [&](const host::Switch& each) { made.switches.push_back(each); };
  audience.decisions = static_cast<bool>(decisions);
  audience.entry = decisions;
  simulation::Simulation simulation(std::move(scenario), std::move(audience), simulation::Hosting::Full);
  simulation.run();
  return made;
}

}  // namespace hushmode::cli
