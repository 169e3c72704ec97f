// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/WakeTimers.h"

#include "devices/linux/core/SystemClock.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <utility>

namespace hushmode::devices {

using platform::Date;
using platform::Dictionary;
using platform::PCSimpleTimer;

/// What the timers have in common; kept by each of them, so that one may outlive the phone.
class WakeTimers::Shared {
 public:
  Shared(std::unique_ptr<TimerDescriptor> descriptor, Diagnostics diagnose)
      : descriptor(std::move(descriptor)), diagnose(std::move(diagnose)) {}

  /// With the mutex held.
  void armForEarliest();
  void fireDue();

  const std::unique_ptr<TimerDescriptor> descriptor;
  const Diagnostics diagnose;
  std::mutex mutex;
  std::vector<std::shared_ptr<Timer>> armed;  // The run loop's ownership of the armed timers, by date.
};

class WakeTimers::Timer final : public PCSimpleTimer {
 public:
  Timer(std::shared_ptr<Shared> shared, Date fireDate, Action action, Dictionary userInfo)
      : shared_(std::move(shared)), fireDate_(fireDate), action_(std::move(action)), userInfo_(std::move(userInfo)) {}

  std::string description() const override { return "<PCSimpleTimer>"; }
  const Dictionary& userInfo() const override { return userInfo_; }
  Date fireDate() const { return fireDate_; }

  void scheduleInRunLoop(platform::RunLoop&) override {
    const std::lock_guard lock(shared_->mutex);
    if (state_ != State::Unarmed) return;
    state_ = State::Armed;
    // Behind those of the same date: equal dates are delivered in the order of arming.
    const auto place = std::upper_bound(shared_->armed.begin(), shared_->armed.end(), fireDate_,
                                        [](Date date, const auto& other) { return date < other->fireDate_; });
    shared_->armed.insert(place, std::static_pointer_cast<Timer>(shared_from_this()));
    shared_->armForEarliest();
  }

  void invalidate() override {
    std::shared_ptr<Timer> self;  // The list of the armed may hold the last reference; it ends after the lock,
    Action dropped;               // and so does what the callback keeps.
    const std::lock_guard lock(shared_->mutex);
    dropped = spend();
    const auto place = std::find_if(shared_->armed.begin(), shared_->armed.end(),
                                    [this](const auto& each) { return each.get() == this; });
    if (place == shared_->armed.end()) return;
    self = std::move(*place);
    shared_->armed.erase(place);
    shared_->armForEarliest();
  }

  /// With the mutex held: the timer is done with; answers the callback that it had.
  Action spend() {
    state_ = State::Spent;
    return std::exchange(action_, nullptr);
  }

 private:
  enum class State { Unarmed, Armed, Spent };

  const std::shared_ptr<Shared> shared_;
  const Date fireDate_;
  Action action_;
  const Dictionary userInfo_;
  State state_ = State::Unarmed;
};

void WakeTimers::Shared::armForEarliest() {
  if (armed.empty()) {
    descriptor->disarm();
  } else {
    descriptor->armAt(nanosecondsReaching(armed.front()->fireDate()));
  }
}

void WakeTimers::Shared::fireDue() {
  std::vector<std::pair<std::shared_ptr<Timer>, PCSimpleTimer::Action>> due;
  {
    const std::lock_guard lock(mutex);
    // The clock is asked once: a timer that a callback arms for a date that has passed waits for the next turn.
    const Date now = systemNow();
    const auto firstLater =
        std::find_if(armed.begin(), armed.end(), [&](const auto& timer) { return timer->fireDate() > now; });
    for (auto timer = armed.begin(); timer != firstLater; ++timer) due.emplace_back(*timer, nullptr);
  }
  for (auto& [timer, action] : due) {
    {
      const std::lock_guard lock(mutex);
      const auto place = std::find(armed.begin(), armed.end(), timer);
      if (place == armed.end()) continue;  // Invalidated by one before.
      armed.erase(place);
      action = timer->spend();
    }
    try {
      if (action) action(timer);
    } catch (const std::exception& failure) {
      if (diagnose) diagnose(tr("a wake timer's work failed: {}", failure.what()));
    } catch (...) {
      if (diagnose) diagnose(tr("a wake timer's work failed, without a reason"));
    }
  }
  const std::lock_guard lock(mutex);
  armForEarliest();
}

class WakeTimers::TimerClass final : public PCSimpleTimer::Class {
 public:
  explicit TimerClass(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

  std::shared_ptr<PCSimpleTimer> initWithFireDate(Date fireDate, std::string_view, PCSimpleTimer::Action action,
                                                  Dictionary userInfo) override {
    return std::make_shared<Timer>(shared_, fireDate, std::move(action), std::move(userInfo));
  }

 private:
  std::shared_ptr<Shared> shared_;
};

WakeTimers::WakeTimers(Diagnostics diagnose, std::unique_ptr<TimerDescriptor> waking)
    : mayWakeDevice_(waking != nullptr),
      shared_(std::make_shared<Shared>(waking ? std::move(waking) : TimerDescriptor::onTheWallClock(),
                                       std::move(diagnose))),
      class_(std::make_unique<TimerClass>(shared_)) {
  watch_ = Glib::signal_io().connect(
      [shared = shared_](Glib::IOCondition) {
        if (shared->descriptor->take() != TimerDescriptor::Event::None) shared->fireDue();
        return true;
      },
      shared_->descriptor->fd(), Glib::IOCondition::IO_IN);
}

WakeTimers::~WakeTimers() {
  watch_.disconnect();
  processEnded();
}

platform::PCSimpleTimer::Class& WakeTimers::timerClass() { return *class_; }

std::vector<WakeTimers::Armed> WakeTimers::armed() const {
  const std::lock_guard lock(shared_->mutex);
  std::vector<Armed> list;
  list.reserve(shared_->armed.size());
  for (const auto& timer : shared_->armed) list.push_back({timer->fireDate(), timer->userInfo()});
  return list;
}

void WakeTimers::processEnded() {
  std::vector<std::shared_ptr<Timer>> dropped;  // Ends after the lock.
  const std::lock_guard lock(shared_->mutex);
  dropped.swap(shared_->armed);
  shared_->armForEarliest();
}

}  // namespace hushmode::devices
