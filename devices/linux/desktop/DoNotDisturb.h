// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/desktop/BannerSetting.h"
#include "devices/linux/desktop/NotificationInhibition.h"
#include "platform/ControlCenter.h"

#include <memory>
#include <string_view>

namespace hushmode::devices {

/// The desktop's Do Not Disturb, as the Control Center's module of it: from system 11 on, that is where the switch is
/// looked for.
///
/// Behind it is one of two: an inhibition of the notification service where it has those (Plasma), else the setting
/// whether banners are shown (GNOME, Phosh). An inhibition ends with the connection to the bus; the setting stays as it
/// is when the process ends. Changes that others make show at once. Reports as "do not disturb".
class DoNotDisturb {
 public:
  /// A null connection leaves the setting.
  DoNotDisturb(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services,
               std::chrono::milliseconds timeLimit = BusClient::answerLimit);
  ~DoNotDisturb();
  DoNotDisturb(const DoNotDisturb&) = delete;
  DoNotDisturb& operator=(const DoNotDisturb&) = delete;

  bool isAvailable() const;
  bool isOn() const;
  /// Shows in `isOn` at once. Where neither of the two is there, or the setting is locked, nothing happens.
  void set(bool on);

  using Listener = std::function<void(bool on)>;
  /// Told of each change, whoever made it; of one made here inside `set`. Empty for none.
  void setListener(Listener listener) { listener_ = std::move(listener); }

  /// "CCUIModuleInstanceManager" and "CCUIButtonModuleView" while available; null otherwise, and for other names.
  platform::Class* classNamed(std::string_view name) const;

 private:
  void update();
  void choose();
  void report();

  Services& services_;
  bool usesInhibition_ = false;
  bool isOurs_ = false;  ///< Switched on here, and nobody switched it off since.
  bool lockedSetting_ = false;
  bool lastShown_ = false;
  Listener listener_;
  std::unique_ptr<platform::Class> managerClass_, buttonViewClass_;
  BannerSetting setting_;
  NotificationInhibition inhibition_;
};

}  // namespace hushmode::devices
