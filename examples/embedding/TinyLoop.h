// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <platform/CoreFoundation.h>
#include <platform/Foundation.h>
#include <platform/PersistentConnection.h>
#include <string>
#include <string_view>
#include <utility>

namespace tiny {

namespace hp = hushmode::platform;

/// A run loop with a clock of its own, which stands still until `runUntil`. A real phone would sleep until the next
/// date instead, and ask for wake-ups of the machine for the power-aware timers.
class TinyLoop final : public hp::RunLoop {
 public:
  explicit TinyLoop(hp::Date start) : now_(start) {}

  hp::Date now() const { return now_; }

  void runUntil(hp::Date end) {
    for (auto next = earliest(); next != due_.end() && next->date <= end; next = earliest()) {
      now_ = std::max(now_, next->date);
      const std::function<void()> work = std::move(next->work);
      due_.erase(next);
      work();
    }
    now_ = std::max(now_, end);
  }

  /// Queues work for a date, under a key by which it can be taken back; null for none.
  void at(hp::Date date, const void* key, std::function<void()> work) {
    due_.push_back({date, key, {}, std::move(work)});
  }
  void cancel(const void* key) {
    due_.remove_if([&](const Due& each) { return each.key == key; });
  }
  /// What belonged to a process that ended is gone.
  void clear() { due_.clear(); }

  bool isMainThread() const override { return true; }
  void dispatchAsync(std::function<void()> work) override { at(now_, nullptr, std::move(work)); }
  void dispatchAfter(double seconds, std::function<void()> work) override {
    at(now_.addingSeconds(seconds), nullptr, std::move(work));
  }
  void addTimer(const std::shared_ptr<hp::NSTimer>& timer) override;
  void performSelector(std::shared_ptr<hp::Object> target, std::string_view selector, double seconds,
                       std::function<void()> action) override {
    // The work keeps its target.
    due_.push_back({now_.addingSeconds(seconds), target.get(), std::string(selector),
                    [target, action = std::move(action)] { action(); }});
  }
  void cancelPreviousPerformRequests(const std::shared_ptr<hp::Object>& target, std::string_view selector) override {
    due_.remove_if([&](const Due& each) { return each.key == target.get() && each.selector == selector; });
  }

 private:
  struct Due {
    hp::Date date;
    const void* key;
    std::string selector;
    std::function<void()> work;
  };
  /// Work of one date runs in the order in which it was queued.
  std::list<Due>::iterator earliest() {
    return std::min_element(due_.begin(), due_.end(), [](const Due& a, const Due& b) { return a.date < b.date; });
  }

  hp::Date now_;
  std::list<Due> due_;
};

/// A timer of the loop.
class TinyTimer final : public hp::NSTimer {
 public:
  TinyTimer(TinyLoop& loop, double seconds, std::function<void(const std::shared_ptr<hp::NSTimer>&)> action)
      : loop_(loop), seconds_(seconds), action_(std::move(action)) {}
  void invalidate() override { loop_.cancel(this); }
  void arm() {
    auto self = std::static_pointer_cast<TinyTimer>(shared_from_this());
    loop_.at(loop_.now().addingSeconds(seconds_), this, [self] { self->action_(self); });
  }

 private:
  TinyLoop& loop_;
  double seconds_;
  std::function<void(const std::shared_ptr<hp::NSTimer>&)> action_;
};

inline void TinyLoop::addTimer(const std::shared_ptr<hp::NSTimer>& timer) {
  std::static_pointer_cast<TinyTimer>(timer)->arm();
}

/// The power-aware timer: what switches profiles at their second.
class TinyWakeTimer final : public hp::PCSimpleTimer {
 public:
  TinyWakeTimer(TinyLoop& loop, hp::Date date, Action action, hp::Dictionary userInfo)
      : loop_(loop), date_(date), action_(std::move(action)), userInfo_(std::move(userInfo)) {}
  void scheduleInRunLoop(hp::RunLoop&) override {
    if (std::exchange(armed_, true)) return;
    auto self = std::static_pointer_cast<TinyWakeTimer>(shared_from_this());
    // Never early, and strictly after its date: one that is armed for this very moment must not come again and again.
    loop_.at(std::max(date_, loop_.now()).addingSeconds(0.5), this, [self] { self->action_(self); });
  }
  void invalidate() override { loop_.cancel(this); }
  const hp::Dictionary& userInfo() const override { return userInfo_; }

 private:
  TinyLoop& loop_;
  hp::Date date_;
  Action action_;
  hp::Dictionary userInfo_;
  bool armed_ = false;
};

class TinyWakeTimerClass final : public hp::PCSimpleTimer::Class {
 public:
  explicit TinyWakeTimerClass(TinyLoop& loop) : loop_(loop) {}
  std::shared_ptr<hp::PCSimpleTimer> initWithFireDate(hp::Date date, std::string_view, hp::PCSimpleTimer::Action action,
                                                      hp::Dictionary userInfo) override {
    return std::make_shared<TinyWakeTimer>(loop_, date, std::move(action), std::move(userInfo));
  }

 private:
  TinyLoop& loop_;
};

}  // namespace tiny
