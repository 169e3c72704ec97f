// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Foundation.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// CoreFoundation and its neighbours: the main run loop and queue, system-wide notifications, dynamic libraries.
namespace hushmode::platform {

/// The main run loop with its main queue. Work of equal due time runs in the order in which it was queued.
class HUSHMODE_API RunLoop {
 public:
  virtual ~RunLoop();
  virtual bool isMainThread() const = 0;
  /// Queues `work` for the main queue; it never runs inside this call. Any thread.
  virtual void dispatchAsync(std::function<void()> work) = 0;
  /// Queues `work` for the main queue after `seconds`; 0 is still asynchronous. Any thread.
  virtual void dispatchAfter(double seconds, std::function<void()> work) = 0;
  /// Adds a one-shot timer in the default mode; its interval counts from now.
  virtual void addTimer(const std::shared_ptr<NSTimer>& timer) = 0;
  /// Performs `selector` on `target` after `seconds`. Keeps the target until then.
  virtual void performSelector(std::shared_ptr<Object> target, std::string_view selector, double seconds,
                               std::function<void()> action) = 0;
  /// Cancels what `performSelector` queued for this target and selector.
  virtual void cancelPreviousPerformRequests(const std::shared_ptr<Object>& target, std::string_view selector) = 0;
};

/// What CoreFoundation and the C library's loader offer a process.
class HUSHMODE_API CoreFoundation {
 public:
  virtual ~CoreFoundation();
  virtual RunLoop& mainRunLoop() = 0;
  /// Posts a system-wide notification: a name and nothing else. Delivered to observers from their loops.
  virtual void postDarwinNotification(std::string_view name) = 0;
  /// Loads a dynamic library; false when it cannot be loaded. `mode` 2: resolve everything now.
  virtual bool dlopen(std::string_view path, int mode) = 0;
};

}  // namespace hushmode::platform
