// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// How a random day is prepared, played and looked at. What can happen on it is in RandomSteps.cpp.

#include "tests/properties/RandomDay.h"

#include "calendar/EventBinding.h"
#include "model/DayHelpers.h"

#include <stdexcept>

namespace hushmode::properties {

using platform::Date;
using platform::Dictionary;

namespace {

constexpr std::string_view profilesPath = HMProfilesManager::profilesPath;
const std::vector<std::string> zones{"UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Pacific/Apia"};
/// Ordinary days, days on which the clock is set ahead or back in some of the zones, and the end of a year.
const std::vector<double> midnightsUtc{1715644800, 1711756800, 1730073600, 1709942400, 1730592000, 1735603200};

}  // namespace

RandomDay::RandomDay(std::uint64_t seed) : chance_(seed) { prepare(); }

RandomDay::~RandomDay() {
  phone_->record().setListener({});
  process_.reset();
}

void RandomDay::prepare() {
  const auto zone = devices::TimeZone::named(chance_.oneOf(zones));
  phone_ =
      std::make_unique<devices::SimulatedPhone>(Date(chance_.oneOf(midnightsUtc) + 3600.0 * chance_.below(30)), zone);
  devices::SimulatedPhone& phone = *phone_;
  phone.record().setKeepsEntries(false);
  phone.record().setListener([this](const devices::RecordEntry& entry) {
    ++recorded_;
    rules_.see(entry);
    if (onEntry_) onEntry_(entry);
  });
  phone.uiKit().setSystemVersion(
      chance_.oneOf<std::string>({"8.4", "9.3.5", "10.3", "11.0", "11.4.1", "12.4", "13.1", "13.7", "14"}));
  using Notices = devices::SimulatedSound::Notices;
  phone.sound().setNotices(chance_.oneOf({Notices::None, Notices::InsideTheCall, Notices::FromTheRunLoop}));
  const double latency = chance_.oneOf({0.5, 0.5, 0.0, 0.001, 3.0, 90.0});
  phone.wakeTimers().setLatency(latency);
  toTheInstant_ = latency == 0;
  phone.sound().setVolume(devices::SimulatedSound::ringtone, chance_.oneOf({0.8F, 0.0F, 1.0F, 0.0625F}));
  phone.screen().setOn(chance_.toss());
  phone.screen().setLocked(chance_.toss());
  phone.controlCenter().setDoNotDisturb(chance_.onceIn(4));
  Dictionary& homeScreen = phone.defaults().domains()["com.apple.springboard"];
  homeScreen.set("other", 1);
  if (!chance_.onceIn(5)) homeScreen.set("ring-vibrate", chance_.toss());
  if (!chance_.onceIn(5)) homeScreen.set("silent-vibrate", chance_.toss());
  if (!chance_.onceIn(4)) phone.classes().removeClass("AVController");
  for (const char* calendar : {"home", "shared", "work"}) {
    phone.calendars().addCalendar(calendar, calendar, chance_.oneOf<std::string>({"Local", "Office"}),
                                  !chance_.onceIn(4));
  }
  for (int i = chance_.below(6); i > 0; --i) {
    phone.calendars().add(randomEvent());
  }
  platform::Array profiles;
  for (int i = 1 + chance_.below(4); i > 0; --i) profiles.emplace_back(randomProfile());
  if (chance_.onceIn(20)) profiles.emplace_back("no profile");
  phone.files().memory().set(profilesPath, profiles);
  phone.files().memory().set(HMProfilesManager::settingsPath,
                             Dictionary{{"com.quorvel.hushmode.enabled", !chance_.onceIn(10)}});
  if (chance_.toss()) phone.wifi().join(chance_.oneOf<std::string>({"Home", "Office"}));
}

platform::Date RandomDay::clockOfDay(double seconds, int day) {
  const auto& calendar = phone_->foundation().currentCalendar();
  platform::DateComponents components = calendar.componentsOfDate(phone_->time().now());
  components.hour = 24 * day;
  components.minute = 0;
  components.second = 0;
  return calendar.dateFromComponents(components).addingSeconds(seconds);
}

platform::Date RandomDay::randomMoment() {
  return clockOfDay(chance_.below(25) * 3600.0 + chance_.below(4) * 900.0 +
                    chance_.oneOf({0.0, 0.0, 0.0, 0.5, 1.0, -1.0, 4.5, 9.5, 59.0}));
}

void RandomDay::guarded(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::out_of_range& fault) {
    rules_.interrupted();
    if (!unreadableTime_) rules_.report(std::string("an error without a cause: ") + fault.what());
  } catch (const std::exception& fault) {
    rules_.interrupted();
    rules_.report(std::string("an error that must never leave the library: ") + fault.what());
  }
}

