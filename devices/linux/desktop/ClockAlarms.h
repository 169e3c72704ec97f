// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/NameWatch.h"
#include "devices/linux/base/Services.h"
#include "platform/MobileTimer.h"

#include <giomm/settings.h>
#include <glibmm/variant.h>
#include <memory>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// The alarms of GNOME Clocks, by its settings "org.gnome.clocks".
///
/// A Clocks that runs does not notice what others write there, and overwrites it: what is removed meanwhile is removed
/// once it has left the session bus. Nothing is written where that cannot be known, for want of a bus. Reports as
/// "alarms".
class ClockAlarms {
 public:
  static constexpr std::size_t maximumCount = 1000;  ///< Alarms beyond are not looked at.

  ClockAlarms(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services);
  ~ClockAlarms();
  ClockAlarms(const ClockAlarms&) = delete;
  ClockAlarms& operator=(const ClockAlarms&) = delete;

  /// "AlarmManager" where GNOME Clocks is installed; null otherwise, and for other names.
  platform::Class* classNamed(std::string_view name) const;

 private:
  class ClockAlarm;
  class Manager;
  class ManagerClass;
  using Entries = std::vector<Glib::VariantBase>;

  Entries stored() const;
  void load();
  void remove(const std::shared_ptr<platform::Alarm>& alarm);
  void writeRemovals();

  Services& services_;
  Glib::RefPtr<Gio::Settings> settings_;
  std::unique_ptr<platform::Class> managerClass_;
  std::vector<std::shared_ptr<platform::Alarm>> loaded_;
  Entries removed_;  ///< Not yet in the settings.
  bool mayWrite_ = false;
  NameWatch clocks_;
};

}  // namespace hushmode::devices
