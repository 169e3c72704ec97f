// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/core/WorkQueue.h"
#include "platform/CoreFoundation.h"

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace hushmode::devices {

/// The main run loop of a process over GLib's default main context; whoever runs that context runs this loop. The
/// thread that makes it is the main thread.
class MainLoop final : public platform::RunLoop {
 public:
  /// `diagnose` gets a line for each piece of work that ends with an exception.
  explicit MainLoop(WorkQueue::Diagnostics diagnose);
  /// Drops all that is queued, also from inside a piece of work.
  ~MainLoop() override { processEnded(); }
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  bool isMainThread() const override { return std::this_thread::get_id() == mainThread_; }
  void dispatchAsync(std::function<void()> work) override;
  void dispatchAfter(double seconds, std::function<void()> work) override;
  /// Throws std::invalid_argument for a timer that is not of `makeTimer`.
  void addTimer(const std::shared_ptr<platform::NSTimer>& timer) override;
  void performSelector(std::shared_ptr<platform::Object> target, std::string_view selector, double seconds,
                       std::function<void()> action) override;
  void cancelPreviousPerformRequests(const std::shared_ptr<platform::Object>& target,
                                     std::string_view selector) override;

  /// An unarmed timer for `addTimer`.
  std::shared_ptr<platform::NSTimer> makeTimer(double seconds,
                                               std::function<void(const std::shared_ptr<platform::NSTimer>&)> action);

  /// Drops all that a process that ended had queued.
  void processEnded();

 private:
  struct PerformRequest {
    std::shared_ptr<platform::Object> target;
    std::string selector;
    WorkQueue::WorkId work;
  };

  std::shared_ptr<WorkQueue> queue_;
  std::thread::id mainThread_ = std::this_thread::get_id();
  std::list<PerformRequest> requests_;
};

}  // namespace hushmode::devices
