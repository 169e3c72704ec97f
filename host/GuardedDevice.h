// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/HeldVolumes.h"
#include "platform/Device.h"
#include "platform/PersistentConnection.h"
#include "platform/StatusBar.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace hushmode::host {

/// What a guarded device tells its host.
struct GuardHooks {
  /// Runs a piece of work that the library queued, or a call of one of its observers. Only its timers plan.
  std::function<void(const std::function<void()>& work, bool plans)> enter;
  /// Whether a fired wake-up may reach the library.
  std::function<bool()> mayWake;
  /// The library is about to replace this array file: nothing of what it announces has been done yet.
  std::function<void(const platform::Array& content, std::string_view path)> beforeArrayIsWritten;
};

/// An armed wake-up of the library.
struct ArmedWakeUp {
  platform::Date date;
  std::int64_t profile = 0;  ///< Its identifier.
};

/// A phone seen through its host: every call goes through to the real one, but whatever the library queues, observes
/// or arms comes back through the host, the host knows what is armed, and volumes can be held back.
class GuardedDevice final : public platform::Device {
 public:
  /// `phone` must outlive the object.
  GuardedDevice(platform::Device& phone, GuardHooks hooks);
  ~GuardedDevice() override;

  platform::Foundation& foundation() override;
  platform::CoreFoundation& coreFoundation() override;
  platform::EventKit& eventKit() override { return phone_.eventKit(); }
  platform::MobileWiFi& mobileWiFi() override { return phone_.mobileWiFi(); }
  platform::Celestial& celestial() override { return volumes_; }
  platform::AudioToolbox& audioToolbox() override { return phone_.audioToolbox(); }
  platform::UIKit& uiKit() override;
  platform::Class* classNamed(std::string_view name) override;
  void processEnded() override;

  platform::Device& phone() const { return phone_; }
  HeldVolumes& volumes() { return volumes_; }
  /// The library's wake-ups, in the order in which they were armed.
  std::vector<ArmedWakeUp> armedWakeUps() const;
  /// Disarms all of them.
  void disarmWakeUps();
  /// Whether the library's icon is shown; none while there is no icon.
  std::optional<bool> isIconVisible() const;

 private:
  class Files;
  class Center;
  class Foundation;
  class Loop;
  class CoreFoundation;
  class Kit;
  class Timer;
  class TimerClass;
  class Icon;
  class IconClass;
  struct Armed;

  platform::Device& phone_;
  GuardHooks hooks_;
  HeldVolumes volumes_;
  std::shared_ptr<Armed> armed_;
  std::weak_ptr<Icon> icon_;
  std::unique_ptr<Foundation> foundation_;
  std::unique_ptr<CoreFoundation> coreFoundation_;
  std::unique_ptr<Kit> kit_;
  std::unique_ptr<TimerClass> timerClass_;
  std::unique_ptr<IconClass> iconClass_;
};

}  // namespace hushmode::host
