// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// How a day with the real host is made up. How it is played is in HostDayPlay.cpp.

#include "tests/properties/HostDay.h"

#include "tests/properties/Chance.h"
#include "tests/properties/HostDayPlay.h"

namespace hushmode::properties {

using devices::SimulatedEvent;
using platform::Date;
using platform::Dictionary;
using platform::EKEventStatus;

namespace {

const std::vector<std::string> zones{"UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu"};
const std::vector<std::string> networks{"Home", "Office", "Cafe"};
const std::vector<std::string> calendarNames{"home", "work"};
// Nobody takes the one for the other.
const std::vector<double> profilesVolumes{0.0, 0.125, 0.25, 0.5};
const std::vector<double> usersVolumes{0.33, 0.47, 0.61, 0.72, 0.9};

std::string number(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find('.') + 3);
  return text;
}

std::string textOf(const platform::Value& value) {
  if (const auto* text = value.as<std::string>()) return *text;
  if (const auto* on = value.as<bool>()) return *on ? "yes" : "no";
  if (const auto* whole = value.as<std::int64_t>()) return std::to_string(*whole);
  if (const auto* real = value.as<double>()) return number(*real);
  std::string list;
  if (const auto* array = value.as<platform::Array>()) {
    for (const platform::Value& each : *array) list += (list.empty() ? "" : "+") + textOf(each);
  }
  return list;
}

std::string textOf(const Dictionary& dictionary) {
  std::string text;
  for (const auto& [key, value] : dictionary) text += " " + key + "=" + textOf(value);
  return text;
}

/// Makes up the days: everything that happens is decided here, nothing as it is played.
class Maker {
 public:
  Maker(Chance& chance, Date from) : chance_(chance), from_(from), cursor_(from) {}

  Dictionary profile() {
    const std::string title = "P" + std::to_string(++profiles_);
    Dictionary made = settings(1);
    made.set("title", title);
    made.set("identifier", profiles_);
    return made;
  }
  /// Of all settings one of `of`.
  Dictionary settings(int of) {
    Dictionary made;
    const auto set = [&](const char* key, platform::Value value) {
      if (of == 1 || chance_.onceIn(of)) made.set(key, std::move(value));
    };
    set("enabled", !chance_.onceIn(6));
    set("allDay", chance_.onceIn(3));
    set("ringerVolume", chance_.oneOf(profilesVolumes));
    set("playBackVolume", chance_.oneOf(profilesVolumes));
    for (const char* key : {"playAlert", "dnDEnabled", "showOnStatusBar", "wakeUpScreen", "allDayEventsIgnored"}) {
      set(key, chance_.toss());
    }
    set("vibrate", chance_.toss());
    set("applyProfileEventStatus", chance_.oneOf({0, 0, 0, 1, 2}));
    set("startTime", chance_.oneOf<std::string>({"12:00 AM", "6:00 AM", "8:00 AM", "9:30 AM"}));
    set("endTime", chance_.oneOf<std::string>({"12:00 PM", "5:00 PM", "6:30 PM", "11:59 PM"}));
    set("calendarIdentifiers", some(calendarNames));
    set("wifiNetworks", chance_.onceIn(3) ? some(networks) : platform::Array());
    return made;
  }

  SimulatedEvent event() {
    const std::string uid = "e" + std::to_string(++events_);
    SimulatedEvent made{uid, chance_.oneOf(calendarNames), uid, Date(0), Date(0)};
    made.status = chance_.oneOf({EKEventStatus::Confirmed, EKEventStatus::Confirmed, EKEventStatus::None,
                                 EKEventStatus::Tentative, EKEventStatus::Canceled});
    std::tie(made.start, made.end) = span();
    return made;
  }

