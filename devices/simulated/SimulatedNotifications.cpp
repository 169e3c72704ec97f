// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedNotifications.h"

namespace hushmode::devices {

void SimulatedNotificationCenter::post(const platform::Notification& notification) {
  record_.append(kind::notification, {{"name", notification.name}});
  deliver(notification);
}

void SimulatedDarwinCenter::post(std::string_view name) {
  record_.append(kind::darwin, {{"name", name}});
  deliver(name);
}

void SimulatedDarwinCenter::postFromOutside(std::string_view name) {
  record_.step("darwin", {{"name", name}});
  deliver(name);
}

void SimulatedDarwinCenter::deliver(std::string_view name) {
  for (const auto& observer : observers_) {
    time_.after(0, [observer, name = std::string(name)] { (*observer)(name); });
  }
}

}  // namespace hushmode::devices
