// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The record's entries as lines for people. Effects and steps are spelled by patterns, in which {key} stands for the
// field of that name; one without a pattern is spelled as its name followed by its arguments.

#include "devices/simulated/Record.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <span>
#include <utility>

namespace hushmode::devices {

using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::Value;

namespace {

using Pattern = std::pair<std::string_view, std::string_view>;

constexpr auto effectPatterns = std::to_array<Pattern>({
    {"setVolumeTo", "setVolumeTo:{volume} forCategory:{category}"},
    {"setMediaVolume", "setMediaVolume:{volume}"},
    {"setSystemVolumeHUDEnabled", "setSystemVolumeHUDEnabled:{enabled}"},
    {"vibration feedback", "vibration feedback ({soundID})"},
    {"turnOnScreenFullyWithBacklightSource", "turnOnScreenFullyWithBacklightSource:{source}"},
    {"setBacklightFactor", "setBacklightFactor:{factor} source:{source}"},
    {"_startFadeOutAnimationFromLockSource", "_startFadeOutAnimationFromLockSource:{source}"},
    {"_undimFromSource", "_undimFromSource:{source}"},
    {"statusBarItem init", "statusBarItem initWithIdentifier:{identifier} alignment:{alignment}"},
    {"statusBarItem setImageName", "statusBarItem setImageName:{image}"},
    {"statusBarItem setVisible", "statusBarItem setVisible:{visible}"},
    {"_setDNDEnabled", "_setDNDEnabled:{enabled} updateServer:{updateServer} source:{source}"},
    {"setSelected", "setSelected:{selected}"},
    {"hitTest", "hitTest:({x}, {y})"},
    {"buttonTapped", "buttonTapped:{button}"},
    {"dlopen", "dlopen {path} mode {mode}"},
});

constexpr auto stepPatterns = std::to_array<Pattern>({
    {"clock", "clock set to {localTo}"},
    {"time zone", "time zone {zone}"},
    {"network joined", "network joined {ssid}"},
    {"network left", "network left {ssid}"},
    {"network forgotten", "network forgotten {ssid}"},
    {"volume button", "volume button {category} {volume}"},
    {"do not disturb", "do not disturb {on}"},
    {"calendar added", "calendar added {calendar}"},
    {"calendar removed", "calendar removed {calendar}"},
    {"event added", "event added {uid}"},
    {"event moved", "event moved {uid}"},
    {"event status", "event status {uid} {status}"},
    {"event renamed", "event renamed {uid}"},
    {"event removed", "event removed {uid}"},
    {"darwin", "darwin from another process {name}"},
});

constexpr std::string_view profilesPath = "/var/mobile/Library/Preferences/com.quorvel.hushmode.profiles.plist";
constexpr std::string_view springboardDomain = "com.apple.springboard";

std::string_view patternFor(std::span<const Pattern> patterns, std::string_view name) {
  for (const auto& [known, pattern] : patterns) {
    if (known == name) return pattern;
  }
  return {};
}

std::string numberText(double number, std::chars_format format, int precision) {
  std::array<char, 400> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number, format, precision);
  return {text.data(), result.ptr};
}

/// How real numbers are written: arguments with six decimals as in the log, stored values with nine digits, which tell
/// any two floats apart.
enum class Reals { SixDecimals, NineDigits };

std::string valueText(const Value& value, Reals reals, bool quoted);

std::string dictionaryText(const Dictionary& dictionary) {
  std::string text = "{";
  for (const auto& [key, value] : dictionary) {
    if (text.size() > 1) text += ", ";
    text += '"' + key + "\": " + valueText(value, Reals::NineDigits, true);
  }
  return text + "}";
}

std::string valueText(const Value& value, Reals reals, bool quoted) {
  struct Visitor {
    Reals reals;
    bool quoted;
    std::string operator()(bool boolean) const { return boolean ? "true" : "false"; }
    std::string operator()(std::int64_t integer) const { return std::to_string(integer); }
    std::string operator()(double real) const {
      return reals == Reals::SixDecimals ? numberText(real, std::chars_format::fixed, 6)
                                         : numberText(real, std::chars_format::general, 9);
    }
    std::string operator()(const std::string& text) const { return quoted ? '"' + text + '"' : text; }
    std::string operator()(Date date) const { return localTimeText(date.secondsSince1970()) + " UTC"; }
    std::string operator()(const Data& data) const { return "<" + std::to_string(data.size()) + " bytes>"; }
    std::string operator()(const Array& array) const {
      std::string text = "[";
      for (const Value& element : array) {
        if (text.size() > 1) text += ", ";
        text += valueText(element, reals, true);
      }
      return text + "]";
    }
    std::string operator()(const Dictionary& dictionary) const { return dictionaryText(dictionary); }
  };
  return std::visit(Visitor{reals, quoted}, value.variant());
}

/// The field's text; empty when the entry has no such field.
std::string field(const Dictionary& fields, std::string_view key, bool quoted = false) {
  const Value* value = fields.find(key);
  return value ? valueText(*value, Reals::SixDecimals, quoted) : std::string();
}

bool isTrue(const Dictionary& fields, std::string_view key) {
  const Value* value = fields.find(key);
  const bool* boolean = value ? value->as<bool>() : nullptr;
  return boolean && *boolean;
}

bool isFalse(const Dictionary& fields, std::string_view key) { return fields.find(key) && !isTrue(fields, key); }

std::string filled(std::string_view pattern, const Dictionary& fields) {
  std::string text;
  while (!pattern.empty()) {
    const std::size_t open = pattern.find('{');
    text += pattern.substr(0, open);
    if (open == std::string_view::npos) break;
    const std::size_t close = pattern.find('}', open);
    text += field(fields, pattern.substr(open + 1, close - open - 1));
    pattern.remove_prefix(close + 1);
  }
  return text;
}

/// The field `key`, and all later ones as "name=value".
std::string listed(const Dictionary& fields, std::string_view key) {
  std::string text = field(fields, key);
  for (const auto& [name, value] : fields) {
    if (name == key || name == "ok") continue;
    if (!text.empty()) text += ' ';
    text += name + "=" + valueText(value, Reals::SixDecimals, true);
  }
  return text;
}

std::string spelled(std::span<const Pattern> patterns, const Dictionary& fields, std::string_view key) {
  const std::string_view pattern = patternFor(patterns, field(fields, key));
  const std::string text = pattern.empty() ? listed(fields, key) : filled(pattern, fields);
  return isFalse(fields, "ok") ? text + " (failed)" : text;
}

std::string logText(const Dictionary& fields) {
  const std::string level = field(fields, "level");
  std::string mark = "bare";
  if (level == "information") mark = "I";
  if (level == "warning") mark = "W";
  if (level == "error") mark = "E";
  return "log " + mark + " " + field(fields, "message");
}

std::string effectText(const Dictionary& fields) {
  if (field(fields, "name") == "tone start") {
    const std::string tone = fields.find("tone") ? field(fields, "tone", true) : "none";
    const std::string way = field(fields, "way");
    return "fx tone start type " + field(fields, "type") + " " + tone +
           (way == "startPlayingRepeatedly" ? "" : " by " + way);
  }
  return "fx " + spelled(effectPatterns, fields, "name");
}

std::string defaultsText(const Dictionary& fields) {
  const std::string operation = field(fields, "operation");
  const Value* value = fields.find("value");
  if (operation == "domain" && field(fields, "key") == springboardDomain) {
    const Dictionary* domain = value ? value->as<Dictionary>() : nullptr;
    std::string text = "fx springboard domain";
    for (const std::string_view key : {"ring-vibrate", "silent-vibrate"}) {
      text += ' ' + std::string(key) + '=' + (domain && domain->find(key) ? field(*domain, key) : "none");
    }
    return text;
  }
  std::string text = "def " + operation;
  if (fields.find("key")) text += ' ' + field(fields, "key", true);
  if (value) text += " = " + valueText(*value, Reals::NineDigits, true);
  return text;
}

std::string fileText(const Dictionary& fields) {
  const std::string path = field(fields, "path");
  return "file " + field(fields, "operation") + " " + (path == profilesPath ? "profiles" : path) +
         (isTrue(fields, "ok") ? " ok" : " failed");
}

/// The fire date: its clock time, with the day in front when that is not the day of the entry.
std::string fireTime(const RecordEntry& entry) {
  std::string fire = field(entry.fields, "localFireDate");
  constexpr std::size_t day = 10;  // "2024-05-14"
  if (fire.size() <= day) return fire;
  return entry.localTime().substr(0, day) == fire.substr(0, day) ? fire.substr(day + 1) : fire;
}

std::string timerText(const RecordEntry& entry) {
  const Dictionary& fields = entry.fields;
  const std::string operation = field(fields, "operation");
  std::string text = "timer " + operation + " " + field(fields, "timer");
  if (operation == "arm") {
    const Value* userInfo = fields.find("userInfo");
    text += " at " + fireTime(entry);
    if (userInfo) text += " " + valueText(*userInfo, Reals::NineDigits, true);
  } else if (operation == "fire") {
    text += " (" + fireTime(entry) + ")";
  } else if (isTrue(fields, "fired")) {
    text += " (already fired)";
  } else if (isFalse(fields, "armed")) {
    text += " (not armed)";
  }
  return text;
}

std::string performText(const Dictionary& fields) {
  const bool schedules = field(fields, "operation") == "schedule";
  std::string text = schedules ? "fx schedule " : "fx cancel ";
  text += field(fields, "selector") + " on " + field(fields, "target");
  if (const Value* delay = fields.find("delay"); schedules && delay && delay->as<double>()) {
    text += " at +" + numberText(*delay->as<double>(), std::chars_format::fixed, 1) + " s";
  }
  return text;
}

std::string alertText(const Dictionary& fields) {
  std::string text = "alert " + field(fields, "operation");
  for (const std::string_view key : {"index", "button", "title", "message", "buttons"}) {
    if (fields.find(key)) text += ' ' + field(fields, key, true);
  }
  return text;
}

}  // namespace

