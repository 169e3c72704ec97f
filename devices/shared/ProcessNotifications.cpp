// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ProcessNotifications.h"

#include <utility>

namespace hushmode::devices {

void ProcessNotifications::addObserver(const void* observer, std::string_view name,
                                       std::shared_ptr<platform::Object> sender,
                                       std::function<void(const platform::Notification&)> handler) {
  observers_.push_back(
      std::make_shared<Observer>(Observer{observer, std::string(name), std::move(sender), std::move(handler)}));
}

void ProcessNotifications::removeObserver(const void* observer) {
  // A post that is under way holds its observers: they have to be told, too.
  for (const auto& each : observers_) {
    if (each->identity == observer) each->removed = true;
  }
  std::erase_if(observers_, [](const auto& each) { return each->removed; });
}

void ProcessNotifications::post(const platform::Notification& notification) {
  const auto observers = observers_;
  for (const auto& observer : observers) {
    if (observer->removed || observer->name != notification.name) continue;
    if (observer->sender && observer->sender != notification.sender) continue;
    observer->handler(notification);
  }
}

void ProcessNotifications::processEnded() {
  const auto ended = std::exchange(observers_, {});
  for (const auto& observer : ended) observer->removed = true;
}

}  // namespace hushmode::devices
