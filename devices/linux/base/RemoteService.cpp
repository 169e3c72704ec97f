// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/RemoteService.h"

#include <glibmm/main.h>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr int limitsBetweenTries = 3;  // Long enough that a hung service costs no battery.

}  // namespace

RemoteService::RemoteService(Glib::RefPtr<Gio::DBus::Connection> connection, const std::string& name,
                             std::function<void(BusClient&)> appeared, std::function<void()> vanished,
                             std::chrono::milliseconds limit)
    : connection_(std::move(connection)), appeared_(std::move(appeared)), limit_(limit) {
  if (!connection_) {
    vanished();
    return;
  }
  watch_.emplace(
      connection_, name, [this](const std::string& owner) { startOver(owner); },
      [this, vanished = std::move(vanished)] {
        retry_.disconnect();
        client_.reset();
        vanished();
      });
}

RemoteService::~RemoteService() { retry_.disconnect(); }

void RemoteService::startOver(const std::string& owner) {
  retry_.disconnect();
  client_ = std::make_unique<BusClient>(connection_, owner, limit_);
  appeared_(*client_);
}

void RemoteService::tryAgainLater() {
  if (!client_ || retry_.connected()) return;
  retry_ = Glib::signal_timeout().connect(
      [this] {
        startOver(std::string(client_->owner()));
        return false;
      },
      static_cast<unsigned>(limit_.count()) * limitsBetweenTries);
}

}  // namespace hushmode::devices
