// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ProfileWords.h"

#include "apps/profiles/ClockText.h"
#include "apps/profiles/ToneNames.h"
#include "apps/profiles/VolumeText.h"
#include "apps/simulation/WrongValue.h"
#include "apps/terminal/Scanner.h"
#include "apps/words/NearTime.h"
#include "apps/words/Nearest.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace hushmode::cli {

using platform::Dictionary;
using platform::Value;
using simulation::InputError;
using enum Setting::Kind;

namespace {

const char* const statusWords[] = {HUSHMODE_MARKED("any"), HUSHMODE_MARKED("confirmed"), HUSHMODE_MARKED("tentative"),
                                   HUSHMODE_MARKED("cancelled")};

bool isOneOf(const std::string& text, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), text) != words.end();
}

InputError wrongSetting(const Setting& setting, const std::string& text, const std::string& expected,
                        const std::string& near) {
  return simulation::wrongValue(fmt::format("--{0} {1}", setting.word, text), expected, near);
}

bool parseFlag(const Setting& setting, const std::string& text) {
  if (isOneOf(text, {"on", "yes", "true", "1"})) return true;
  if (isOneOf(text, {"off", "no", "false", "0"})) return false;
  throw wrongSetting(setting, text, tr("on or off"), nearestOf(text, {"on", "off", "yes", "no", "true", "false"}));
}

double parseVolume(const Setting& setting, const std::string& text) {
  if (const auto volume = volumeOf(text)) return *volume;
  throw wrongSetting(setting, text, tr("a volume, such as 5% or 0.05"), nearestVolume(text));
}

long percentOf(const Value* volume) { return std::lround(floatMeaning(volume) * 100); }

std::size_t statusOf(const Value* status) {
  return static_cast<std::size_t>(std::clamp<std::int64_t>(integerMeaning(status), 0, 3));
}

}  // namespace

const std::vector<Setting>& profileSettings() {
  static const std::vector<Setting> settings = {
      {"enabled", "enabled", Flag, HUSHMODE_MARKED("Whether the profile takes part")},
      {"ringtone", "ringerVolume", Volume, HUSHMODE_MARKED("The ringtone volume while it is on, such as 5%")},
      {"media", "playBackVolume", Volume, HUSHMODE_MARKED("The media volume while it is on")},
      {"vibrate", "vibrate", Flag, HUSHMODE_MARKED("Whether the phone vibrates while it is on")},
      {"do-not-disturb", "dnDEnabled", Flag, HUSHMODE_MARKED("Whether it switches Do Not Disturb on")},
      {"icon", "showOnStatusBar", Flag, HUSHMODE_MARKED("Whether it shows an icon")},
      {"play-tone", "playAlert", Flag, HUSHMODE_MARKED("Whether a tone sounds at each switch")},
      {"tone", "alertToneIdentifier", Tone, HUSHMODE_MARKED("Which tone, such as \"texttone:Calendar Alert\"")},
      {"light", "wakeUpScreen", Flag, HUSHMODE_MARKED("Whether the screen lights up at each switch")},
      {"events", "applyProfileEventStatus", EventStatus,
       HUSHMODE_MARKED("Which events count: any, confirmed or tentative")},
      {"all-day-events", "allDayEventsIgnored", AllDayEvents,
       HUSHMODE_MARKED("Whether events that last all day count: count or ignore")},
  };
  return settings;
}

Value parseSetting(const Setting& setting, const std::string& text) {
  switch (setting.kind) {
    case Flag:
      return parseFlag(setting, text);
    case Volume:
      return parseVolume(setting, text);
    case Tone:
      return parseTone(fmt::format("--{}", setting.word), text);
    case EventStatus:
      for (std::int64_t code = 0; code < 4; ++code) {
        if (text == statusWords[code]) return code;
      }
      throw wrongSetting(setting, text, tr("any, confirmed or tentative"),
                         nearestOf(text, {"any", "confirmed", "tentative"}));
    case AllDayEvents:
      if (text == "ignore") return true;
      if (text == "count") return false;
      throw wrongSetting(setting, text, tr("count or ignore"), nearestOf(text, {"count", "ignore"}));
  }
  throw std::logic_error("a setting of no kind");
}

std::string settingText(const Setting& setting, const Dictionary& profile) {
  const Value* value = profile.find(setting.key);
  switch (setting.kind) {
    case Flag:
      return booleanMeaning(value) ? tr("on") : tr("off");
    case Volume:
      return tr("{0}%", percentOf(value));
    case Tone:
      return textMeaning(value).value_or(tr("the default one"));
    case EventStatus:
      return tr(statusWords[statusOf(value)]);
    case AllDayEvents:
      return booleanMeaning(value) ? tr("ignored") : tr("counted");
  }
  return {};
}