  std::vector<Deed> deeds(int count) {
    for (; count > 0; --count) {
      delay_ = chance_.oneOf({0.2, 1.0, 2.0, 4.0, 12.0, 30.0, 60.0, 600.0, 1800.0, 3600.0, 5400.0, 7200.0});
      cursor_ = cursor_.addingSeconds(delay_);
      switch (chance_.below(12)) {
        case 0:
        case 1:
        case 2:
          calendarDeed();
          break;
        case 3:
        case 4:
          networkDeed();
          break;
        case 5:
        case 6:
          profileDeed();
          break;
        case 7:
        case 8:
        case 9:
          userDeed();
          break;
        case 10:
          phoneDeed();
          break;
        default:
          hostDeed();
      }
    }
    return std::move(deeds_);
  }

 private:
  void add(std::string text, std::function<void(HostDayPlay&)> perform, double jump = 0) {
    deeds_.push_back({delay_, std::move(text), std::move(perform), jump});
    delay_ = 0;
    cursor_ = cursor_.addingSeconds(jump);
  }

  platform::Array some(const std::vector<std::string>& names) {
    platform::Array array;
    for (const std::string& each : names) {
      if (chance_.toss()) array.emplace_back(each);
    }
    return array;
  }

  std::pair<Date, Date> span() {
    const Date start = chance_.onceIn(3) ? cursor_.addingSeconds(chance_.oneOf({-900.0, 1.0, 5.0, 60.0}))
                                         : from_.addingSeconds(900.0 * chance_.below(100));
    return {start, start.addingSeconds(chance_.oneOf({60.0, 900.0, 1800.0, 3600.0, 7200.0, 36000.0}))};
  }

  void calendarDeed();
  void networkDeed();
  void profileDeed();
  void userDeed();
  void phoneDeed();
  void hostDeed();

