// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/ScreenSaver.h"

#include <utility>

namespace hushmode::devices {

namespace {

const BusClient::Object screenSaver{"/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver"};

}  // namespace

ScreenSaver::ScreenSaver(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, std::function<void()> changed,
                         std::chrono::milliseconds limit)
    : changed_(std::move(changed)),
      service_(
          sessionBus, screenSaver.interface, [this](BusClient& client) { listenTo(client); },
          [this] { take(false, std::nullopt); }, limit) {}

void ScreenSaver::listenTo(BusClient& client) {
  client.hear(
      screenSaver, "ActiveChanged", "(b)",
      [this](const std::string&, const Glib::VariantContainerBase& values) { take(true, valueAt<bool>(values, 0)); });
  client.call(
      screenSaver, "GetActive", {}, "(b)",
      [this](const BusClient::Reply& reply) { take(true, valueAt<bool>(reply.values, 0)); },
      [this](const BusClient::Failure& failure) {
        take(true, std::nullopt);
        // Some cannot tell; they light the screen all the same.
        if (!failure.refused) service_.tryAgainLater();
      });
  take(true, std::nullopt);
}

void ScreenSaver::take(bool isThere, std::optional<bool> isActive) {
  if (isRead_ && isThere == isThere_ && isActive == isActive_) return;
  isRead_ = true;
  isThere_ = isThere;
  isActive_ = isActive;
  if (changed_) changed_();
}

void ScreenSaver::simulateUserActivity() {
  if (service_.client()) service_.client()->call(screenSaver, "SimulateUserActivity", {}, "()", {});
}

}  // namespace hushmode::devices
