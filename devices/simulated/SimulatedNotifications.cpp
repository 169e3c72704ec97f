#include "devices/simulated/SimulatedNotifications.h"

#include <utility>

namespace hushmode::devices {

void SimulatedNotificationCenter::addObserver(const void* observer, std::string_view name,
                                              std::shared_ptr<platform::Object> sender,
                                              std::function<void(const platform::Notification&)> handler) {
  observers_.push_back(
      std::make_shared<Observer>(Observer{observer, std::string(name), std::move(sender), std::move(handler)}));
}

void SimulatedNotificationCenter::removeObserver(const void* observer) {
  // A post that is under way holds its observers: they have to be told, too.
  for (const auto& each : observers_) {
    if (each->identity == observer) each->removed = true;
  }
  std::erase_if(observers_, [](const auto& each) { return each->removed; });
}

void SimulatedNotificationCenter::post(const platform::Notification& notification) {
  record_.append(kind::notification, {{"name", notification.name}});
  deliver(notification);
}

void SimulatedNotificationCenter::deliver(const platform::Notification& notification) {
  const auto observers = observers_;
  for (const auto& observer : observers) {
    if (observer->removed || observer->name != notification.name) continue;
    if (observer->sender && observer->sender != notification.sender) continue;
    observer->handler(notification);
  }
}

void SimulatedNotificationCenter::processEnded() {
  const auto ended = std::exchange(observers_, {});
  for (const auto& observer : ended) observer->removed = true;
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
