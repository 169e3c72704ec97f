#include "apps/simulation/Simulation.h"

#include "effects/VolumeMarks.h"

#include <algorithm>

namespace hushmode::simulation {

using platform::Date;
using platform::Dictionary;

namespace {

constexpr double progressStep = 86400;  // Often enough: a day takes milliseconds.

void recordTable(devices::SimulatedPhone& phone, HMProfilesManager& manager) {
  manager.scheduledEventsDict().onRecord = [&phone](std::int64_t identifier, const ScheduledEvents::Event& event) {
    phone.record().append(devices::kind::table, {{"identifier", identifier}, {"event", event->description()}});
  };
}

}  // namespace

Simulation::Simulation(Scenario scenario, Audience audience)
    : scenario_(std::move(scenario)), audience_(std::move(audience)) {
  phone_ = std::make_unique<devices::SimulatedPhone>(scenario_.from, scenario_.zone);
  phone_->record().setKeepsEntries(false);
  phone_->record().setListening(audience_.decisions);
  phone_->record().setListener(audience_.entry);
  if (scenario_.calendarFolder) {
    folder_ = std::make_unique<devices::FolderCalendars>(*scenario_.calendarFolder,
                                                         [this](const std::string& line) { complain(line); });
    phone_->eventKit().setSource(folder_.get());
  }
  for (const auto& prepare : scenario_.prepare) prepare(*phone_);
  phone_->files().memory().set(HMProfilesManager::profilesPath, scenario_.profiles);
  phone_->files().memory().set(HMProfilesManager::settingsPath,
                               Dictionary{{"com.quorvel.hushmode.enabled", scenario_.enabled}});

  switches_ = std::make_unique<SwitchWatch>(*phone_, [this](const Switch& each) {
    if (audience_.switched) audience_.switched(each);
  });
  host_ = std::make_unique<LeastHost>(*phone_, [this](const std::string& text) { complain(text); });
  host_->setPlansByItself(scenario_.hostPlans);
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
  host_->start();
  switches_->look();
  for (const Step& step : scenario_.steps) {
    runUntil(step.at);
    step.perform(*this);
    switches_->look();
    switches_->setCause({});
  }
  runUntil(scenario_.to);
  switches_->finish();
}

void Simulation::runUntil(Date date) {
  while (phone_->time().now() < date) {
    const Date next = std::min(date, phone_->time().now().addingSeconds(progressStep));
    bool reached = false;
    while (!reached) {
      host_->guard([&] {
        phone_->time().runUntil(next);
        reached = true;
      });
    }
    if (audience_.progress) audience_.progress(next);
  }
}

void Simulation::kill() {
  switches_->unwatch();
  host_->kill();
}

void Simulation::start() { host_->start(); }

void Simulation::setEnabled(bool enabled) {
  phone_->files().memory().set(HMProfilesManager::settingsPath, Dictionary{{"com.quorvel.hushmode.enabled", enabled}});
  phone_->record().step("master switch", {{"on", enabled}});
  switches_->setCause(enabled ? "" : "Hush Mode switched off");
  host_->masterSwitchChanged(enabled);
}

std::shared_ptr<HMProfile> Simulation::profileTitled(const std::string& title) {
  if (host_->isRunning()) {
    for (const auto& profile : HMProfilesManager::sharedManager()->profiles()) {
      if (profile->title() == title) return profile;
    }
  }
  complain("no profile is titled \"" + title + "\"" + (host_->isRunning() ? "" : ": the host is not running"));
  return nullptr;
}

void Simulation::editProfile(const std::string& title, const Dictionary& changes) {
  const auto profile = profileTitled(title);
  if (!profile) return;
  host_->guard([&] {
    Dictionary edited = profile->dictionaryRepresentation();
    for (const auto& [key, value] : changes) edited.set(key, value);
    HMProfilesManager::sharedManager()->updateProfile(HMProfile::initWithDictionary(edited), nullptr,
                                                      complaining("the edit was not saved"));
  });
  host_->plan(false);
}

void Simulation::addProfile(const Dictionary& profile) {
  if (!host_->isRunning()) return complain("no profile can be added: the host is not running");
  host_->guard([&] {
    HMProfilesManager::sharedManager()->addProfile(HMProfile::initWithDictionary(profile), nullptr,
                                                   complaining("the profile was not added"));
  });
  host_->plan(false);
}

void Simulation::deleteProfile(const std::string& title) {
  if (const auto profile = profileTitled(title)) {
    host_->guard([&] {
      HMProfilesManager::sharedManager()->deleteProfile(profile, nullptr, complaining("the profile was not deleted"));
    });
    host_->plan(false);
  }
}

void Simulation::pressVolume(float volume) {
  if (host_->isRunning()) setHm_ChangedViaHWButtons(phone_->sound().sharedAVSystemController(), true);
  host_->guard([&] { phone_->sound().pressVolumeButton(devices::SimulatedSound::ringtone, volume); });
}

HMProfilesManager::Failure Simulation::complaining(const std::string& what) {
  return [this, what](const StoreError& error) {
    const auto description = error.userInfo.find("NSLocalizedDescriptionKey");
    complain(what + ": " + (description == error.userInfo.end() ? "no reason given" : description->second));
  };
}

void Simulation::complain(const std::string& text) {
  if (audience_.complaint) audience_.complaint(text);
}

}  // namespace hushmode::simulation
