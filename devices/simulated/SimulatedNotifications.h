// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ProcessNotifications.h"
#include "devices/simulated/Record.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// The in-process notification centre of a simulated phone: every post is recorded.
class SimulatedNotificationCenter final : public ProcessNotifications {
 public:
  explicit SimulatedNotificationCenter(Record& record) : record_(record) {}

  void post(const platform::Notification& notification) override;
  /// Tells the observers without a record of it: what the phone's own services post.
  void deliver(const platform::Notification& notification) { ProcessNotifications::post(notification); }

 private:
  Record& record_;
};

/// System-wide notifications: recorded at once, delivered to the observers in the process from its run loop.
class SimulatedDarwinCenter {
 public:
  using Handler = std::function<void(std::string_view name)>;

  SimulatedDarwinCenter(VirtualTime& time, Record& record) : time_(time), record_(record) {}

  void post(std::string_view name);
  /// A post by another process, such as the settings app.
  void postFromOutside(std::string_view name);
  /// Observes every name until the process ends.
  void observe(Handler handler) { observers_.push_back(std::make_shared<Handler>(std::move(handler))); }
  void processEnded() { observers_.clear(); }

 private:
  void deliver(std::string_view name);

  VirtualTime& time_;
  Record& record_;
  std::vector<std::shared_ptr<Handler>> observers_;
};

}  // namespace hushmode::devices
