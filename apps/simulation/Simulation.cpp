// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/Simulation.h"

#include "apps/simulation/FullHost.h"
#include "apps/simulation/LeastHost.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>

namespace hushmode::simulation {

using platform::Date;
using platform::Dictionary;

namespace {

/// A tone at the end of a profile, and the media volume after it.
constexpr double toneSeconds = 2.5;

constexpr double progressStep = 86400;  // Often enough: a day takes milliseconds.

/// Thrown where a host dies. No standard exception: nothing in the host may catch it.
struct HostDies {};

void recordTable(devices::SimulatedPhone& phone, HMProfilesManager& manager) {
  manager.scheduledEventsDict().onRecord = [&phone](std::int64_t identifier, const ScheduledEvents::Event& event) {
    phone.record().append(devices::kind::table, {{"identifier", identifier}, {"event", event->description()}});
  };
}

}  // namespace

PhoneState stateOf(devices::SimulatedPhone& phone) {
  using devices::SimulatedSound;
  const auto& domains = phone.defaults().domains();
  const auto domain = domains.find("com.apple.springboard");
  const auto isOn = [&](std::string_view key) {
    return domain != domains.end() && booleanMeaning(domain->second.find(key));
  };
  return {.ringtone = phone.sound().volume(SimulatedSound::ringtone).value_or(0),
          .media = phone.sound().mediaVolume(),
          .ringVibrate = isOn("ring-vibrate"),
          .silentVibrate = isOn("silent-vibrate"),
          .doNotDisturb = phone.controlCenter().isDoNotDisturbOn(),
          .icon = phone.statusBar().isIconVisible()};
}

Simulation::Simulation(Scenario scenario, Audience audience, Hosting hosting)
    : scenario_(std::move(scenario)), audience_(std::move(audience)) {
  phone_ = std::make_unique<devices::SimulatedPhone>(scenario_.from, scenario_.zone);
  phone_->record().setKeepsEntries(false);
  phone_->record().setListening(audience_.decisions);
  phone_->record().setListener([this](const devices::RecordEntry& entry) { hear(entry); });
  if (scenario_.calendarFolder) {
    folder_ = std::make_unique<devices::FolderCalendars>(*scenario_.calendarFolder,
                                                         [this](const std::string& line) { complain(line); });
    phone_->eventKit().setSource(folder_.get());
  }
  for (const auto& prepare : scenario_.prepare) prepare(*phone_);
  phone_->files().memory().set(HMProfilesManager::profilesPath, scenario_.profiles);
  phone_->files().memory().set(HMProfilesManager::settingsPath,
                               Dictionary{{"com.quorvel.hushmode.enabled", scenario_.enabled}});

  switches_ = std::make_unique<SwitchWatch>(
      host::WatchedPhone{[this] { return phone_->time().now(); }, [this] { return stateOf(*phone_); },
                         [this] { return phone_->wifi().joined(); }},
      hosting == Hosting::Full ? host::Host::settleSeconds : toneSeconds, [this](const Switch& each) {
        if (audience_.switched) audience_.switched(each);
      });
  const auto complaint = [this](const std::string& text) { complain(text); };
  if (hosting == Hosting::Full) {
    host_ = std::make_unique<FullHost>(*phone_, complaint);
  } else {
    auto least = std::make_unique<LeastHost>(*phone_, complaint);
    least->setPlansByItself(scenario_.hostPlans);
    host_ = std::move(least);
  }
  host_->setOnStart([this](HMProfilesManager& manager) {
    recordTable(*phone_, manager);
    switches_->watch(manager);
  });
  phone_->time().setOnStep([this] { switches_->look(); });
}

Simulation::~Simulation() {
  // The end of the simulation is not the death of the host: nobody hears of it.
  phone_->record().setListener({});
  phone_->time().setOnStep({});
  host_.reset();
}

void Simulation::run() {
  mortally([this] { host_->start(); });
  switches_->look();
  for (const Step& step : scenario_.steps) {
    runUntil(step.at);
    mortally([&] { step.perform(*this); });
    switches_->look();
    switches_->setCause(std::nullopt);
  }
  runUntil(scenario_.to);
  switches_->finish();
}

void Simulation::hear(const devices::RecordEntry& entry) {
  if (audience_.entry) audience_.entry(entry);
  // What the user and the world do is done; only the host's own work is cut short.
  if (!death_ || died_ || entry.kind == devices::kind::phone || ++entries_ < death_->entry) return;
  died_ = true;
  throw HostDies();
}

void Simulation::mortally(const std::function<void()>& work) {
  try {
    work();
  } catch (const HostDies&) {
    kill();
    restartAt_ = phone_->time().now().addingSeconds(death_->restartSeconds);
  }
}

void Simulation::runUntil(Date date) {
  while (phone_->time().now() < date || (restartAt_ && *restartAt_ <= date)) {
    Date next = std::min(date, phone_->time().now().addingSeconds(progressStep));
    if (restartAt_) next = std::min(next, *restartAt_);
    bool reached = false;
    while (!reached) {
      mortally([&] {
        host_->guard([&] {
          phone_->time().runUntil(next);
          reached = true;
        });
      });
      if (restartAt_ && !reached) break;
    }
    if (restartAt_ && *restartAt_ <= phone_->time().now()) {
      restartAt_.reset();
      mortally([this] { start(); });
    }
    if (audience_.progress) audience_.progress(next);
  }
}

void Simulation::kill() {
  switches_->unwatch();
  host_->kill();
}

void Simulation::stop() {
  switches_->unwatch();
  host_->stop();
  switches_->setCause(host::Reason{host::Reason::Kind::Stopped});
  switches_->stopped();
}

void Simulation::start() { host_->start(); }

void Simulation::setEnabled(bool enabled) {
  phone_->files().memory().set(HMProfilesManager::settingsPath, Dictionary{{"com.quorvel.hushmode.enabled", enabled}});
  phone_->record().step("master switch", {{"on", enabled}});
  switches_->setCause(enabled ? std::nullopt : std::optional(host::Reason{host::Reason::Kind::SwitchedOff}));
  host_->masterSwitchChanged(enabled);
}

std::shared_ptr<HMProfile> Simulation::profileTitled(const std::string& title) {
  if (host_->isRunning()) {
    for (const auto& profile : HMProfilesManager::sharedManager()->profiles()) {
      if (profile->title() == title) return profile;
    }
  }
  complain(host_->isRunning() ? tr("no profile is titled \"{}\"", title)
                              : tr("no profile is titled \"{}\": the host is not running", title));
  return nullptr;
}

void Simulation::editProfile(const std::string& title, const Dictionary& changes) {
  if (const auto profile = profileTitled(title)) host_->editProfile(profile, changes);
}

void Simulation::addProfile(const Dictionary& profile) {
  if (!host_->isRunning()) return complain(tr("no profile can be added: the host is not running"));
  host_->addProfile(profile);
}

void Simulation::deleteProfile(const std::string& title) {
  if (const auto profile = profileTitled(title)) host_->deleteProfile(profile);
}

void Simulation::pressVolume(std::string_view category, float volume) {
  host_->guard([&] { phone_->sound().pressVolumeButton(category, volume); });
}

void Simulation::complain(const std::string& text) {
  if (audience_.complaint) audience_.complaint(text);
}

}  // namespace hushmode::simulation
