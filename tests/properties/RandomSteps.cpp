// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What can happen on a random day. Each step answers what it did.

#include "alarms/AlarmTagging.h"
#include "effects/VolumeMarks.h"
#include "tests/properties/RandomDay.h"

#include <charconv>

namespace hushmode::properties {

using platform::Date;
using platform::Dictionary;
using platform::EKEventStatus;

namespace {

std::string number(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

const std::vector<std::string> networks{"Home", "Office", "Cafe"};
const std::vector<std::string> calendars{"home", "shared", "work"};
const std::vector<double> volumes{0.0, 0.0625, 0.25, 0.3, 0.8, 1.0};

/// Selectors that the library asks for before it sends them, and classes that it looks up: all that may be missing.
struct Missing {
  const char *className, *selector;
};
const std::vector<Missing> missing{
    {"PCSimpleTimer", nullptr},
    {"TLAlert", nullptr},
    {"TLAlert", "startPlayingRepeatedly"},
    {"TLAlert", "stop"},
    {"TLAlert", "playToneAndVibrationForType"},
    {"SpringBoard", nullptr},
    {"SBBacklightController", nullptr},
    {"SBBacklightController", "turnOnScreenFullyWithBacklightSource"},
    {"SBBacklightController", "_setBacklightFactorToZeroForProx"},
    {"VolumeControl", nullptr},
    {"LSStatusBarItem", nullptr},
    {"CCUIModuleInstanceManager", nullptr},
    {"SBControlCenterController", nullptr},
    {"CCUIDoNotDisturbSetting", "_toggleState"},
    {"SBCCDoNotDisturbSetting", "isEnabled"},
};

}  // namespace

std::optional<std::string> RandomDay::randomTime(bool start) {
  if (chance_.onceIn(60)) {
    unreadableTime_ = true;
    return chance_.oneOf<std::string>({"8 AM", "", "noon"});
  }
  if (toTheInstant_) {
    return start ? chance_.oneOf<std::string>({"8:00 AM", "9:00 am", "6:00 AM", "2:30 AM", "14:30"})
                 : chance_.oneOf<std::string>({"12:00 PM", "5:00 PM", "6:30 PM", "10:00 PM", "11:59 PM"});
  }
  if (chance_.onceIn(40)) return std::nullopt;
  return chance_.oneOf<std::string>({"8:00 AM", "9:00 am", "12:00 PM", "5:00 PM", "6:30 PM", "10:00 PM", "6:00 AM",
                                     "12:00 AM", "11:59 PM", "2:30 AM", "14:30", "13:00 PM", "8:75 AM", "x:yz"});
}

Dictionary RandomDay::randomProfile() {
  const std::int64_t identifier = chance_.onceIn(15) ? 1 : nextIdentifier_;
  ++nextIdentifier_;
  Dictionary profile{{"identifier", identifier},
                     {"enabled", !chance_.onceIn(6)},
                     {"allDay", chance_.onceIn(3)},
                     {"ringerVolume", chance_.oneOf(volumes)},
                     {"playBackVolume", chance_.oneOf(volumes)},
                     {"deviceVolume", chance_.oneOf(volumes)}};
  if (!chance_.onceIn(20)) profile.set("title", "Profile " + std::to_string(identifier));
  for (const char* key : {"playAlert", "vibrate", "vibrateAlert", "showOnStatusBar", "dnDEnabled", "wakeUpScreen",
                          "allDayEventsIgnored"}) {
    if (!chance_.onceIn(20)) profile.set(key, chance_.toss());
  }
  if (chance_.onceIn(10)) profile.set("applied", true);
  if (chance_.onceIn(3)) profile.set("applyProfileEventStatus", chance_.oneOf({0, 1, 2, 3, 7, -1}));
  if (const auto time = randomTime(true)) profile.set("startTime", *time);
  if (const auto time = randomTime(false)) profile.set("endTime", *time);
  if (!chance_.onceIn(8)) {
    platform::Array list;
    for (int i = chance_.below(3); i >= 0; --i) list.emplace_back(chance_.oneOf(calendars));
    profile.set("calendarIdentifiers", list);
  }
  if (chance_.onceIn(3)) {
    platform::Array list;
    for (int i = chance_.below(2); i >= 0; --i) list.emplace_back(chance_.oneOf(networks));
    profile.set("wifiNetworks", list);
  }
  return profile;
}

void RandomDay::placeEvent(devices::SimulatedEvent& event) {
  if (event.allDay) {
    event.start = clockOfDay(0);
    event.end = clockOfDay(0, 1 + chance_.below(2));
    return;
  }
  event.start = chance_.onceIn(3) ? phone_->time().now().addingSeconds(chance_.oneOf({-60.0, 0.0, 1.0, 5.0, 12.0}))
                                  : randomMoment();
  event.end = event.start.addingSeconds(chance_.oneOf({0.0, 1.0, 4.0, 900.0, 1800.0, 3600.0, 36000.0, 100000.0}));
}

devices::SimulatedEvent RandomDay::randomEvent() {
  const std::string uid = "e" + std::to_string(nextEvent_++);
  uids_.push_back(uid);
  devices::SimulatedEvent event{uid, chance_.oneOf(calendars), "Event " + uid, Date(0), Date(0)};
  if (chance_.onceIn(20)) event.title = std::nullopt;
  event.status = chance_.oneOf({EKEventStatus::Confirmed, EKEventStatus::Confirmed, EKEventStatus::None,
                                EKEventStatus::Tentative, EKEventStatus::Canceled});
  event.allDay = chance_.onceIn(6);
  placeEvent(event);
  return event;
}

void RandomDay::step() {
  using Kind = std::string (RandomDay::*)();
  constexpr Kind kinds[] = {&RandomDay::calendarStep, &RandomDay::calendarStep, &RandomDay::calendarStep,
                            &RandomDay::networkStep,  &RandomDay::networkStep,  &RandomDay::profileStep,
                            &RandomDay::profileStep,  &RandomDay::userStep,     &RandomDay::userStep,
                            &RandomDay::phoneStep,    &RandomDay::faultStep,    &RandomDay::hostStep,
                            &RandomDay::hostStep,     &RandomDay::pokeStep};
  const std::string time =
      phone_->record().localTimeOf(phone_->time().now()) + " (uptime " + number(phone_->time().uptime()) + ")";
  steps_.push_back(time + " ...");  // In case the step never ends.
  const std::string done = (this->*kinds[chance_.below(std::size(kinds))])();
  steps_.back() = time + " " + done;
}

std::string RandomDay::calendarStep() {
  auto& all = phone_->calendars();
  if (uids_.empty() || chance_.onceIn(3)) {
    const auto event = randomEvent();
    guarded([&] { all.add(event); });
    return "add event " + event.uid + " to " + event.calendar + " at " + number(event.start.secondsSince1970()) +
           " for " + number(event.end - event.start) + " s, status " + std::to_string(static_cast<int>(event.status)) +
           (event.allDay ? ", all day" : "");
  }
  const std::string uid = chance_.oneOf(uids_);
  if (chance_.onceIn(5)) {
    std::erase(uids_, uid);
    guarded([&] { all.remove(uid); });
    return "remove event " + uid;
  }
  if (chance_.toss()) {
    const auto status = chance_.oneOf({EKEventStatus::Confirmed, EKEventStatus::Tentative, EKEventStatus::Canceled});
    guarded([&] { all.setStatus(uid, status); });
    return "status of event " + uid + ": " + std::to_string(static_cast<int>(status));
  }
  devices::SimulatedEvent moved{uid, "", {}, Date(0), Date(0)};
  placeEvent(moved);
  guarded([&] { all.move(uid, moved.start, moved.end); });
  return "move event " + uid + " to " + number(moved.start.secondsSince1970()) + " for " +
         number(moved.end - moved.start) + " s";
}

std::string RandomDay::networkStep() {
  std::string done;
  if (chance_.onceIn(3)) {
    phone_->wifi().leave();
    done = "leave the network";
  } else if (chance_.onceIn(8)) {
    done = chance_.oneOf(networks);
    phone_->wifi().forget(done);
    done = "forget " + done;
  } else {
    const std::string name = chance_.oneOf(networks);
    using Join = devices::SimulatedWiFi::Join;
    phone_->wifi().join(name, chance_.toss() ? Join::ByUser : Join::Automatic);
    done = "join " + name;
  }
  if (chance_.onceIn(6)) return done + ", and the host is not told";
  host([](HMProfilesManager& manager) { manager.scheduleProfilesOnWiFiChange(); });
  return done;
}

std::string RandomDay::profileStep() {
  std::string done = "nothing: no host";
  host([&](HMProfilesManager& manager) {
    if (manager.profiles().empty() || chance_.onceIn(4)) {
      const Profile added = HMProfile::initWithDictionary(randomProfile());
      done = "add profile " + added->title().value_or("(no title)");
      manager.addProfile(added, nullptr, nullptr);
    } else {
      const Profile profile = chance_.oneOf(manager.profiles());
      done = profile->title().value_or("(no title)");
      if (chance_.onceIn(4)) {
        done = "delete profile " + done;
        manager.deleteProfile(profile, nullptr, nullptr);
      } else {
        done = "edit profile " + done;
        Dictionary edited = profile->dictionaryRepresentation();
        const Dictionary other = randomProfile();
        for (const auto& [key, value] : other) {
          if (key == "identifier" || key == "title" || key == "applied" || chance_.toss()) continue;
          edited.set(key, value);
          done += " " + key;
        }
        // Settings are edited as a copy or in place, as the host likes.
        const bool copied = chance_.toss();
        const Profile given = copied ? HMProfile::initWithDictionary(edited) : profile;
        if (!copied) given->setPropertiesFromDicitonary(edited);
        done += copied ? " (a copy)" : "";
        manager.updateProfile(given, nullptr, nullptr);
      }
    }
    if (chance_.onceIn(5)) {
      done += ", not planned";
    } else {
      manager.schedulePowerEventsForProfiles();
    }
  });
  return done;
}

std::string RandomDay::userStep() {
  switch (chance_.below(6)) {
    case 0:
    case 1: {
      const float volume = static_cast<float>(chance_.oneOf(volumes));
      const bool marked = !chance_.onceIn(4);
      if (process_ && marked) setHm_ChangedViaHWButtons(phone_->sound().sharedAVSystemController(), true);
      guarded([&] { phone_->sound().pressVolumeButton(devices::SimulatedSound::ringtone, volume); });
      return "ringtone volume to " + number(volume) + (marked ? "" : ", not marked");
    }
    case 2:
    case 3: {
      if (phone_->uiKit().shownAlerts().empty()) return "no question to answer";
      const int button = chance_.below(2);
      phone_->uiKit().answerAlert(button);
      return "answer " + std::to_string(button);
    }
    case 4:
      phone_->controlCenter().switchDoNotDisturb(!phone_->controlCenter().isDoNotDisturbOn());
      return "the user switches Do Not Disturb";
    default:
      if (phone_->screen().isLocked()) {
        phone_->screen().unlock();
        return "unlock";
      }
      phone_->screen().lock();
      phone_->screen().setOn(false);
      return "lock, and the screen goes dark";
  }
}

std::string RandomDay::phoneStep() {
  switch (chance_.below(5)) {
    case 0: {
      const double seconds = chance_.oneOf({-86400.0, -3600.0, -30.0, 0.25, 120.0, 3600.0, 50000.0});
      phone_->jumpClockTo(phone_->time().now().addingSeconds(seconds));
      return "the clock jumps by " + number(seconds) + " s";
    }
    case 1: {
      const std::string zone = chance_.oneOf<std::string>({"UTC", "Asia/Tokyo", "America/Los_Angeles"});
      phone_->moveToTimeZone(zone);
      return "the phone moves to " + zone;
    }
    case 2: {
      phone_->suspend();
      advance(chance_.oneOf({1.0, 60.0, 4000.0}));
      const bool woken = !phone_->time().isSuspended();
      if (chance_.toss()) phone_->resume();
      return std::string("suspend") + (woken ? ", and a wake-up resumes" : "");
    }
    case 3:
      killHost();
      if (chance_.toss()) advance(chance_.oneOf({0.0, 1.0, 3600.0}));
      startHost();
      return "the host dies and starts again";
    default:
      if (process_) {
        killHost();
        return "the host dies";
      }
      startHost();
      return "the host starts";
  }
}

std::string RandomDay::faultStep() {
  devices::SimulatedPhone& phone = *phone_;
  switch (chance_.below(4)) {
    case 0: {
      const bool fail = chance_.toss();
      phone.files().setWritesFail(fail);
      mendings_.emplace_back([&phone] { phone.files().setWritesFail(false); });
      return fail ? "files cannot be written" : "files can be written";
    }
    case 1: {
      const auto category = chance_.oneOf({devices::SimulatedSound::ringtone, devices::SimulatedSound::general});
      const bool fail = chance_.toss(), reads = chance_.toss();
      reads ? phone.sound().setReadFails(category, fail) : phone.sound().setWriteFails(category, fail);
      return std::string(reads ? "reading " : "setting ") + std::string(category) + (fail ? " fails" : " works");
    }
    case 2: {
      for (const auto& mend : mendings_) mend();
      return "all is mended";
    }
    default: {
      const Missing what = chance_.oneOf(missing);
      if (what.selector) {
        phone.classes().removeSelector(what.className, what.selector);
        mendings_.emplace_back([&phone, what] { phone.classes().restoreSelector(what.className, what.selector); });
      } else {
        phone.classes().removeClass(what.className);
        mendings_.emplace_back([&phone, what] { phone.classes().restoreClass(what.className); });
      }
      toneMayGoOn_ = toneMayGoOn_ || (what.selector && std::string_view(what.selector) == "stop");
      return std::string("missing: ") + what.className + (what.selector ? " " : "") +
             (what.selector ? what.selector : "");
    }
  }
}

std::string RandomDay::hostStep() {
  switch (chance_.below(4)) {
    case 0:
    case 1:
      host([](HMProfilesManager& manager) { manager.schedulePowerEventsForProfiles(); });
      return "plan";
    case 2:
      host([](HMProfilesManager& manager) { manager.schedulePowerEventsForProfiles(true); });
      return "reload and plan";
    default: {
      const bool on = chance_.toss();
      phone_->files().memory().set(HMProfilesManager::settingsPath, Dictionary{{"com.quorvel.hushmode.enabled", on}});
      host([on](HMProfilesManager& manager) {
        manager.handleHushmodeEnabledOrDisabled();
        if (on) manager.schedulePowerEventsForProfiles();
      });
      return on ? "master switch on" : "master switch off";
    }
  }
}

std::string RandomDay::pokeStep() {
  std::string done = "nothing: no host";
  host([&](HMProfilesManager& manager) {
    done = "nothing: no profile";
    if (manager.profiles().empty()) return;
    const Profile profile = chance_.oneOf(manager.profiles());
    const std::string title = " " + profile->title().value_or("(no title)");
    struct Poke {
      const char* name;
      std::function<void()> work;
    };
    const std::vector<Poke> pokes{
        {"revertAppliedProfilesIfAny", [&] { manager.revertAppliedProfilesIfAny(); }},
        {"processScheduledEvent", [&] { manager.processScheduledEvent(profile); }},
        {"schedulePowerEvent:withEvent: of none", [&] { manager.schedulePowerEvent(profile, nullptr); }},
        {"scheduleEvents", [&] { manager.scheduleEvents(profile, true); }},
        {"scheduleTimers", [&] { profile->scheduleTimers(); }},
        {"scheduleTimer", [&] { profile->scheduleTimer(profile->endDate()); }},
        {"stopTimers", [&] { profile->stopTimers(); }},
        {"stopTimer", [&] { profile->stopTimer(); }},
        {"apply", [&] { profile->apply(); }},
        {"revert", [&] { profile->revert(); }},
        {"refreshSoundSettingsIfRequired", [&] { profile->refreshSoundSettingsIfRequired(); }},
        {"updateDNDStatus", [&] { profile->updateDNDStatus(); }},
        {"unloadAllHushmodeAlarms", [&] { HMProfilesManager::unloadAllHushmodeAlarms(); }},
    };
    const Poke& poke = chance_.oneOf(pokes);
    done = poke.name + title;
    poke.work();
  });
  return done;
}

}  // namespace hushmode::properties
