// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"

#include <functional>
#include <optional>

namespace hushmode::devices {

/// The desktop's screen saver: org.freedesktop.ScreenSaver (Plasma, GNOME's settings daemon), on the session bus. It is
/// only ever told that the user is there, which lights the screen; nothing here ends it, since that would dismiss a
/// lock.
class ScreenSaver {
 public:
  /// `changed` is called from the main loop when the service comes or is away, and when `isActive` answers otherwise.
  ScreenSaver(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, std::function<void()> changed,
              std::chrono::milliseconds limit = BusClient::answerLimit);

  bool isThere() const { return isThere_; }
  /// Whether it is known by now whether the service is there.
  bool isRead() const { return isRead_; }
  /// Whether it covers the screen or locks it; none while that is not known, as with services that do not tell.
  std::optional<bool> isActive() const { return isActive_; }
  /// Tells it that the user is there. Nothing happens when it is away.
  void simulateUserActivity();

 private:
  void listenTo(BusClient& client);
  void take(bool isThere, std::optional<bool> isActive);

  std::function<void()> changed_;
  bool isThere_ = false, isRead_ = false;
  std::optional<bool> isActive_;
  RemoteService service_;  ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