std::string writtenSetting(const Setting& setting, const Dictionary& profile) {
  const Value* value = profile.find(setting.key);
  switch (setting.kind) {
    case Flag:
      return booleanMeaning(value) ? "on" : "off";
    case Volume:
      return fmt::format("{}%", percentOf(value));
    case Tone:
      return textMeaning(value).value_or("");
    case EventStatus:
      return statusWords[statusOf(value)];
    case AllDayEvents:
      return booleanMeaning(value) ? "ignore" : "count";
  }
  return {};
}

std::optional<std::string> fileTimeOf(const std::string& text) {
  Scanner scanner(text);
  auto hour = scanner.number(1, 2);
  if (!hour) return std::nullopt;
  const bool withMinutes = scanner.take(":") || scanner.take(".");
  const auto minute = withMinutes ? scanner.number(2, 2) : std::optional(0);
  if (!minute || *minute > 59) return std::nullopt;
  scanner.skipBlanks();
  const auto isPeriod = [&](const char* lower, const char* upper) {
    return (scanner.take(lower) || scanner.take(upper)) && (scanner.take("m") || scanner.take("M"));
  };
  bool afternoon = *hour >= 12;
  if (scanner.isAtEnd()) {
    // A number alone may be anything.
    if (!withMinutes || *hour > 23) return std::nullopt;
    hour = *hour % 12 == 0 ? 12 : *hour % 12;
  } else {
    if (*hour < 1 || *hour > 12) return std::nullopt;
    afternoon = isPeriod("p", "P");
    if (!afternoon && !isPeriod("a", "A")) return std::nullopt;
    if (!scanner.isAtEnd()) return std::nullopt;
  }
  return fmt::format("{}:{:02} {}", *hour, *minute, afternoon ? "PM" : "AM");
}

std::optional<int> minuteOfDay(const std::string& fileTime) {
  const auto normal = fileTimeOf(fileTime);
  const bool hasPeriod = fileTime.find_first_of("mM") != std::string::npos;
  if (!normal || !hasPeriod) return std::nullopt;
  Scanner scanner(*normal);
  const int hour = *scanner.number(1, 2) % 12;
  scanner.take(":");
  const int minute = *scanner.number(2, 2);
  return (hour + (scanner.take(" PM") ? 12 : 0)) * 60 + minute;
}

std::optional<std::pair<std::string, std::string>> timesOf(const std::string& text) {
  const auto dash = text.find('-');
  if (dash == std::string::npos) return std::nullopt;
  const auto timeOf = [](std::string part) {
    part.erase(0, part.find_first_not_of(' '));
    part.erase(part.find_last_not_of(' ') + 1);
    return fileTimeOf(part);
  };
  const auto start = timeOf(text.substr(0, dash)), end = timeOf(text.substr(dash + 1));
  return start && end ? std::optional(std::pair(*start, *end)) : std::nullopt;
}

std::pair<std::string, std::string> parseWindow(const std::string& text) {
  const auto times = timesOf(text);
  if (!times) {
    throw simulation::wrongValue("--window " + text, tr("two times of day, such as 08:00-17:00 or 8am-5pm"),
                                 nearestHours(text, true).value_or(""));
  }
  if (*minuteOfDay(times->second) <= *minuteOfDay(times->first)) {
    throw InputError(
        tr("--window {}: a profile's window begins and ends on the same day. For hours over midnight use: "
           "hushmode schedule NAME {}",
           text, text));
  }
  return *times;
}

std::string windowText(const Dictionary& profile) {
  if (booleanMeaning(profile.find("allDay"))) return tr("all day");
  const auto start = textMeaning(profile.find("startTime")).value_or("12:00 AM");
  const auto end = textMeaning(profile.find("endTime")).value_or("12:00 AM");
  const auto from = minuteOfDay(start), to = minuteOfDay(end);
  return tr("{0} to {1}", from ? clockText(*from) : start, to ? clockText(*to) : end);
}

std::vector<std::string> splitList(const std::string& text) {
  std::vector<std::string> entries;
  std::istringstream stream(text);
  for (std::string entry; std::getline(stream, entry, ',');) {
    entry.erase(0, entry.find_first_not_of(' '));
    entry.erase(entry.find_last_not_of(' ') + 1);
    if (!entry.empty()) entries.push_back(entry);
  }
  return entries;
}

std::vector<std::string> textsOf(const Value* value) {
  std::vector<std::string> texts;
  if (const auto* array = value ? value->as<platform::Array>() : nullptr) {
    for (const Value& each : *array) texts.push_back(textMeaning(&each).value_or(""));
  }
  return texts;
}

platform::Array arrayOf(const std::vector<std::string>& texts) {
  platform::Array array;
  for (const std::string& each : texts) array.emplace_back(each);
  return array;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string line;
  for (const std::string& each : texts) line += (line.empty() ? "" : ", ") + each;
  return line;
}

}  // namespace hushmode::cli