std::string localTimeText(double localSeconds) {
  using namespace std::chrono;
  // Far beyond any calendar: the number itself, rather than an overflowing conversion.
  if (!(std::abs(localSeconds) < 1e11)) return numberText(localSeconds, std::chars_format::general, 17);
  const auto instant =
      sys_time<milliseconds>(milliseconds(static_cast<std::int64_t>(std::llround(localSeconds * 1e3))));
  const auto midnight = floor<days>(instant);
  const year_month_day day(midnight);
  const hh_mm_ss clock(instant - midnight);
  std::array<char, 48> text;
  int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(day.year()),
                             static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                             static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                             static_cast<int>(clock.seconds().count()));
  if (const auto fraction = static_cast<int>(clock.subseconds().count()); fraction != 0) {
    length += std::snprintf(text.data() + length, text.size() - static_cast<std::size_t>(length), ".%03d", fraction);
  }
  return {text.data(), static_cast<std::size_t>(length)};
}

std::string RecordEntry::localTime() const {
  return localTimeText(time.secondsSince1970() + static_cast<double>(utcOffset));
}

std::string RecordEntry::text() const {
  if (kind == kind::log) return logText(fields);
  if (kind == kind::effect) return effectText(fields);
  if (kind == kind::defaults) return defaultsText(fields);
  if (kind == kind::file) return fileText(fields);
  if (kind == kind::timer) return timerText(*this);
  if (kind == kind::perform) return performText(fields);
  if (kind == kind::alert) return alertText(fields);
  if (kind == kind::phone) return "phone " + spelled(stepPatterns, fields, "step");
  if (kind == kind::table) return "table " + field(fields, "identifier") + "[0] := " + field(fields, "event");
  if (kind == kind::notification || kind == kind::darwin) return kind + " " + field(fields, "name");
  return kind + " " + listed(fields, {});
}

}  // namespace hushmode::devices
