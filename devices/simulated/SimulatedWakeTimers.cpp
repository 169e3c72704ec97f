// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedWakeTimers.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace hushmode::devices {

using platform::Date;
using platform::Dictionary;
using platform::PCSimpleTimer;

/// What the timers have in common; kept by each of them, so that one may outlive the phone's process.
class SimulatedWakeTimers::Shared {
 public:
  Shared(VirtualTime& time, Record& record) : time(time), record(record) {}

  VirtualTime& time;
  Record& record;
  std::mutex mutex;  // Timers may be made and stopped off the main thread.
  double latency = 0.5;
  int made = 0;
  std::vector<std::shared_ptr<Timer>> armed;  // The run loop's ownership of the armed timers.
};

class SimulatedWakeTimers::Timer final : public PCSimpleTimer {
 public:
  Timer(std::shared_ptr<Shared> shared, std::string name, Date fireDate, std::string_view serviceIdentifier,
        Action action, Dictionary userInfo)
      : shared_(std::move(shared)),
        name_(std::move(name)),
        fireDate_(fireDate),
        serviceIdentifier_(serviceIdentifier),
        action_(std::move(action)),
        userInfo_(std::move(userInfo)) {}

  std::string description() const override { return name_; }
  const Dictionary& userInfo() const override { return userInfo_; }
  Date fireDate() const { return fireDate_; }

  void scheduleInRunLoop(platform::RunLoop&) override {
    {
      const std::lock_guard lock(shared_->mutex);
      if (state_ != State::Unarmed) return;
      state_ = State::Armed;
      const auto self = std::static_pointer_cast<Timer>(shared_from_this());
      shared_->armed.push_back(self);
      // Weakly: the list of the armed owns it, and dropping the queue must not be what ends a timer.
      work_ = shared_->time.wakeAt(fireDate_, shared_->latency, [weak = std::weak_ptr(self)] {
        if (const auto timer = weak.lock()) timer->fire();
      });
    }
    record("arm", {{"userInfo", userInfo_}, {"serviceIdentifier", serviceIdentifier_}});
  }

  void invalidate() override {
    std::shared_ptr<Timer> self;
    State before;
    {
      const std::lock_guard lock(shared_->mutex);
      self = disowned();
      before = std::exchange(state_, State::Invalidated);
      if (before == State::Armed) shared_->time.cancel(work_);
      fired_ = fired_ || before == State::Fired;
    }
    shared_->record.append(
        kind::timer,
        {{"operation", "invalidate"}, {"timer", name_}, {"fired", fired_}, {"armed", before == State::Armed}});
  }

 private:
  enum class State { Unarmed, Armed, Fired, Invalidated };

  void fire() {
    std::shared_ptr<Timer> self;  // Stays alive during its own callback, whoever lets go of it there.
    Action action;
    {
      const std::lock_guard lock(shared_->mutex);
      if (state_ != State::Armed) return;
      state_ = State::Fired;
      self = disowned();
      action = std::exchange(action_, nullptr);
    }
    record("fire", {{"userInfo", userInfo_}});
    if (action) action(self);
  }

  /// This timer as the armed list held it, taken out of that list.
  std::shared_ptr<Timer> disowned() {
    const auto place = std::find_if(shared_->armed.begin(), shared_->armed.end(),
                                    [this](const auto& each) { return each.get() == this; });
    if (place == shared_->armed.end()) return nullptr;
    auto self = std::move(*place);
    shared_->armed.erase(place);
    return self;
  }

  void record(std::string_view operation, std::initializer_list<platform::DictionaryEntry> more) {
    Dictionary fields;
    fields.reserve(4 + more.size());
    fields.append("operation", operation);
    fields.append("timer", name_);
    fields.append("fireDate", fireDate_);
    fields.append("localFireDate", shared_->record.localTimeOf(fireDate_));
    for (const auto& [key, value] : more) fields.append(key, value);
    shared_->record.append(kind::timer, std::move(fields));
  }

  std::shared_ptr<Shared> shared_;
  std::string name_;
  Date fireDate_;
  std::string serviceIdentifier_;
  Action action_;
  Dictionary userInfo_;
  State state_ = State::Unarmed;
  bool fired_ = false;
  VirtualTime::WorkId work_ = 0;
};

class SimulatedWakeTimers::TimerClass final : public PCSimpleTimer::Class {
 public:
  explicit TimerClass(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

  std::shared_ptr<PCSimpleTimer> initWithFireDate(Date fireDate, std::string_view serviceIdentifier,
                                                  PCSimpleTimer::Action action, Dictionary userInfo) override {
    const std::lock_guard lock(shared_->mutex);
    return std::make_shared<Timer>(shared_, "t" + std::to_string(++shared_->made), fireDate, serviceIdentifier,
                                   std::move(action), std::move(userInfo));
  }

 private:
  std::shared_ptr<Shared> shared_;
};

SimulatedWakeTimers::SimulatedWakeTimers(VirtualTime& time, Record& record, SimulatedClasses& classes)
    : shared_(std::make_shared<Shared>(time, record)) {
  classes.add(PCSimpleTimer::className, std::make_unique<TimerClass>(shared_));
}

// An armed timer keeps what it shares with the others, and that keeps the timer: broken here and in `processEnded`.
SimulatedWakeTimers::~SimulatedWakeTimers() { processEnded(); }

void SimulatedWakeTimers::setLatency(double seconds) {
  const std::lock_guard lock(shared_->mutex);
  shared_->latency = std::max(0.0, seconds);
}

double SimulatedWakeTimers::latency() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->latency;
}

std::vector<SimulatedWakeTimers::Armed> SimulatedWakeTimers::armed() const {
  const std::lock_guard lock(shared_->mutex);
  std::vector<Armed> list;
  list.reserve(shared_->armed.size());
  for (const auto& timer : shared_->armed) list.push_back({timer->description(), timer->fireDate(), timer->userInfo()});
  return list;
}

void SimulatedWakeTimers::processEnded() {
  std::vector<std::shared_ptr<Timer>> dropped;  // Ends after the lock.
  const std::lock_guard lock(shared_->mutex);
  dropped.swap(shared_->armed);
}

}  // namespace hushmode::devices
