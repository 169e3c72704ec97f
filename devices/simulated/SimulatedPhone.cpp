// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"

#include <stdexcept>

namespace hushmode::devices {

namespace {

std::shared_ptr<const TimeZone> orUTC(const std::shared_ptr<const TimeZone>& zone) { return zone ? zone : TimeZone::utc(); }

}  // namespace

SimulatedPhone::SimulatedPhone(platform::Date start, const std::shared_ptr<const TimeZone>& zone)
    : time_(start),
      record_(time_, orUTC(zone)),
      foundation_(time_, record_, orUTC(zone)),
      wakeTimers_(time_, record_, classes_),
      calendars_(time_, record_, foundation_),
      wifi_(time_, record_),
      sound_(time_, record_, classes_, foundation_.defaultNotificationCenter()),
      tone_(record_, classes_),
      screen_(record_, classes_),
      statusBar_(record_, classes_, foundation_),
      uiKit_(time_, record_),
      controlCenter_(record_, classes_, uiKit_),
      alarms_(record_, classes_) {
  defaults().domains().emplace("com.apple.springboard",
                               platform::Dictionary{{"ring-vibrate", true}, {"silent-vibrate", false}});
  time_.setOnWake([this] { record_.step("resume", {{"cause", "wake timer"}}); });
}

void SimulatedPhone::processEnded() {
  record_.step("process ended");
  wakeTimers_.processEnded();
  foundation_.processEnded();
  calendars_.processEnded();
  sound_.processEnded();
  tone_.processEnded();
  statusBar_.processEnded();
  uiKit_.processEnded();
  alarms_.processEnded();
  // Last: what ends above may queue work from its destructor.
  time_.clear();
}

void SimulatedPhone::jumpClockTo(platform::Date date) {
  const platform::Date before = time_.now();
  time_.jumpTo(date);
  record_.step("clock", {{"from", before}, {"to", date}, {"localTo", record_.localTimeOf(date)}});
}

void SimulatedPhone::moveToTimeZone(std::string_view name) {
  auto zone = TimeZone::named(name);
  if (!zone) throw std::invalid_argument("no time zone is called " + std::string(name));
  foundation_.setTimeZone(std::move(zone));
  record_.step("time zone", {{"zone", name}});
}

void SimulatedPhone::suspend() {
  if (time_.isSuspended()) return;
  time_.suspend();
  record_.step("suspend");
}

void SimulatedPhone::resume() {
  if (!time_.isSuspended()) return;
  time_.resume();
  record_.step("resume");
}

}  // namespace hushmode::devices
