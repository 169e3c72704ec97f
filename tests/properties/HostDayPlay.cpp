// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/properties/HostDayPlay.h"

#include "store/HMProfilesManager.h"

#include <algorithm>

namespace hushmode::properties {

using devices::SimulatedEvent;
using platform::Date;
using simulation::Simulation;

namespace {

/// Longer than any switch takes, a network that may come back, and the wait for further changes of the calendar.
constexpr double quietSeconds = 25;
/// A switch with its tones, and the settling after it.
constexpr double switchSeconds = 8;

simulation::Audience audienceOf(std::function<void(const devices::RecordEntry&)> entry) {
  simulation::Audience audience;
  audience.entry = std::move(entry);
  return audience;
}

std::string nameOf(bool on) { return on ? "applied" : "not applied"; }

}  // namespace

HostDayPlay::HostDayPlay(const HostDay& day, std::vector<std::string>* record)
    : wishes_({0.8F, 0.5F, true, false, false, false}), record_(record) {
  simulation::Scenario scenario = day.first;
  zone_ = scenario.zone;
  Date cursor = scenario.from;
  const auto step = [&](std::function<void(Simulation&)> work) { scenario.steps.push_back({cursor, std::move(work)}); };
  for (const Deed& deed : day.deeds) {
    cursor = cursor.addingSeconds(deed.delay);
    if (deed.delay >= quietSeconds) step([this, &deed](Simulation&) { look("before: " + deed.text); });
    step([this, &deed](Simulation&) { perform(deed); });
    cursor = cursor.addingSeconds(deed.clockJump);
  }
  cursor = cursor.addingSeconds(5);
  step([this](Simulation&) { endEverything(); });
  cursor = cursor.addingSeconds(26 * 3600);
  step([this](Simulation&) { lookInTheEnd(); });
  scenario.to = cursor.addingSeconds(1);
  simulation_ = std::make_unique<Simulation>(
      std::move(scenario), audienceOf([this](const auto& entry) { hear(entry); }), simulation::Hosting::Full);
  if (day.deathAt) simulation_->setDeath(*day.deathAt, 2);
  wishes_ = UsersWishes(simulation::stateOf(phone()));
}

std::vector<std::string> HostDayPlay::play() {
  try {
    simulation_->run();
  } catch (const std::exception& fault) {
    faults_.push_back(std::string("an error: ") + fault.what());
  }
  return faults_;
}

void HostDayPlay::hear(const devices::RecordEntry& entry) {
  if (record_) record_->push_back(entry.localTime() + " " + entry.text());
  const auto is = [&](std::string_view key, std::string_view text) {
    const auto* value = entry.fields.find(key);
    return value && *value == platform::Value(text);
  };
  if (!simulation_) return;
  const double uptime = phone().time().uptime();
  if (is("step", "process started")) bornAt_ = uptime;
  if (is("name", HMProfilesManager::appliedStateChangedNotification)) switchedAt_ = uptime;
}

void HostDayPlay::perform(const Deed& deed) {
  if (phone().time().isSuspended()) {
    phone().resume();
    simulation_->host().resumed();
  }
  deed.perform(*this);
}

std::shared_ptr<HMProfile> HostDayPlay::profileAt(std::size_t place) {
  if (!host().isRunning()) return nullptr;
  const auto& profiles = HMProfilesManager::sharedManager()->profiles();
  return profiles.empty() ? nullptr : profiles[place % profiles.size()];
}

bool HostDayPlay::isHostSure() { return host().isRunning() && phone().time().uptime() - bornAt_ > switchSeconds; }

bool HostDayPlay::isAtRest() {
  if (!host().isRunning() || phone().time().uptime() - switchedAt_ < switchSeconds) return false;
  const auto& profiles = HMProfilesManager::sharedManager()->profiles();
  return std::none_of(profiles.begin(), profiles.end(), [](const auto& each) { return each->isApplied(); });
}

void HostDayPlay::addEvent(const SimulatedEvent& event) {
  events_.push_back(event);
  phone().calendars().add(event);
}

SimulatedEvent* HostDayPlay::eventAt(std::size_t place) {
  return events_.empty() ? nullptr : &events_[place % events_.size()];
}

void HostDayPlay::moveEvent(std::size_t place, Date start, Date end) {
  SimulatedEvent* event = eventAt(place);
  if (!event || event->allDay) return;
  event->start = start;
  event->end = end;
  phone().calendars().move(event->uid, start, end);
}

void HostDayPlay::setStatus(std::size_t place, platform::EKEventStatus status) {
  SimulatedEvent* event = eventAt(place);
  if (!event) return;
  event->status = status;
  phone().calendars().setStatus(event->uid, status);
}

void HostDayPlay::removeEvent(std::size_t place) {
  SimulatedEvent* event = eventAt(place);
  if (!event) return;
  const std::string uid = event->uid;
  std::erase_if(events_, [&](const SimulatedEvent& each) { return each.uid == uid; });
  phone().calendars().remove(uid);
}

void HostDayPlay::moveToZone(const std::string& name) {
  zone_ = devices::TimeZone::named(name);
  phone().moveToTimeZone(name);
  simulation_->host().clockChanged();
}

void HostDayPlay::look(const std::string& when) {
  if (!isHostSure() || phone().time().isSuspended() || !faults_.empty()) return;
  for (const auto& profile : HMProfilesManager::sharedManager()->profiles()) {
    const Ought ought =
        host().isEnabled() ? oughtToBe(profile->dictionaryRepresentation(), events_, phone(), *zone_) : Ought::Off;
    if (ought == Ought::Unclear || (ought == Ought::On) == profile->isApplied()) continue;
    faults_.push_back(when + ", at " + phone().record().localTimeOf(phone().time().now()) + ": \"" +
                      profile->title().value_or("") + "\" is " + nameOf(profile->isApplied()) + " but should be " +
                      nameOf(ought == Ought::On));
  }
  if (!isAtRest()) return;
  const std::string objection = wishes_.objection(simulation::stateOf(phone()));
  if (!objection.empty()) {
    faults_.push_back(when + ", at " + phone().record().localTimeOf(phone().time().now()) + ": " + objection);
  }
}

void HostDayPlay::endEverything() {
  if (phone().time().isSuspended()) phone().resume();
  while (!events_.empty()) removeEvent(0);
  if (phone().wifi().joined()) {
    phone().wifi().leave();
    simulation_->host().networkChanged();
  }
  simulation_->setEnabled(true);
  simulation_->start();
}

void HostDayPlay::lookInTheEnd() {
  if (!host().isRunning()) faults_.emplace_back("the host is dead in the end");
  if (!faults_.empty()) return;
  if (!isAtRest()) faults_.emplace_back("a profile is applied in the end");
  look("in the end");
  const auto ledger = phone().files().memory().arrayWithContentsOfFile(host::Ledger::path);
  if (ledger && !ledger->empty()) faults_.emplace_back("the ledger is still open in the end");
  for (const host::PlannedWakeUp& each : host().armed()) {
    if (each.profile && each.date < phone().time().now()) faults_.emplace_back("a wake-up of the past is armed");
  }
}

}  // namespace hushmode::properties
