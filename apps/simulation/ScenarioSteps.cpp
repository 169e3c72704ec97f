// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What can happen to the phone in a scenario, by the word under "do".

#include "apps/simulation/ScenarioParts.h"
#include "apps/simulation/Simulation.h"
#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"

#include <array>

namespace hushmode::simulation {

using devices::SimulatedPhone;

namespace {

using Perform = std::function<void(Simulation&)>;
using Reader = Perform (*)(const JsonReader& json, const Scenario& scenario);

/// A step on the phone alone. What the phone refuses (an event that is not there, a button that no alert has) is a
/// mistake of the scenario.
Perform onPhone(const JsonReader& json, std::function<void(SimulatedPhone&)> work) {
  return [place = json.place(), work = std::move(work)](Simulation& simulation) {
    try {
      work(simulation.phone());
    } catch (const std::logic_error& refusal) {
      throw InputError(place + ": " + refusal.what());
    }
  };
}

/// A step on the phone that its host is told of.
Perform followed(Perform step, void (HostDriver::*tell)()) {
  return [step = std::move(step), tell](Simulation& simulation) {
    step(simulation);
    (simulation.host().*tell)();
  };
}

/// Events can only be changed where the scenario itself lists them.
void requireListedEvents(const JsonReader& json, const Scenario& scenario) {
  if (scenario.calendarFolder) {
    json.fail(
        tr("the calendars of this scenario are a folder of files, which steps do not change; list the events under "
           "\"calendars\" instead"));
  }
}

// --- The host ---

Perform plan(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return [](Simulation& s) { s.host().plan(false); };
}

Perform reload(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return [](Simulation& s) { s.host().plan(true); };
}

Perform masterSwitch(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "on"});
  return [on = json.require("on").boolean()](Simulation& s) { s.setEnabled(on); };
}

Perform kill(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return [](Simulation& s) { s.kill(); };
}

Perform start(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return [](Simulation& s) { s.start(); };
}

Perform stop(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return [](Simulation& s) { s.stop(); };
}

// --- Profiles ---

Perform editProfile(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "profile", "set"});
  return [title = json.require("profile").text(), changes = readDictionary(json.require("set"))](Simulation& s) {
    s.editProfile(title, changes);
  };
}

Perform addProfile(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "profile"});
  return [profile = readDictionary(json.require("profile"))](Simulation& s) { s.addProfile(profile); };
}

Perform deleteProfile(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "profile"});
  return [title = json.require("profile").text()](Simulation& s) { s.deleteProfile(title); };
}

// --- Calendars ---

Perform addEvent(const JsonReader& json, const Scenario& scenario) {
  requireListedEvents(json, scenario);
  json.requireKeys({"at", "do", "calendar", "uid", "title", "start", "end", "status", "allDay"});
  return onPhone(json, [event = readEvent(json, json.require("calendar").text(), scenario)](SimulatedPhone& p) {
    p.calendars().add(event);
  });
}

Perform moveEvent(const JsonReader& json, const Scenario& scenario) {
  requireListedEvents(json, scenario);
  json.requireKeys({"at", "do", "uid", "start", "end"});
  const auto begin = readTime(json.require("start"), scenario), end = readTime(json.require("end"), scenario);
  if (end < begin) json.require("end").fail(tr("the event ends before it starts"));
  return onPhone(json,
                 [=, uid = json.require("uid").text()](SimulatedPhone& p) { p.calendars().move(uid, begin, end); });
}

Perform setEventStatus(const JsonReader& json, const Scenario& scenario) {
  requireListedEvents(json, scenario);
  json.requireKeys({"at", "do", "uid", "status"});
  return onPhone(json, [uid = json.require("uid").text(), status = readEventStatus(json.require("status"))](
                           SimulatedPhone& p) { p.calendars().setStatus(uid, status); });
}

Perform removeEvent(const JsonReader& json, const Scenario& scenario) {
  requireListedEvents(json, scenario);
  json.requireKeys({"at", "do", "uid"});
  return onPhone(json, [uid = json.require("uid").text()](SimulatedPhone& p) { p.calendars().remove(uid); });
}

// --- Networks ---

Perform join(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "network", "automatic"});
  using Join = devices::SimulatedWiFi::Join;
  const auto manner = json.booleanOr("automatic", false) ? Join::Automatic : Join::ByUser;
  const auto joining = onPhone(
      json, [name = json.require("network").text(), manner](SimulatedPhone& p) { p.wifi().join(name, manner); });
  return [joining](Simulation& s) {
    joining(s);
    s.host().networkChanged();
  };
}

