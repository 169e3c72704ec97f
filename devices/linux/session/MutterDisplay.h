// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"

#include <functional>
#include <optional>

namespace hushmode::devices {

/// The power of the screens in Mutter (GNOME, Phosh): property PowerSaveMode of org.gnome.Mutter.DisplayConfig, on the
/// session bus.
class MutterDisplay {
 public:
  /// `changed` is called from the main loop when it is known for the first time whether there is a power to switch, and
  /// when `power` answers otherwise than before, except through `setPower`.
  MutterDisplay(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, std::function<void()> changed,
                std::chrono::milliseconds limit = BusClient::answerLimit);

  enum Power : int { On = 0, Standby = 1, Suspend = 2, Off = 3 };

  /// A value of `Power`; none while it is not known, also when the screens have none to switch.
  std::optional<int> power() const { return power_; }
  /// Asks for that power, and answers it from now on. Nothing happens while there is no power to switch.
  void setPower(int power);
  /// Whether it is known by now whether there is a power to switch.
  bool isRead() const { return isRead_; }

 private:
  void listenTo(BusClient& client);
  void take(std::optional<int> power);

  std::function<void()> changed_;
  std::optional<int> power_;
  bool isRead_ = false;
  RemoteService service_;  ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
