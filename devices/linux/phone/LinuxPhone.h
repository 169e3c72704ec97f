// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/calendars/LinuxCalendars.h"
#include "devices/linux/core/ClockSteps.h"
#include "devices/linux/core/LinuxFoundation.h"
#include "devices/linux/core/LocalZone.h"
#include "devices/linux/core/MainLoop.h"
#include "devices/linux/core/WakeTimers.h"
#include "devices/linux/desktop/ClockAlarms.h"
#include "devices/linux/desktop/DarwinNotifications.h"
#include "devices/linux/desktop/DoNotDisturb.h"
#include "devices/linux/desktop/StatusIcon.h"
#include "devices/linux/desktop/VibrateMirror.h"
#include "devices/linux/network/NetworkManagerWiFi.h"
#include "devices/linux/session/Appearance.h"
#include "devices/linux/session/LinuxUIKit.h"
#include "devices/linux/session/Logind.h"
#include "devices/linux/session/NotificationAlerts.h"
#include "devices/linux/session/Screen.h"
#include "devices/linux/sound/PulseVolumes.h"
#include "devices/linux/sound/Tones.h"
#include "platform/Device.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// What happens to a Linux phone without the library's doing. All from the main loop; empty ones are left out.
struct LinuxPhoneEvents {
  std::function<void()> networkChanged;                 ///< The networks, or the one that is joined.
  std::function<void()> clockChanged;                   ///< The wall clock was set, or the zone is another.
  std::function<void()> aboutToSleep;                   ///< Sleep waits for `readyToSleep`, for some seconds.
  std::function<void()> resumed;                        ///< From sleep.
  std::function<void()> effectsChanged;                 ///< Do Not Disturb, by whomever.
  std::function<void(bool byUser)> volumeIsChanging;    ///< Observers are told right afterwards.
  std::function<void(std::string_view name)> notified;  ///< A system-wide notification, ours included.
};

/// A Linux phone: the adapters of its services behind the platform's declarations. It works with whatever services
/// there are, none included; what is missing is told by `Services`.
///
/// For the thread of the main loop.
class LinuxPhone final : public platform::Device {
 public:
  struct Options {
    LinuxFoundation::Options foundation;
    Glib::RefPtr<Gio::DBus::Connection> sessionBus, systemBus;  ///< May be null.
    std::string sessionId;                                      ///< Of the login session; may be empty.
    std::filesystem::path calendarFolder;                       ///< Of iCalendar files; none when empty.
    std::filesystem::path iconFolder;                           ///< Of the icon theme "hicolor".
  };

  /// `services` must outlive the phone. `sink` takes the lines about what is wrong; empty for none.
  LinuxPhone(const Options& options, Services& services, LinuxPhoneEvents events, const LogSink& sink);
  ~LinuxPhone() override;

  LinuxFoundation& foundation() override { return foundation_; }
  platform::CoreFoundation& coreFoundation() override { return coreFoundation_; }
  platform::EventKit& eventKit() override { return calendars_; }
  platform::MobileWiFi& mobileWiFi() override { return wifi_; }
  platform::Celestial& celestial() override { return volumes_; }
  platform::AudioToolbox& audioToolbox() override { return tones_; }
  platform::UIKit& uiKit() override { return uiKit_; }
  platform::Class* classNamed(std::string_view name) override;
  void processEnded() override;

  /// Whether a wake-up wakes the sleeping machine.
  bool mayWakeDevice() const { return wakeTimers_.mayWakeDevice(); }
  /// Whether something that was set has not been acknowledged by its service.
  bool pending() const { return volumes_.pending(); }
  /// What was under way when the phone was about to sleep is over.
  void readyToSleep() { logind_.readyToSleep(); }

 private:
  class CoreFoundation final : public platform::CoreFoundation {
   public:
    explicit CoreFoundation(LinuxPhone& phone) : phone_(phone) {}
    platform::RunLoop& mainRunLoop() override { return phone_.loop_; }
    void postDarwinNotification(std::string_view name) override { phone_.darwin_.post(name); }
    /// The platform's libraries are part of this program or missing; nothing is loaded.
    bool dlopen(std::string_view, int) override { return false; }

   private:
    LinuxPhone& phone_;
  };

  void zoneChanged();

  LinuxPhoneEvents events_;
  MainLoop loop_;
  LocalZone zone_;
  LinuxFoundation foundation_;
  CoreFoundation coreFoundation_;
  WakeTimers wakeTimers_;
  ClockSteps clockSteps_;
  DarwinNotifications darwin_;
  DarwinNotifications::Observation observation_;
  PulseVolumes volumes_;
  Tones tones_;
  VibrateMirror vibrateMirror_;
  DoNotDisturb doNotDisturb_;
  ClockAlarms alarms_;
  NetworkManagerWiFi wifi_;
  Logind logind_;
  Screen screen_;
  LinuxCalendars calendars_;
  StatusIcon statusIcon_;
  NotificationAlerts alertViews_;
  Appearance appearance_;
  LinuxUIKit uiKit_;
};

}  // namespace hushmode::devices
