#include "host/ProfileCheck.h"

#include "host/Host.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace hushmode::host {

using platform::Array;
using platform::Value;
using enum ProfileKeyKind;

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

[[noreturn]] void refuse(std::string_view key, const std::string& expected) {
  throw EditError(EditError::Kind::InvalidArgument, "\"" + std::string(key) + "\": expected " + expected);
}

bool isTooLong(const std::string& text) { return text.size() > longestText; }

const std::string lengthLimit = "at most " + std::to_string(longestText) + " bytes of text";

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

void checkTexts(std::string_view key, const Value& value) {
  const auto* list = value.as<Array>();
  if (!list) refuse(key, "a list of texts");
  if (list->size() > longestList) refuse(key, "at most " + std::to_string(longestList) + " entries");
  for (const Value& each : *list) {
    const auto* text = each.as<std::string>();
    if (!text) refuse(key, "a list of texts");
    if (isTooLong(*text)) refuse(key, lengthLimit + " in each entry");
  }
}

void checkText(std::string_view key, const Value& value) {
  const auto* text = value.as<std::string>();
  if (!text) refuse(key, "a text");
  if (isTooLong(*text)) refuse(key, lengthLimit);
  if (key == "title" && text->empty()) refuse(key, "a title that is not empty");
}

void checkValue(const ProfileKey& key, const Value& value) {
  switch (key.kind) {
    case Flag:
      if (!value.as<bool>()) refuse(key.name, "true or false");
      return;
    case Volume: {
      const auto* volume = value.as<double>();
      if (!volume || !(*volume >= 0 && *volume <= 1)) refuse(key.name, "a volume from 0.0 to 1.0");
      return;
    }
    case Integer: {
      const auto* number = value.as<std::int64_t>();
      if (!number || *number < key.least || *number > key.most) {
        refuse(key.name, "a whole number" + (key.most == largest ? " from " + std::to_string(key.least) + " on"
                                                                 : " from " + std::to_string(key.least) + " to " +
                                                                       std::to_string(key.most)));
      }
      return;
    }
    case Text:
      return checkText(key.name, value);
    case Time: {
      const auto* text = value.as<std::string>();
      if (!text || !isTime(*text)) refuse(key.name, "a time of day such as \"8:00 AM\" or \"5:30 PM\"");
      return;
    }
    case Texts:
      return checkTexts(key.name, value);
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
      refuse(name.substr(0, 100), "one of " + known);
    }
    checkValue(*key, value);
  }
}

}  // namespace hushmode::host
