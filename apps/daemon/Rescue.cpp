// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/daemon/Rescue.h"

#include "devices/linux/base/Services.h"
#include "devices/linux/core/WriterLock.h"
#include "devices/linux/phone/LinuxPhone.h"
#include "host/Host.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <gio/gio.h>
#include <glibmm/main.h>
#include <nlohmann/json.hpp>

namespace hushmode::daemon {

using Json = nlohmann::ordered_json;

namespace {

constexpr std::chrono::seconds answersLimit{2}, writesLimit{2};

/// Those that have something to put back; and the calendars: a profile that names none gets those that there are, and
/// keeps them.
constexpr const char* awaited[] = {"volumes", "do not disturb", "calendar service"};

/// Runs the main context until the condition holds; false when that takes longer than the limit.
bool runUntil(const std::function<bool()>& condition, std::chrono::seconds limit) {
  const auto context = Glib::MainContext::get_default();
  bool isLate = false;
  sigc::connection late = Glib::signal_timeout().connect(
      [&] { return !(isLate = true); }, static_cast<unsigned>(std::chrono::milliseconds(limit).count()));
  sigc::connection look = Glib::signal_timeout().connect([] { return true; }, 5);
  while (!condition() && !isLate) context->iteration(true);
  late.disconnect();
  look.disconnect();
  return condition();
}

/// What is queued by now is done; what it queues itself, as well.
void runQueued() {
  const auto context = Glib::MainContext::get_default();
  while (context->iteration(false)) {
  }
}

Glib::RefPtr<Gio::DBus::Connection> busOrNone(Gio::DBus::BusType type) {
  try {
    return Gio::DBus::Connection::get_sync(type);
  } catch (const Glib::Error&) {
    return {};  // The phone says which services rest without it.
  }
}

template <class T>
Json jsonOf(const std::optional<T>& value) {
  if constexpr (std::is_same_v<T, float>) {
    // In hundredths: nobody hears less.
    return value ? Json(std::round(static_cast<double>(*value) * 100) / 100) : Json();
  } else {
    return value ? Json(*value) : Json();
  }
}

/// Each value that is to be put back and was not as it should be.
Json valuesOf(const host::Rescue& rescue) {
  Json values = Json::array();
  const auto add = [&](const char* what, auto member, auto isSame) {
    const auto before = rescue.before.*member, wanted = rescue.wanted.*member, after = rescue.after.*member;
    if (!wanted || (before && isSame(*before, *wanted))) return;
    values.push_back({{"what", what},
                      {"before", jsonOf(before)},
                      {"wanted", jsonOf(wanted)},
                      {"done", after && isSame(*after, *wanted)}});
  };
  using host::PhoneState;
  add("ringtone", &PhoneState::ringtone, host::sameVolume);
  add("media", &PhoneState::media, host::sameVolume);
  add("vibrateOnRing", &PhoneState::ringVibrate, std::equal_to<bool>());
  add("vibrateOnSilent", &PhoneState::silentVibrate, std::equal_to<bool>());
  add("doNotDisturb", &PhoneState::doNotDisturb, std::equal_to<bool>());
  return values;
}

Json report(const RescueOptions& options, const devices::LogSink& sink) {
  devices::LinuxPhone::Options phoneOptions;
  phoneOptions.foundation.folders = devices::Folders::ofUser();
  phoneOptions.foundation.folders.data = options.dataFolder;
  const devices::WriterLock lock(phoneOptions.foundation.folders.state);
  phoneOptions.sessionBus = busOrNone(Gio::DBus::BusType::SESSION);
  phoneOptions.systemBus = busOrNone(Gio::DBus::BusType::SYSTEM);
  phoneOptions.calendarFolder = options.calendarFolder;
  devices::Services services;
  devices::LinuxPhone phone(phoneOptions, services, {}, sink);
  // What it has to say is in the report.
  host::Host host(phone, [](const auto&) {});
  runUntil(
      [&] {
        return std::all_of(std::begin(awaited), std::end(awaited),
                           [&](const char* each) { return services.states().contains(std::string_view(each)); });
      },
      answersLimit);
  const host::Rescue rescue = options.onlyLook ? host.wouldRescue() : host.rescue();
  const bool isTaken = runUntil([&] { return !phone.pending(); }, writesLimit);
  runQueued();
  g_settings_sync();
  return {{"values", valuesOf(rescue)}, {"taken", isTaken}, {"saved", rescue.isSaved}};
}

}  // namespace

std::string rescueReport(const RescueOptions& options, const devices::LogSink& sink) {
  Json answer;
  try {
    answer = report(options, sink);
  } catch (const devices::WriterLock::Held& lock) {
    answer = {{"error", std::string("another program holds ") + lock.what()}};
  } catch (const std::exception& problem) {
    answer = {{"error", problem.what()}};
  }
  return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace hushmode::daemon