  Chance& chance_;
  Date from_, cursor_;
  double delay_ = 0;
  int profiles_ = 0, events_ = 0;
  std::vector<Deed> deeds_;
};

void Maker::calendarDeed() {
  const auto place = static_cast<std::size_t>(chance_.below(100));
  switch (chance_.below(5)) {
    case 0:
    case 1: {
      const SimulatedEvent made = event();
      return add("add event " + made.uid + " to " + made.calendar + ", " + number(made.start - from_) + " to " +
                     number(made.end - from_) + " s, status " + std::to_string(static_cast<int>(made.status)),
                 [made](HostDayPlay& p) { p.addEvent(made); });
    }
    case 2: {
      const auto [start, end] = span();
      return add("move event " + std::to_string(place) + " to " + number(start - from_) + " to " + number(end - from_),
                 [=, from = start, to = end](HostDayPlay& p) { p.moveEvent(place, from, to); });
    }
    case 3: {
      const auto status = chance_.oneOf({EKEventStatus::Confirmed, EKEventStatus::Tentative, EKEventStatus::Canceled});
      return add("status of event " + std::to_string(place) + ": " + std::to_string(static_cast<int>(status)),
                 [=](HostDayPlay& p) { p.setStatus(place, status); });
    }
    default:
      return add("remove event " + std::to_string(place), [=](HostDayPlay& p) { p.removeEvent(place); });
  }
}

void Maker::networkDeed() {
  if (chance_.onceIn(3)) {
    return add("leave the network", [](HostDayPlay& p) {
      p.phone().wifi().leave();
      p.simulation().host().networkChanged();
    });
  }
  const std::string name = chance_.oneOf(networks);
  add("join " + name, [=](HostDayPlay& p) {
    p.phone().wifi().join(name);
    p.simulation().host().networkChanged();
  });
}

void Maker::profileDeed() {
  const auto place = static_cast<std::size_t>(chance_.below(100));
  switch (chance_.below(8)) {
    case 0: {
      const Dictionary made = profile();
      return add("add profile " + *made.find("title")->as<std::string>(), [=](HostDayPlay& p) {
        if (p.host().isRunning()) p.simulation().addProfile(made);
      });
    }
    case 1:
      return add("delete profile " + std::to_string(place), [=](HostDayPlay& p) {
        if (const auto profile = p.profileAt(place)) p.simulation().host().deleteProfile(profile);
      });
    default: {
      const Dictionary changes = settings(4);
      std::string text = "edit profile " + std::to_string(place) + ":";
      text += textOf(changes);
      return add(text, [=](HostDayPlay& p) {
        if (const auto profile = p.profileAt(place)) p.simulation().host().editProfile(profile, changes);
      });
    }
  }
}

void Maker::userDeed() {
  switch (chance_.below(6)) {
    case 0: {
      const auto volume = static_cast<float>(chance_.oneOf(usersVolumes));
      return add("set the ringtone volume to " + number(volume), [=](HostDayPlay& p) {
        UsersWishes::set(p.wishes().ringtone, volume, p.isAtRest());
        p.simulation().pressVolume(devices::SimulatedSound::ringtone, volume);
      });
    }
    case 1: {
      const auto volume = static_cast<float>(chance_.oneOf(usersVolumes));
      return add("set the media volume to " + number(volume), [=](HostDayPlay& p) {
        UsersWishes::set(p.wishes().media, volume, true);
        p.simulation().pressVolume(devices::SimulatedSound::media, volume);
      });
    }
    case 2:
      return add("switch do not disturb", [](HostDayPlay& p) {
        const bool on = !p.phone().controlCenter().isDoNotDisturbOn();
        UsersWishes::set(p.wishes().doNotDisturb, on, p.isHostSure());
        p.phone().controlCenter().switchDoNotDisturb(on);
        p.simulation().host().phoneChanged();
      });
    case 3: {
      const bool ofSilent = chance_.toss();
      return add(std::string("switch vibrate on ") + (ofSilent ? "silent" : "ring"), [=](HostDayPlay& p) {
        const host::PhoneState state = simulation::stateOf(p.phone());
        const bool on = ofSilent ? !*state.silentVibrate : !*state.ringVibrate;
        UsersWishes::set(ofSilent ? p.wishes().silentVibrate : p.wishes().ringVibrate, on, p.isHostSure());
        p.phone().defaults().domains()["com.apple.springboard"].set(ofSilent ? "silent-vibrate" : "ring-vibrate", on);
        p.simulation().host().phoneChanged();
      });
    }
    default: {
      const int button = chance_.below(2);
      return add("answer " + std::to_string(button), [=](HostDayPlay& p) {
        if (!p.phone().uiKit().shownAlerts().empty()) p.phone().uiKit().answerAlert(button);
      });
    }
  }
}

void Maker::phoneDeed() {
  switch (chance_.below(4)) {
    case 0: {
      const double seconds = chance_.oneOf({-7200.0, -3600.0, -30.0, 0.25, 120.0, 3600.0, 50000.0});
      return add(
          "the clock jumps by " + number(seconds),
          [=](HostDayPlay& p) {
            p.phone().jumpClockTo(p.phone().time().now().addingSeconds(seconds));
            p.simulation().host().clockChanged();
          },
          seconds);
    }
    case 1: {
      const std::string name = chance_.oneOf(zones);
      return add("move to " + name, [=](HostDayPlay& p) { p.moveToZone(name); });
    }
    case 2:
      return add(chance_.toss() ? "lock" : "unlock", [lock = chance_.toss()](HostDayPlay& p) {
        lock ? p.phone().screen().lock() : p.phone().screen().unlock();
      });
    default:
      return add("sleep until something happens", [](HostDayPlay& p) { p.phone().suspend(); });
  }
}

void Maker::hostDeed() {
  switch (chance_.below(6)) {
    case 0:
      return add("kill the host", [](HostDayPlay& p) { p.simulation().kill(); });
    case 1:
      return add("stop the host", [](HostDayPlay& p) { p.simulation().stop(); });
    case 2:
      return add("start the host", [](HostDayPlay& p) { p.simulation().start(); });
    case 3:
      return add("kill the host and start it", [](HostDayPlay& p) {
        p.simulation().kill();
        p.simulation().start();
      });
    case 4: {
      const bool on = chance_.toss();
      return add(on ? "master switch on" : "master switch off", [=](HostDayPlay& p) { p.simulation().setEnabled(on); });
    }
    default: {
      const bool reload = chance_.toss();
      return add(reload ? "reload" : "plan", [=](HostDayPlay& p) { p.simulation().host().plan(reload); });
    }
  }
}

}  // namespace

