// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedAlarms.h"
#include "devices/simulated/SimulatedCalendars.h"
#include "devices/simulated/SimulatedClasses.h"
#include "devices/simulated/SimulatedControlCenter.h"
#include "devices/simulated/SimulatedFoundation.h"
#include "devices/simulated/SimulatedScreen.h"
#include "devices/simulated/SimulatedSound.h"
#include "devices/simulated/SimulatedStatusBar.h"
#include "devices/simulated/SimulatedTone.h"
#include "devices/simulated/SimulatedUIKit.h"
#include "devices/simulated/SimulatedWakeTimers.h"
#include "devices/simulated/SimulatedWiFi.h"
#include "devices/simulated/VirtualTime.h"
#include "platform/Device.h"

#include <memory>

namespace hushmode::devices {

/// A complete phone in memory, with a virtual clock. Everything that it is asked to do is recorded, in order.
///
/// Time stands still until `time()` is run. Same steps give the same record, byte for byte.
///
/// Each service of the phone is reached by an accessor. In all of them `set...` puts a state there without a trace, to
/// prepare the phone; the operations named as deeds (`join`, `lock`, `pressVolumeButton`, `jumpClockTo`) are steps
/// applied from outside, and recorded as such.
class SimulatedPhone final : public platform::Device {
 public:
  /// Switched on at `start`, in the zone (UTC when null). Unlocked, screen off, Do Not Disturb off, ringtone at 0.8,
  /// general volume at 0.6, media at 0.5, system version 13.1, vibrate on ring but not on silent; no files, defaults,
  /// calendars, networks and alarms. Every class is there but "AVController".
  explicit SimulatedPhone(platform::Date start, const std::shared_ptr<const TimeZone>& zone = nullptr);

  SimulatedFoundation& foundation() override { return foundation_; }
  SimulatedFoundation& coreFoundation() override { return foundation_; }
  SimulatedCalendars& eventKit() override { return calendars_; }
  SimulatedWiFi& mobileWiFi() override { return wifi_; }
  SimulatedSound& celestial() override { return sound_; }
  SimulatedTone& audioToolbox() override { return tone_; }
  SimulatedUIKit& uiKit() override { return uiKit_; }
  platform::Class* classNamed(std::string_view name) override { return classes_.named(name); }
  void processEnded() override;

  VirtualTime& time() { return time_; }
  Record& record() { return record_; }
  SimulatedClasses& classes() { return classes_; }
  SimulatedFiles& files() { return foundation_.files(); }
  SimulatedDefaults& defaults() { return foundation_.standardUserDefaults(); }
  SimulatedNotificationCenter& notifications() { return foundation_.defaultNotificationCenter(); }
  SimulatedRunLoop& runLoop() { return foundation_.mainRunLoop(); }
  SimulatedWakeTimers& wakeTimers() { return wakeTimers_; }
  MemoryCalendars& calendars() { return calendars_.memory(); }
  SimulatedWiFi& wifi() { return wifi_; }
  SimulatedSound& sound() { return sound_; }
  SimulatedTone& tone() { return tone_; }
  SimulatedScreen& screen() { return screen_; }
  SimulatedStatusBar& statusBar() { return statusBar_; }
  SimulatedControlCenter& controlCenter() { return controlCenter_; }
  SimulatedAlarms& alarms() { return alarms_; }

  /// Notes that a host process was started. Making the process is the caller's.
  void noteProcessStarted() { record_.step("process started"); }

  /// The wall clock is set to another date.
  void jumpClockTo(platform::Date date);
  /// The phone moves to another time zone. Throws std::invalid_argument when the system knows none of that name.
  void moveToTimeZone(std::string_view name);
  /// The phone falls asleep, and wakes again; nothing happens when it is so already. A due wake timer wakes it, too.
  void suspend();
  void resume();

 private:
  VirtualTime time_;
  Record record_;
  SimulatedClasses classes_;
  SimulatedFoundation foundation_;
  SimulatedWakeTimers wakeTimers_;
  SimulatedCalendars calendars_;
  SimulatedWiFi wifi_;
  SimulatedSound sound_;
  SimulatedTone tone_;
  SimulatedScreen screen_;
  SimulatedStatusBar statusBar_;
  SimulatedUIKit uiKit_;
  SimulatedControlCenter controlCenter_;
  SimulatedAlarms alarms_;
};

}  // namespace hushmode::devices
