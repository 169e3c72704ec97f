// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The profile's persisted form: the dictionary that the profiles file holds. Reading and writing are not mirror images,
// and that is meant: `updatedDate` is written and never read; volumes are written in double precision and read through
// single; the event filter is written clamped and read as it stands; `applied` is read without its setter's effects;
// absent times are written as the usual office hours and a missing key reads as absent.

#include "model/HMProfile.h"
#include "util/Log.h"
#include "util/Now.h"
#include "util/Numbers.h"

namespace hushmode {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

/// The texts of an array. Elements without a meaning as text are left out.
std::optional<std::vector<std::string>> textsOf(const Value* value) {
  const Array* array = value ? value->as<Array>() : nullptr;
  if (!array) return std::nullopt;
  std::vector<std::string> texts;
  texts.reserve(array->size());
  for (const Value& element : *array) {
    if (auto text = textMeaning(&element)) texts.push_back(std::move(*text));
  }
  return texts;
}

Array arrayOf(const std::vector<std::string>& texts) { return Array(texts.begin(), texts.end()); }

}  // namespace

std::shared_ptr<HMProfile> HMProfile::initWithDictionary(const Dictionary& dictionary) {
  auto profile = std::make_shared<HMProfile>(Private());
  profile->setPropertiesFromDicitonary(dictionary);
  if (profile->identifier() <= 0) {
    profile->setIdentifier(static_cast<std::int64_t>(now().secondsSince1970()));
  }
  return profile;
}

void HMProfile::setPropertiesFromDicitonary(const Dictionary& dictionary) {
  logInformation({"setPropertiesFromDicitonary:", 88}, "setPropertiesFromDicitonary=> %@", dictionary);
  const auto at = [&](std::string_view key) { return dictionary.find(key); };
  setIdentifier(integerMeaning(at("identifier")));
  setTitle(textMeaning(at("title")));
  setEnabled(booleanMeaning(at("enabled")));
  applied_ = booleanMeaning(at("applied"));  // The field, not the setter: reading a file applies nothing.
  setAllDay(booleanMeaning(at("allDay")));
  setRingerVolume(floatMeaning(at("ringerVolume")));
  setPlayBackVolume(floatMeaning(at("playBackVolume")));
  setDeviceVolume(floatMeaning(at("deviceVolume")));
  setPlayAlert(booleanMeaning(at("playAlert")));
  setVibrate(booleanMeaning(at("vibrate")));
  setVibrateAlert(booleanMeaning(at("vibrateAlert")));
  setShowOnStatusBar(booleanMeaning(at("showOnStatusBar")));
  setDnDEnabled(booleanMeaning(at("dnDEnabled")));
  setApplyProfileEventStatus(integerMeaning(at("applyProfileEventStatus")));
  setAlertSound(integerMeaning(at("alertSound")));
  if (auto identifiers = textsOf(at("calendarIdentifiers"))) setCalendarIdentifiers(std::move(identifiers));
  setAlertToneIdentifier(textMeaning(at("alertToneIdentifier")));
  setAllDayEventsIgnored(booleanMeaning(at("allDayEventsIgnored")));
  setStartTime(textMeaning(at("startTime")));
  setEndTime(textMeaning(at("endTime")));
  if (auto names = textsOf(at("wifiNetworks"))) setWifiNetworks(std::move(names));
  setWakeUpScreen(booleanMeaning(at("wakeUpScreen")));
}

Dictionary HMProfile::dictionaryRepresentation() {
  Dictionary dictionary;
  dictionary.reserve(23);
  const auto put = [&](const char* key, Value value) { dictionary.append(key, std::move(value)); };
  put("identifier", identifier());
  if (title()) put("title", *title());
  put("enabled", isEnabled());
  put("allDay", isAllDay());
  put("ringerVolume", ringerVolume());
  put("playBackVolume", playBackVolume());
  put("deviceVolume", deviceVolume());
  put("playAlert", isPlayAlert());
  put("vibrate", isVibrate());
  put("vibrateAlert", isVibrateAlert());
  put("showOnStatusBar", isShowOnStatusBar());
  put("dnDEnabled", isDnDEnabled());
  put("applyProfileEventStatus", applyProfileEventStatus());
  put("applied", isApplied());
  put("alertSound", alertSound());
  if (alertToneIdentifier()) put("alertToneIdentifier", *alertToneIdentifier());
  put("calendarIdentifiers", arrayOf(calendarIdentifiers()));
  put("startTime", startTime().value_or("8:00 AM"));
  put("endTime", endTime().value_or("5:00 PM"));
  if (updatedDate()) put("updatedDate", *updatedDate());
  put("wifiNetworks", arrayOf(wifiNetworks()));
  put("wakeUpScreen", isWakeUpScreen());
  put("allDayEventsIgnored", isAllDayEventsIgnored());
  return dictionary;
}

}  // namespace hushmode