HostDay::HostDay(std::uint64_t seed) {
  Chance chance(seed);
  first.zone = devices::TimeZone::named(chance.oneOf(zones));
  first.from = Date(1715644800 + 3600.0 * chance.below(30));
  Maker maker(chance, first.from);
  for (int i = 1 + chance.below(3); i > 0; --i) first.profiles.emplace_back(maker.profile());
  std::vector<SimulatedEvent> events;
  for (int i = chance.below(5); i > 0; --i) events.push_back(maker.event());
  using Notices = devices::SimulatedSound::Notices;
  first.prepare.emplace_back(
      [version = chance.oneOf<std::string>({"9.3.5", "10.3", "11.4.1", "13.1"}),
       notices = chance.oneOf({Notices::None, Notices::InsideTheCall, Notices::FromTheRunLoop}),
       latency = chance.oneOf({0.5, 0.5, 0.0, 0.001, 3.0}), ring = chance.toss(), silent = chance.toss(),
       undisturbed = chance.onceIn(4),
       joined = chance.toss() ? chance.oneOf(networks) : std::string()](devices::SimulatedPhone& phone) {
        phone.uiKit().setSystemVersion(version);
        phone.sound().setNotices(notices);
        phone.wakeTimers().setLatency(latency);
        Dictionary& homeScreen = phone.defaults().domains()["com.apple.springboard"];
        homeScreen.set("ring-vibrate", ring);
        homeScreen.set("silent-vibrate", silent);
        phone.controlCenter().setDoNotDisturb(undisturbed);
        for (const std::string& each : calendarNames) phone.calendars().addCalendar(each, each);
        if (!joined.empty()) phone.wifi().join(joined);
      });
  for (const SimulatedEvent& each : events) {
    deeds.push_back({0,
                     "there is event " + each.uid + " in " + each.calendar + ", " + number(each.start - first.from) +
                         " to " + number(each.end - first.from) + " s, status " +
                         std::to_string(static_cast<int>(each.status)),
                     [each](HostDayPlay& p) { p.addEvent(each); }});
  }
  for (Deed& each : maker.deeds(5 + chance.below(30))) deeds.push_back(std::move(each));
  if (chance.toss()) deathAt = 1 + static_cast<std::size_t>(chance.below(500));
}

std::vector<std::string> faultsOf(const HostDay& day, std::vector<std::string>* record) {
  return HostDayPlay(day, record).play();
}

HostDay shrunk(HostDay day) {
  const auto hasFault = [](const HostDay& candidate) { return !faultsOf(candidate).empty(); };
  HostDay alive = day;
  alive.deathAt.reset();
  if (hasFault(alive)) day = alive;
  for (std::size_t i = day.deeds.size(); i-- > 0;) {
    HostDay fewer = day;
    // What comes later happens at its time all the same.
    if (i + 1 < fewer.deeds.size()) fewer.deeds[i + 1].delay += fewer.deeds[i].delay + fewer.deeds[i].clockJump;
    fewer.deeds.erase(fewer.deeds.begin() + static_cast<std::ptrdiff_t>(i));
    if (i < fewer.deeds.size() && fewer.deeds[i].delay < 0) continue;
    if (hasFault(fewer)) day = std::move(fewer);
  }
  return day;
}

std::string textOf(const HostDay& day) {
  std::string text = "from " + number(day.first.from.secondsSince1970()) + " in " + day.first.zone->name();
  for (const platform::Value& each : day.first.profiles) text += "\n " + textOf(*each.as<Dictionary>());
  double at = 0;
  for (const Deed& each : day.deeds) {
    at += each.delay;
    text += "\n  " + number(at) + " " + each.text;
    at += each.clockJump;
  }
  return text + (day.deathAt ? "\n  death at entry " + std::to_string(*day.deathAt) : "");
}

}  // namespace hushmode::properties
