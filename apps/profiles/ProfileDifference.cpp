// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ProfileDifference.h"

#include "apps/client/ProfileStore.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/terminal/Terminal.h"
#include "devices/words/Text.h"
#include "host/ProfileCheck.h"
#include "host/ProfileTitle.h"
#include "util/Numbers.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace hushmode::cli {

using host::ProfileKeyKind;
using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

std::optional<ProfileKeyKind> kindOf(std::string_view key) {
  const auto& keys = host::profileKeys();
  const auto place = std::find_if(keys.begin(), keys.end(), [&](const auto& each) { return each.name == key; });
  return place == keys.end() ? std::nullopt : std::optional(place->kind);
}

/// Whether two values of a key mean the same; null for one that is missing.
bool meansTheSame(std::string_view key, const Value* one, const Value* other) {
  const auto kind = kindOf(key);
  if (kind == ProfileKeyKind::Flag) return booleanMeaning(one) == booleanMeaning(other);
  // The daemon keeps volumes in single precision.
  if (kind == ProfileKeyKind::Volume) return floatMeaning(one) == floatMeaning(other);
  if (kind == ProfileKeyKind::Integer) return integerMeaning(one) == integerMeaning(other);
  return one && other ? *one == *other : one == other;
}

const Setting* settingOf(std::string_view key) {
  const auto& settings = profileSettings();
  const auto place = std::find_if(settings.begin(), settings.end(), [&](const auto& each) { return each.key == key; });
  return place == settings.end() ? nullptr : &*place;
}

Json rawJson(const Value* value) {
  static const auto utc = devices::TimeZone::utc();
  return value ? cli::jsonOf(*value, *utc) : Json();
}

std::string joined(const Value* value, const std::vector<KnownCalendar>* calendars) {
  const Array* array = value ? value->as<Array>() : nullptr;
  std::string line;
  for (const Value& each : array ? *array : Array()) {
    const std::string text = textMeaning(&each).value_or("");
    line += (line.empty() ? "" : ", ") + (calendars ? calendarTitle(text, *calendars) : text);
  }
  return line.empty() ? tr("none") : line;
}

bool isOfWindow(std::string_view key) { return key == "allDay" || key == "startTime" || key == "endTime"; }

/// What a key of the profile says to people.
std::string wordsOf(std::string_view key, const Dictionary& profile, const std::vector<KnownCalendar>& calendars) {
  if (const Setting* setting = settingOf(key)) return settingText(*setting, profile);
  if (key == "calendarIdentifiers") {
    return profile.find(key) ? joined(profile.find(key), &calendars) : tr("all that can be written to");
  }
  if (key == "wifiNetworks") return joined(profile.find(key), nullptr);
  return profile.find(key) ? rawJson(profile.find(key)).dump(-1, ' ', false, Json::error_handler_t::replace)
                           : tr("none");
}

std::string nameOf(std::string_view key) {
  if (const Setting* setting = settingOf(key)) return std::string(setting->word);
  if (key == "calendarIdentifiers") return "calendars";
  if (key == "wifiNetworks") return "networks";
  return std::string(key);
}

/// The keys of what changes, in the order in which people see settings; behind them those that nobody knows.
std::vector<std::string> keysOf(const Dictionary& changes) {
  std::vector<std::string> keys;
  const auto add = [&](std::string_view key) {
    const bool isListed = std::find(keys.begin(), keys.end(), key) != keys.end();
    if (!isListed && key != "title" && changes.find(key)) keys.emplace_back(key);
  };
  for (const char* key : {"allDay", "startTime", "endTime", "calendarIdentifiers", "wifiNetworks"}) add(key);
  for (const Setting& each : profileSettings()) add(each.key);
  for (const auto& entry : changes) add(entry.key);
  return keys;
}

/// Without the blanks around it that a title of old may have.
std::string plainTitle(const Dictionary& profile) {
  return host::trimmedTitle(textMeaning(profile.find("title")).value_or(""));
}

Dictionary with(Dictionary profile, const Dictionary& changes) {
  for (const auto& [key, value] : changes) profile.set(key, value);
  return profile;
}

}  // namespace

std::vector<ProfileDifference> differences(const std::vector<Dictionary>& present, const std::vector<Dictionary>& given,
                                           bool removesOthers) {
  using enum ProfileDifference::Kind;
  std::vector<ProfileDifference> list;
  std::vector<const Dictionary*> kept;
  for (const Dictionary& each : given) {
    const auto place = std::find_if(present.begin(), present.end(),
                                    [&](const Dictionary& other) { return plainTitle(other) == plainTitle(each); });
    if (place == present.end()) {
      list.push_back({Added, {}, each, each});
      continue;
    }
    kept.push_back(&*place);
    Dictionary changes;
    for (const auto& [key, value] : each) {
      if (!meansTheSame(key, place->find(key), &value)) changes.set(key, value);
    }
    list.push_back({changes.empty() ? Unchanged : Changed, *place, each, changes});
  }
  for (const Dictionary& each : present) {
    if (removesOthers && std::find(kept.begin(), kept.end(), &each) == kept.end()) {
      list.push_back({Removed, each, {}, {}});
    }
  }
  return list;
}

std::vector<std::string> settingLines(const ProfileDifference& difference,
                                      const std::vector<KnownCalendar>& calendars) {
  const bool isNew = difference.kind == ProfileDifference::Kind::Added;
  const Dictionary after = with(difference.before, difference.changes);
  std::vector<std::string> lines;
  const auto add = [&](const std::string& name, const std::string& is, const std::string& was) {
    const std::string text = harmless(isNew ? is : tr("{0} (was {1})", is, was));
    lines.push_back(padded(harmless(name), 16) + "  " + text);
  };
  // The times of a window that is and stays the whole day are told one by one.
  const std::string window = windowText(after), windowBefore = windowText(difference.before);
  bool isWindowTold = false;
  for (const std::string& key : keysOf(difference.changes)) {
    if (isOfWindow(key) && (isNew || window != windowBefore)) {
      if (!std::exchange(isWindowTold, true)) add("window", window, windowBefore);
      continue;
    }
    add(nameOf(key), wordsOf(key, after, calendars), wordsOf(key, difference.before, calendars));
  }
  return lines;
}

Json jsonOf(const ProfileDifference& difference) {
  static constexpr const char* kinds[] = {"added", "changed", "unchanged", "removed"};
  const bool isNew = difference.kind == ProfileDifference::Kind::Added;
  Json settings = Json::object();
  for (const auto& [key, value] : difference.changes) {
    settings[key] = {{"before", rawJson(difference.before.find(key))}, {"after", rawJson(&value)}};
  }
  return {{"title", titleOf(isNew ? difference.given : difference.before)},
          {"change", kinds[static_cast<int>(difference.kind)]},
          {"settings", settings}};
}

}  // namespace hushmode::cli