Perform leave(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return [](Simulation& s) {
    s.phone().wifi().leave();
    s.host().networkChanged();
  };
}

Perform forget(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "network"});
  return [name = json.require("network").text()](Simulation& s) {
    s.phone().wifi().forget(name);
    s.host().networkChanged();
  };
}

// --- The user and the phone ---

Perform pressVolume(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "volume", "category"});
  using devices::SimulatedSound;
  std::string_view category = SimulatedSound::ringtone;
  if (const auto given = json.find("category")) {
    if (given->text() == "media") {
      category = SimulatedSound::media;
    } else if (given->text() != "ringtone") {
      given->fail(tr("expected \"ringtone\" or \"media\""));
    }
  }
  return [category, volume = float(json.require("volume").number(0, 1))](Simulation& s) {
    s.pressVolume(category, volume);
  };
}

Perform answer(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "button"});
  return onPhone(
      json, [button = int(json.require("button").number(0, 10))](SimulatedPhone& p) { p.uiKit().answerAlert(button); });
}

Perform lock(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return onPhone(json, [](SimulatedPhone& p) { p.screen().lock(); });
}

Perform unlock(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return onPhone(json, [](SimulatedPhone& p) { p.screen().unlock(); });
}

Perform doNotDisturb(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "on"});
  const bool on = json.require("on").boolean();
  return followed(onPhone(json, [on](SimulatedPhone& p) { p.controlCenter().switchDoNotDisturb(on); }),
                  &HostDriver::phoneChanged);
}

Perform suspend(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return onPhone(json, [](SimulatedPhone& p) { p.suspend(); });
}

Perform resume(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do"});
  return followed(onPhone(json, [](SimulatedPhone& p) { p.resume(); }), &HostDriver::resumed);
}

Perform setClock(const JsonReader& json, const Scenario& scenario) {
  json.requireKeys({"at", "do", "to"});
  const auto to = readTime(json.require("to"), scenario);
  return followed(onPhone(json, [to](SimulatedPhone& p) { p.jumpClockTo(to); }), &HostDriver::clockChanged);
}

Perform setZone(const JsonReader& json, const Scenario&) {
  json.requireKeys({"at", "do", "zone"});
  const std::string name = json.require("zone").text();
  if (!devices::TimeZone::named(name)) json.require("zone").fail(tr("the system knows no time zone \"{}\"", name));
  return followed(onPhone(json, [name](SimulatedPhone& p) { p.moveToTimeZone(name); }), &HostDriver::clockChanged);
}

Perform fault(const JsonReader& json, const Scenario&) { return onPhone(json, readFault(json)); }

struct Kind {
  std::string_view word;
  Reader read;
};

constexpr std::array kinds{
    Kind{"plan", plan},
    Kind{"reload", reload},
    Kind{"masterSwitch", masterSwitch},
    Kind{"kill", kill},
    Kind{"start", start},
    Kind{"stop", stop},
    Kind{"editProfile", editProfile},
    Kind{"addProfile", addProfile},
    Kind{"deleteProfile", deleteProfile},
    Kind{"addEvent", addEvent},
    Kind{"moveEvent", moveEvent},
    Kind{"setEventStatus", setEventStatus},
    Kind{"removeEvent", removeEvent},
    Kind{"join", join},
    Kind{"leave", leave},
    Kind{"forget", forget},
    Kind{"pressVolume", pressVolume},
    Kind{"answer", answer},
    Kind{"lock", lock},
    Kind{"unlock", unlock},
    Kind{"doNotDisturb", doNotDisturb},
    Kind{"suspend", suspend},
    Kind{"resume", resume},
    Kind{"setClock", setClock},
    Kind{"setZone", setZone},
    Kind{"fault", fault},
};

}  // namespace

Step readStep(const JsonReader& json, const Scenario& scenario) {
  const JsonReader word = json.require("do");
  const std::string text = word.text();
  std::vector<std::string> words;
  for (const Kind& kind : kinds) {
    if (kind.word == text) return {readTime(json.require("at"), scenario), kind.read(json, scenario)};
    words.emplace_back(kind.word);
  }
  const std::string near = nearestOf(text, words);
  word.fail(near.empty() ? tr("\"{}\" is no step", text) : tr("\"{0}\" is no step; did you mean \"{1}\"?", text, near));
}

}  // namespace hushmode::simulation