void RandomDay::host(const std::function<void(HMProfilesManager&)>& work) {
  if (!process_) return;
  phone_->resume();  // A host that is asleep does nothing.
  guarded([&] { work(*HMProfilesManager::sharedManager()); });
}

void RandomDay::startHost() {
  if (process_) return;
  process_ = std::make_unique<platform::Process>(*phone_);
  phone_->noteProcessStarted();
  listMayDifferFromFile_ = false;
  host([](HMProfilesManager& manager) { manager.schedulePowerEventsForProfiles(); });
}

void RandomDay::killHost() { process_.reset(); }

void RandomDay::advance(double seconds) {
  const double end = phone_->time().uptime() + seconds;
  bool reached = false;
  while (!reached) {
    guarded([&] {
      phone_->time().runFor(end - phone_->time().uptime());
      reached = true;
    });
    if (violations().size() > 20) return;
  }
}

void RandomDay::midnightWatch() {
  const Date day = hm_beginningOfDay(phone_->time().now());
  if (day == today_) return;
  today_ = day;
  host([](HMProfilesManager& manager) { manager.schedulePowerEventsForProfiles(true); });
}

void RandomDay::play() {
  startHost();
  for (int i = 8 + chance_.below(32); i > 0 && violations().empty(); --i) {
    advance(chance_.oneOf({0.0, 0.2, 0.5, 1.0, 1.9, 3.0, 30.0, 600.0, 1800.0, 3600.0, 5400.0, 7200.0}));
    if (process_) midnightWatch();
    look();
    step();
    look();
  }
  if (violations().empty()) finish();
}

void RandomDay::finish() {
  steps_.push_back("all is mended, and what is still to come happens");
  phone_->resume();
  for (const auto& mend : mendings_) mend();
  bool ended = false;
  for (int errors = 0; !ended && errors < 50 && violations().size() < 20; ++errors) {
    guarded([&] {
      // Nothing lies further ahead than a window of tomorrow and a jump of the clock.
      if (!phone_->time().runUntilIdle(phone_->time().now().addingSeconds(10 * 86400.0))) {
        rules_.report("work was left that does not end");
      }
      ended = true;
    });
  }
  if (!ended) rules_.report("the errors do not end");
  look();
  if (!phone_->wakeTimers().armed().empty()) rules_.report("a wake timer is armed that nothing waits for");
  if (phone_->tone().playing() && !toneMayGoOn_) rules_.report("the tone plays on");
  if (rules_.isVolumeHUDAway()) rules_.report("the volume indicator stays away");
}

void RandomDay::look() {
  if (!process_) return;
  guarded([&] {
    const auto manager = HMProfilesManager::sharedManager();
    lookAtFile(*manager);
    lookAtTable(*manager);
  });
}

void RandomDay::lookAtFile(HMProfilesManager& manager) {
  const auto file = phone_->files().memory().arrayWithContentsOfFile(profilesPath);
  if (!file) return rules_.report("the profiles file cannot be read");
  if (!rules_.lastWriteSucceeded()) listMayDifferFromFile_ = true;
  std::vector<const Dictionary*> stored;
  for (const platform::Value& element : *file) {
    if (const auto* dictionary = element.as<Dictionary>()) stored.push_back(dictionary);
  }
  const auto& listed = manager.profiles();
  if (rules_.lastWriteSucceeded() && stored.size() == listed.size()) listMayDifferFromFile_ = false;
  if (listMayDifferFromFile_) return;
  if (stored.size() != listed.size()) return rules_.report("the profiles file holds other profiles");
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const platform::Value *identifier = stored[i]->find("identifier"), *applied = stored[i]->find("applied");
    if (!identifier || *identifier != platform::Value(listed[i]->identifier())) {
      rules_.report("the profiles file holds another profile at " + std::to_string(i));
    } else if ((applied && *applied == platform::Value(true)) != listed[i]->isApplied()) {
      rules_.report("the profiles file is wrong about who is applied at " + std::to_string(i));
    }
  }
}

void RandomDay::lookAtTable(HMProfilesManager& manager) {
  for (const Profile& profile : manager.profiles()) {
    const ScheduledEvents::List* list = manager.scheduledEventsDict().find(profile->identifier());
    if (!list || list->empty()) continue;
    if (list->size() > 1) rules_.report("a profile follows two events");
    if (list->front()->status() == platform::EKEventStatus::Canceled) rules_.report("a cancelled event is followed");
    if (!hm_profile(list->front())) rules_.report("an event is followed for nobody");
  }
}

}  // namespace hushmode::properties
