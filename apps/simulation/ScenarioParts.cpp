// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/ScenarioParts.h"

#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"
#include "store/HMProfilesManager.h"

#include <array>

namespace hushmode::simulation {

using devices::SimulatedPhone;
using platform::Date;
using platform::Dictionary;
using platform::Value;

Date readTime(const JsonReader& json, const Scenario& scenario) {
  const std::string text = json.text();
  const auto time = parseTime(text, *scenario.zone, scenario.from);
  if (!time) {
    json.fail(tr("\"{0}\" is no time; expected 09:30 (on the first day), {1}", text, timeFormats()));
  }
  return *time;
}

Value readValue(const JsonReader& json) {
  const JsonReader::Json& value = json.json();
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_number()) return value.get<double>();
  if (value.is_string()) return value.get<std::string>();
  if (value.is_object()) return readDictionary(json);
  if (!value.is_array()) json.fail(tr("expected a text, a number, true, false, a list or an object"));
  platform::Array array;
  for (const JsonReader& element : json.elements()) array.push_back(readValue(element));
  return array;
}

Dictionary readDictionary(const JsonReader& json) {
  Dictionary dictionary;
  for (const auto& [key, value] : json.members()) dictionary.set(key, readValue(value));
  return dictionary;
}

platform::EKEventStatus readEventStatus(const JsonReader& json) {
  static constexpr std::array<std::string_view, 4> names{"none", "confirmed", "tentative", "cancelled"};
  const std::string text = json.text();
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == text) return static_cast<platform::EKEventStatus>(i);
  }
  json.fail(tr("\"{}\" is no status; expected none, confirmed, tentative or cancelled", text));
}

devices::SimulatedEvent readEvent(const JsonReader& json, const std::string& calendar, const Scenario& scenario) {
  devices::SimulatedEvent event{.uid = json.require("uid").text(),
                                .calendar = calendar,
                                .title = std::nullopt,
                                .start = readTime(json.require("start"), scenario),
                                .end = readTime(json.require("end"), scenario),
                                .status = platform::EKEventStatus::Confirmed,
                                .allDay = json.booleanOr("allDay", false)};
  if (const auto title = json.find("title")) event.title = title->text();
  if (const auto status = json.find("status")) event.status = readEventStatus(*status);
  if (event.end < event.start) json.require("end").fail(tr("the event ends before it starts"));
  return event;
}

namespace {

devices::SimulatedWiFi::Known readNetwork(const JsonReader& json, const Scenario& scenario) {
  json.requireKeys({"name", "lastJoined", "lastAutoJoined"});
  devices::SimulatedWiFi::Known network{json.require("name").text(), std::nullopt, std::nullopt};
  if (const auto date = json.find("lastJoined")) network.lastJoined = readTime(*date, scenario);
  if (const auto date = json.find("lastAutoJoined")) network.lastAutoJoined = readTime(*date, scenario);
  return network;
}

void setVibrateSwitch(SimulatedPhone& phone, std::string_view key, bool on) {
  phone.defaults().domains()["com.apple.springboard"].set(key, on);
}

}  // namespace

