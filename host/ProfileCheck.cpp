// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/ProfileCheck.h"

#include "host/Host.h"
#include "host/ProfileTitle.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace hushmode::host {

using platform::Array;
using platform::Value;
using enum ProfileKeyKind;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

[[noreturn]] void refuse(Message message) { throw EditError(EditError::Kind::InvalidArgument, std::move(message)); }

bool isTooLong(const std::string& text) { return text.size() > longestText; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// "8:00 AM": an hour from 1 to 12 of one or two digits, minutes of two, and AM or PM in any letter case.
bool isTime(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon < 1 || colon > 2 || text.size() != colon + 6) return false;
  const std::string_view hours(text.data(), colon), rest(text.data() + colon + 1, 5);
  if (!std::all_of(hours.begin(), hours.end(), isDigit) || !isDigit(rest[0]) || !isDigit(rest[1])) return false;
  const int hour = colon == 1 ? hours[0] - '0' : (hours[0] - '0') * 10 + (hours[1] - '0');
  const auto isEither = [](char c, char lower) { return c == lower || c == lower - 'a' + 'A'; };
  return hour >= 1 && hour <= 12 && rest[0] <= '5' && rest[2] == ' ' &&
         (isEither(rest[3], 'a') || isEither(rest[3], 'p')) && isEither(rest[4], 'm');
}

void checkTexts(const std::string& key, const Value& value) {
  const auto* list = value.as<Array>();
  if (!list) refuse(Message("\"{0}\": expected a list of texts", key));
  if (list->size() > longestList) refuse(Message("\"{0}\": expected at most {1} entries", key, longestList));
  for (const Value& each : *list) {
    const auto* text = each.as<std::string>();
    if (!text) refuse(Message("\"{0}\": expected a list of texts", key));
    if (isTooLong(*text))
      refuse(Message("\"{0}\": expected at most {1} bytes of text in each entry", key, longestText));
  }
}

void checkText(const std::string& key, const Value& value) {
  const auto* text = value.as<std::string>();
  if (!text) refuse(Message("\"{0}\": expected a text", key));
  if (key == "title") {
    if (auto fault = titleFault(*text)) refuse(*std::move(fault));
  }
  if (isTooLong(*text)) refuse(Message("\"{0}\": expected at most {1} bytes of text", key, longestText));
}

void checkValue(const ProfileKey& key, const Value& value) {
  const std::string name(key.name);
  switch (key.kind) {
    case Flag:
      if (!value.as<bool>()) refuse(Message("\"{0}\": expected true or false", name));
      return;
    case Volume: {
      const auto* volume = value.as<double>();
      if (!volume || !(*volume >= 0 && *volume <= 1))
        refuse(Message("\"{0}\": expected a volume from 0.0 to 1.0", name));
      return;
    }
    case Integer: {
      const auto* number = value.as<std::int64_t>();
      if (!number || *number < key.least || *number > key.most) {
        refuse(key.most == largest
                   ? Message("\"{0}\": expected a whole number from {1} on", name, key.least)
                   : Message("\"{0}\": expected a whole number from {1} to {2}", name, key.least, key.most));
      }
      return;
    }
    case Text:
      return checkText(name, value);
    case Time: {
      const auto* text = value.as<std::string>();
      if (!text || !isTime(*text))
        refuse(Message("\"{0}\": expected a time of day such as \"8:00 AM\" or \"5:30 PM\"", name));
      return;
    }
    case Texts:
      return checkTexts(name, value);
  }
}

}  // namespace

const std::vector<ProfileKey>& profileKeys() {
  static const std::vector<ProfileKey> keys = {
      {"title", Text},
      {"enabled", Flag},
      {"allDay", Flag},
      {"ringerVolume", Volume},
      {"playBackVolume", Volume},
      {"deviceVolume", Volume},
      {"playAlert", Flag},
      {"vibrate", Flag},
      {"vibrateAlert", Flag},
      {"showOnStatusBar", Flag},
      {"dnDEnabled", Flag},
      {"applyProfileEventStatus", Integer, 0, 3},
      {"alertSound", Integer, 0, largest},
      {"alertToneIdentifier", Text},
      {"calendarIdentifiers", Texts},
      {"startTime", Time},
      {"endTime", Time},
      {"wifiNetworks", Texts},
      {"wakeUpScreen", Flag},
      {"allDayEventsIgnored", Flag},
  };
  return keys;
}

void checkProfile(const platform::Dictionary& profile) {
  for (const auto& [name, value] : profile) {
    const auto& keys = profileKeys();
    const auto key = std::find_if(keys.begin(), keys.end(), [&](const ProfileKey& each) { return each.name == name; });
    if (key == keys.end()) {
      std::string known;
      for (const ProfileKey& each : keys) known += (known.empty() ? "" : ", ") + std::string(each.name);
      refuse(Message("\"{0}\": expected one of {1}", name.substr(0, 100), known));
    }
    checkValue(*key, value);
  }
}

}  // namespace hushmode::host
