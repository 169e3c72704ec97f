// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/properties/RecordRules.h"

#include <algorithm>

namespace hushmode::properties {

using devices::RecordEntry;
using platform::Dictionary;
using platform::Value;

namespace kind = devices::kind;

namespace {

const std::string saved = "com.quorvel.hushmode-";
const std::string appliedStateChanged = "com.quorvel.ProfileAppliedStateChangedNotification";

template <class T>
T fieldOr(const RecordEntry& entry, std::string_view key, T otherwise) {
  const Value* value = entry.fields.find(key);
  const T* content = value ? value->as<T>() : nullptr;
  return content ? *content : otherwise;
}
std::string text(const RecordEntry& entry, std::string_view key) { return fieldOr(entry, key, std::string()); }
std::int64_t integer(const RecordEntry& entry, std::string_view key) { return fieldOr(entry, key, std::int64_t{-1}); }
bool isTrue(const RecordEntry& entry, std::string_view key) { return fieldOr(entry, key, false); }

bool isLog(const RecordEntry& entry, std::string_view method) {
  return entry.kind == kind::log && text(entry, "method") == method;
}

bool hasPlaceholder(const std::string& message) {
  constexpr std::string_view placeholders[] = {"%@", "%d", "%ld", "%f", "%s"};
  return std::any_of(std::begin(placeholders), std::end(placeholders),
                     [&](std::string_view each) { return message.find(each) != std::string::npos; });
}

}  // namespace

void RecordRules::report(const std::string& violation) { violations_.push_back(violation); }

void RecordRules::interrupted() {
  expected_.clear();
  begun_ = Begun::Nothing;
  save_ = Save::None;
}

void RecordRules::expect(std::string what, std::function<bool(const Entry&)> fits) {
  expected_.push_back({std::move(what), std::move(fits)});
}

void RecordRules::expectKey(const char* operation, std::string key) {
  expect(std::string(operation) + " " + key, [=](const Entry& entry) {
    return entry.kind == kind::defaults && text(entry, "operation") == operation && text(entry, "key") == key;
  });
}

void RecordRules::expectLog(std::int64_t line) {
  expect("log line " + std::to_string(line),
         [line](const Entry& entry) { return entry.kind == kind::log && integer(entry, "line") == line; });
}

void RecordRules::expectDarwin(std::string name) {
  expect("darwin " + name,
         [name](const Entry& entry) { return entry.kind == kind::darwin && text(entry, "name") == name; });
}

void RecordRules::requireNothingBegun(const Entry& entry) {
  if (begun_ == Begun::Nothing) return;
  report((begun_ == Begun::Apply ? "an apply" : "a revert") + std::string(" was left unfinished before: ") +
         entry.text());
  begun_ = Begun::Nothing;
}

void RecordRules::see(const Entry& entry) {
  if (begun_ != Begun::Nothing && begunAt_ && entry.time != *begunAt_) requireNothingBegun(entry);
  if (!expected_.empty()) {
    const Expected next = std::move(expected_.front());
    expected_.pop_front();
    if (!next.fits(entry)) {
      report("expected " + next.what + ", but met: " + entry.text());
      expected_.clear();
    }
  }
  if (entry.kind == kind::log) {
    seeLog(entry);
  } else if (entry.kind == kind::effect) {
    seeEffect(entry);
  } else if (entry.kind == kind::defaults) {
    seeDefaults(entry);
  } else if (entry.kind == kind::timer) {
    seeTimer(entry);
  } else if (entry.kind == kind::alert) {
    seeAlert(entry);
  } else if (entry.kind == kind::file) {
    const bool ofApply = last_ == "apply";
    if (!ofApply) requireNothingBegun(entry);
    save_ = ofApply ? Save::OfApply : Save::Other;
    lastWriteSucceeded_ = isTrue(entry, "ok");
    expectLog(286);
    last_ = "write";
    return;
  } else if (entry.kind == kind::perform && text(entry, "operation") == "schedule") {
    if (fieldOr(entry, "delay", 0.0) != 2.0) report("the volume indicator was to come back at: " + entry.text());
  } else if (entry.kind == kind::phone && text(entry, "step") == "process ended") {
    volumeHUDAway_ = false;  // Nobody is left to bring it back.
  }
  if (entry.kind != kind::log) last_ = entry.kind == kind::darwin ? text(entry, "name") : entry.kind;
}

void RecordRules::seeLog(const Entry& entry) {
  const std::string level = text(entry, "level"), method = text(entry, "method"), message = text(entry, "message");
  const std::int64_t line = integer(entry, "line");
  const bool known = level == "information" || level == "warning" || level == "error" || level == "bare";
  if (!known || method.empty() || method.find(' ') != std::string::npos || line <= 0 || message.empty() ||
      hasPlaceholder(message)) {
    report("not a line of the log: " + entry.text());
  }
  if ((level == "bare") != message.starts_with("***** Checking whether the event start date: ")) {
    report("with or without prefix against the rule: " + entry.text());
  }

  const std::string before = std::exchange(last_, "log");
  if (line == 286 && method.starts_with("saveAllProfiles")) {
    if (before != "write") report("line 286 without a write");
    last_ = lastWriteSucceeded_ ? "saved" : "not saved";
    if (lastWriteSucceeded_) {
      expect("line 289 or 32", [](const Entry& next) {
        return next.kind == kind::log && (integer(next, "line") == 289 || integer(next, "line") == 32);
      });
    }
  } else if (line == 289 && method.starts_with("saveAllProfiles")) {
    if (before != "saved") report("announced without a save: " + entry.text());
    const std::string name = message.substr(std::string_view("Posting notification: ").size());
    expect("notification " + name,
           [name](const Entry& next) { return next.kind == kind::notification && text(next, "name") == name; });
    expectDarwin(name);
    if (name == "com.quorvel.ProfileChangedNotification") expectLog(342);
  } else if (line == 32 && method.starts_with("updateProfile:shouldPost")) {
    if (before != "saved") report("announced without a save: " + entry.text());
    expectDarwin(appliedStateChanged);
    if (save_ == Save::Other) {
      expect("silent after the quiet save of a revert", [](const Entry& next) { return isLog(next, "setSilent:"); });
    }
  } else if (method == "setSilent:") {
    const bool first = message.starts_with("****");
    if (first) expect("the second line of silent", [](const Entry& next) { return isLog(next, "setSilent:"); });
    if (first && save_ == Save::Other && (before == appliedStateChanged || before == "not saved")) {
      requireNothingBegun(entry);
      begun_ = Begun::Revert;
      begunAt_ = entry.time;
      soundSet_ = false;
    }
  } else if (method == "apply") {
    requireNothingBegun(entry);
    begun_ = Begun::Apply;
    begunAt_ = entry.time;
    last_ = "apply";
    expect("the save of an apply", [](const Entry& next) { return next.kind == kind::file; });
  } else if (method == "applySoundSettings:" && message.starts_with("*********** applySoundSettings: ")) {
    const bool on = message.back() == '1';
    if (begun_ == Begun::Revert && (on || soundSet_)) report("a revert set the sound of an apply");
    if (begun_ == Begun::Apply && !on) report("an apply set the sound of a revert");
    if (begun_ == Begun::Nothing && !on) report("sound was set back outside a revert");
    if (begun_ == Begun::Apply) begun_ = Begun::Nothing;
    soundSet_ = true;
  } else if (method == "updateVolumeInUserDefaults:") {
    expectKey("set", saved + "ringtone");
    last_ = "kept";
  } else if (method == "schedulePowerEventsForProfiles") {
    last_ = "plan all";
  }
}

void RecordRules::seeEffect(const Entry& entry) {
  const std::string name = text(entry, "name");
  if (name == "setVolumeTo" || name == "setMediaVolume") {
    const double volume = fieldOr(entry, "volume", -1.0);
    if (!(volume >= 0 && volume <= 1)) report("no volume: " + entry.text());
  } else if (name == "setSystemVolumeHUDEnabled") {
    volumeHUDAway_ = !isTrue(entry, "enabled");
  }
}

void RecordRules::seeDefaults(const Entry& entry) {
  const std::string operation = text(entry, "operation"), key = text(entry, "key");
  if (operation == "domain") {
    const Value* value = entry.fields.find("value");
    const Dictionary* domain = value ? value->as<Dictionary>() : nullptr;
    const Value* other = domain ? domain->find("other") : nullptr;
    if (!other || !domain->find("ring-vibrate") || !domain->find("silent-vibrate")) {
      report("the home screen's domain lost something: " + entry.text());
    }
    expectDarwin("com.apple.springboard.ring-vibrate.changed");
    expectDarwin("com.apple.springboard.silent-vibrate.changed");
  } else if (operation == "set") {
    seeStored(entry, key);
    stored_.insert_or_assign(key, *entry.fields.find("value"));
  } else if (operation == "remove") {
    stored_.erase(key);
    if (key == saved + "ringtone") {
      if (begun_ != Begun::Revert || !soundSet_) report("saved volumes were removed outside a revert");
      expectKey("remove", saved + "volume");
      expectKey("remove", saved + "playBackVolume");
      expectKey("synchronize", "");
      begun_ = Begun::Nothing;
    }
  }
}

void RecordRules::seeStored(const Entry& entry, const std::string& key) {
  if (key == saved + "ringtone" || key == saved + "volume" || key == saved + "playBackVolume") {
    if (stored_.contains(key) && last_ != "kept") report("a saved volume was overwritten: " + entry.text());
    const double volume = fieldOr(entry, "value", -1.0);
    if (!(volume >= 0 && volume <= 1)) report("no volume: " + entry.text());
    expectKey("synchronize", "");
  } else if (key == saved + "ring-vibrate") {
    if (!isTrue(entry, "value")) report("vibrate settings were saved while off: " + entry.text());
    expectKey("set", saved + "silent-vibrate");
    expectKey("synchronize", "");
  } else if (key != saved + "silent-vibrate") {  // Do Not Disturb's.
    if (isTrue(entry, "value")) report("Do Not Disturb was stored as on");
    expectKey("synchronize", "");
    expect("the switch of Do Not Disturb", [](const Entry& next) { return text(next, "name") == "_toggleState"; });
  }
}

void RecordRules::seeTimer(const Entry& entry) {
  const std::string operation = text(entry, "operation");
  if (operation == "invalidate") return;
  const auto fireDate = fieldOr(entry, "fireDate", platform::Date(0));
  const Value* value = entry.fields.find("userInfo");
  const Dictionary* userInfo = value ? value->as<Dictionary>() : nullptr;
  const Value* identifier = userInfo ? userInfo->find("ProfileIdentifier") : nullptr;
  if (!identifier || !identifier->as<std::int64_t>() || userInfo->size() != 1) report("user info: " + entry.text());
  if (operation == "arm" && fireDate < entry.time) report("armed for the past: " + entry.text());
  if (operation == "fire") {
    if (entry.time < fireDate) report("fired early: " + entry.text());
    expect("the scheduler", [](const Entry& next) { return isLog(next, "schedulePowerEvent:"); });
  }
}

void RecordRules::seeAlert(const Entry& entry) {
  if (text(entry, "operation") != "show") return;
  const Value* value = entry.fields.find("buttons");
  const platform::Array* buttons = value ? value->as<platform::Array>() : nullptr;
  if (!buttons || *buttons != platform::Array{"Yes, please", "No, thanks"}) report("answers: " + entry.text());
}

}  // namespace hushmode::properties