void readPhone(const JsonReader& json, Scenario& scenario) {
  json.requireKeys({"enabled", "systemVersion", "ringtone", "media", "volume", "ringVibrate", "silentVibrate",
                    "doNotDisturb", "screenOn", "locked", "deliveryLatency", "volumeNotices", "networks", "joined",
                    "defaults", "faults"});
  const auto prepare = [&](std::function<void(SimulatedPhone&)> step) { scenario.prepare.push_back(std::move(step)); };
  const auto volume = [&](const char* key, auto set) {
    if (const auto value = json.find(key))
      prepare([v = float(value->number(0, 1)), set](SimulatedPhone& p) { set(p, v); });
  };
  const auto flag = [&](const char* key, auto set) {
    if (const auto value = json.find(key)) prepare([on = value->boolean(), set](SimulatedPhone& p) { set(p, on); });
  };
  scenario.enabled = json.booleanOr("enabled", true);
  if (const auto version = json.find("systemVersion")) {
    prepare([text = version->text()](SimulatedPhone& p) { p.uiKit().setSystemVersion(text); });
  }
  volume("ringtone", [](SimulatedPhone& p, float v) { p.sound().setVolume(devices::SimulatedSound::ringtone, v); });
  volume("volume", [](SimulatedPhone& p, float v) { p.sound().setVolume(devices::SimulatedSound::general, v); });
  volume("media", [](SimulatedPhone& p, float v) { p.sound().setMediaVolume(v); });
  flag("ringVibrate", [](SimulatedPhone& p, bool on) { setVibrateSwitch(p, "ring-vibrate", on); });
  flag("silentVibrate", [](SimulatedPhone& p, bool on) { setVibrateSwitch(p, "silent-vibrate", on); });
  flag("doNotDisturb", [](SimulatedPhone& p, bool on) { p.controlCenter().setDoNotDisturb(on); });
  flag("screenOn", [](SimulatedPhone& p, bool on) { p.screen().setOn(on); });
  flag("locked", [](SimulatedPhone& p, bool on) { p.screen().setLocked(on); });
  if (const auto latency = json.find("deliveryLatency")) {
    prepare([seconds = latency->number(0, 3600)](SimulatedPhone& p) { p.wakeTimers().setLatency(seconds); });
  }
  if (const auto notices = json.find("volumeNotices")) {
    using Notices = devices::SimulatedSound::Notices;
    const std::string text = notices->text();
    const auto when = text == "none"       ? Notices::None
                      : text == "inside"   ? Notices::InsideTheCall
                      : text == "run loop" ? Notices::FromTheRunLoop
                                           : (notices->fail(tr("expected none, inside or run loop")), Notices::None);
    prepare([when](SimulatedPhone& p) { p.sound().setNotices(when); });
  }
  if (const auto networks = json.find("networks")) {
    for (const JsonReader& each : networks->elements()) {
      prepare([network = readNetwork(each, scenario)](SimulatedPhone& p) { p.wifi().remember(network); });
    }
  }
  if (const auto joined = json.find("joined")) {
    prepare([name = joined->text()](SimulatedPhone& p) { p.wifi().join(name); });
  }
  if (const auto defaults = json.find("defaults")) {
    prepare([values = readDictionary(*defaults)](SimulatedPhone& p) { p.defaults().standard() = values; });
  }
  if (const auto faults = json.find("faults")) {
    for (const JsonReader& each : faults->elements()) prepare(readFault(each));
  }
}

std::function<void(SimulatedPhone&)> readFault(const JsonReader& json) {
  json.requireKeys({"at", "do", "class", "selector", "writes", "reads", "category", "present", "fail"});
  if (const auto name = json.find("class")) {
    const std::string className = name->text();
    const bool present = json.booleanOr("present", false);
    // Checked here, so that a misspelt class is told with its place. The host's own run must not meet it.
    SimulatedPhone probe{Date(0)};
    if (const auto selector = json.find("selector")) {
      const std::string selectorName = selector->text();
      return [=](SimulatedPhone& p) {
        present ? p.classes().restoreSelector(className, selectorName)
                : p.classes().removeSelector(className, selectorName);
      };
    }
    try {
      probe.classes().removeClass(className);
    } catch (const std::invalid_argument&) {
      name->fail(tr("the phone has no class \"{}\"", className));
    }
    return
        [=](SimulatedPhone& p) { present ? p.classes().restoreClass(className) : p.classes().removeClass(className); };
  }
  const bool fail = json.booleanOr("fail", true);
  if (const auto writes = json.find("writes")) {
    if (writes->text() == "files") return [fail](SimulatedPhone& p) { p.files().setWritesFail(fail); };
    if (writes->text() != "volume") writes->fail(tr("expected files or volume"));
    const std::string category = json.require("category").text();
    return [=](SimulatedPhone& p) { p.sound().setWriteFails(category, fail); };
  }
  if (json.require("reads").text() != "volume") json.require("reads").fail(tr("expected volume"));
  const std::string category = json.require("category").text();
  return [=](SimulatedPhone& p) { p.sound().setReadFails(category, fail); };
}

}  // namespace hushmode::simulation
