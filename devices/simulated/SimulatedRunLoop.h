// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/VirtualTime.h"
#include "platform/CoreFoundation.h"

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace hushmode::devices {

/// The main run loop of the process on a simulated phone, over virtual time.
class SimulatedRunLoop final : public platform::RunLoop {
 public:
  SimulatedRunLoop(VirtualTime& time, Record& record) : time_(time), record_(record) {}

  /// The thread that made the phone is the main one, unless `setMainThread` says what to answer.
  bool isMainThread() const override;
  void dispatchAsync(std::function<void()> work) override;
  void dispatchAfter(double seconds, std::function<void()> work) override;
  /// Throws std::invalid_argument for a timer that this phone did not make.
  void addTimer(const std::shared_ptr<platform::NSTimer>& timer) override;
  void performSelector(std::shared_ptr<platform::Object> target, std::string_view selector, double seconds,
                       std::function<void()> action) override;
  void cancelPreviousPerformRequests(const std::shared_ptr<platform::Object>& target,
                                     std::string_view selector) override;

  /// An unarmed timer for `addTimer`.
  std::shared_ptr<platform::NSTimer> makeTimer(double seconds,
                                               std::function<void(const std::shared_ptr<platform::NSTimer>&)> action);
  /// What `isMainThread` answers on every thread; none to compare threads again.
  void setMainThread(std::optional<bool> answer) { mainThreadAnswer_ = answer; }
  /// Forgets the requests of a process that ended; their work went with the queue.
  void processEnded() { requests_.clear(); }

 private:
  struct PerformRequest {
    std::shared_ptr<platform::Object> target;
    std::string selector;
    VirtualTime::WorkId work;
  };

  VirtualTime& time_;
  Record& record_;
  std::thread::id mainThread_ = std::this_thread::get_id();
  std::optional<bool> mainThreadAnswer_;
  std::list<PerformRequest> requests_;
};

}  // namespace hushmode::devices
