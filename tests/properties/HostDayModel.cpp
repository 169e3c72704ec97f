// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/properties/HostDayModel.h"

#include "platform/PropertyList.h"

#include <algorithm>
#include <cmath>

namespace hushmode::properties {

using devices::SimulatedEvent;
using host::PhoneState;
using platform::Array;
using platform::Dictionary;
using platform::EKEventStatus;

namespace {

/// So long before and after a moment at which something begins or ends, nothing is said.
constexpr double blurSeconds = 8;

template <class T>
void object(std::string& text, const char* what, const std::set<T>& wish, const std::optional<T>& is) {
  if (is && std::none_of(wish.begin(), wish.end(), [&](T each) { return std::abs(each - *is) < 0.001; })) {
    text += std::string(text.empty() ? "" : ", ") + what + " " + std::to_string(*is) + " but wanted";
    for (const T each : wish) text += " " + std::to_string(each);
  }
}

bool flag(const Dictionary& profile, std::string_view key) {
  const auto* value = profile.find(key);
  const bool* set = value ? value->as<bool>() : nullptr;
  return set && *set;
}

bool lists(const Dictionary& profile, std::string_view key, const std::string& wanted) {
  const auto* value = profile.find(key);
  const Array* list = value ? value->as<Array>() : nullptr;
  return list && std::any_of(list->begin(), list->end(),
                             [&](const platform::Value& each) { return *each.as<std::string>() == wanted; });
}

/// "8:00 AM" in seconds after midnight.
double secondsOf(const Dictionary& profile, std::string_view key) {
  const std::string& text = *profile.find(key)->as<std::string>();
  const int hour = std::stoi(text) % 12 + (text.find("PM") == std::string::npos ? 0 : 12);
  return hour * 3600 + std::stoi(text.substr(text.find(':') + 1)) * 60;
}

/// The three answers of "is it between", with the blur.
Ought between(double now, double start, double end) {
  for (const double bound : {start, end}) {
    if (std::abs(now - bound) < blurSeconds) return Ought::Unclear;
  }
  return start < now && now < end ? Ought::On : Ought::Off;
}

}  // namespace

UsersWishes::UsersWishes(const PhoneState& first)
    : ringtone{*first.ringtone},
      media{*first.media},
      ringVibrate{*first.ringVibrate},
      silentVibrate{*first.silentVibrate},
      doNotDisturb{*first.doNotDisturb} {}

std::string UsersWishes::objection(const PhoneState& state) const {
  std::string text;
  object(text, "ringtone", ringtone, state.ringtone);
  object(text, "media", media, state.media);
  object(text, "vibrate on ring", ringVibrate, state.ringVibrate);
  object(text, "vibrate on silent", silentVibrate, state.silentVibrate);
  object(text, "do not disturb", doNotDisturb, state.doNotDisturb);
  object(text, "icon", std::set<bool>{false}, state.icon);
  return text;
}

Ought oughtToBe(const Dictionary& profile, const std::vector<SimulatedEvent>& events, devices::SimulatedPhone& phone,
                const devices::TimeZone& zone) {
  if (!flag(profile, "enabled")) return Ought::Off;
  const double now = phone.time().now().secondsSince1970();
  const double local = now + static_cast<double>(zone.offsetAt(static_cast<std::int64_t>(now)));
  const double ofDay = std::fmod(local, 86400.0);
  // The library looks at one local day at a time.
  if (ofDay < blurSeconds || ofDay > 86400 - blurSeconds) return Ought::Unclear;
  Ought window = Ought::On;
  if (!flag(profile, "allDay")) {
    window = between(ofDay, secondsOf(profile, "startTime"), secondsOf(profile, "endTime"));
    if (window != Ought::On) return window;
  }
  if (const auto joined = phone.wifi().joined(); joined && lists(profile, "wifiNetworks", *joined)) return Ought::On;
  bool unclear = false;
  for (const SimulatedEvent& event : events) {
    if (!lists(profile, "calendarIdentifiers", event.calendar) || event.status == EKEventStatus::Canceled) continue;
    if (event.allDay && flag(profile, "allDayEventsIgnored")) continue;
    const auto* wanted = profile.find("applyProfileEventStatus");
    if (wanted && *wanted->as<std::int64_t>() > 0 &&
        *wanted->as<std::int64_t>() != static_cast<std::int64_t>(event.status)) {
      continue;
    }
    const Ought ought = between(now, event.start.secondsSince1970(), event.end.secondsSince1970());
    if (ought == Ought::On) return Ought::On;
    unclear = unclear || ought == Ought::Unclear;
  }
  return unclear ? Ought::Unclear : Ought::Off;
}

}  // namespace hushmode::properties
