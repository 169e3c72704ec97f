// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedRunLoop.h"

#include <stdexcept>
#include <utility>

namespace hushmode::devices {

namespace {

/// Owned by the run loop, through the queued work, from `add` until it fires or is invalidated.
class SimulatedTimer final : public platform::NSTimer {
 public:
  using Action = std::function<void(const std::shared_ptr<NSTimer>&)>;

  SimulatedTimer(VirtualTime& time, double seconds, Action action)
      : time_(time), seconds_(seconds), action_(std::move(action)) {}

  std::string description() const override { return "<NSTimer>"; }

  void add() {
    if (state_ != State::Unarmed) return;
    state_ = State::Armed;
    const auto self = std::static_pointer_cast<SimulatedTimer>(shared_from_this());
    work_ = time_.after(seconds_, [self] { self->fire(self); });
  }

  void invalidate() override {
    const auto self = shared_from_this();  // The queue may hold the last reference.
    if (state_ == State::Armed) time_.cancel(work_);
    state_ = State::Spent;
    action_ = nullptr;
  }

 private:
  enum class State { Unarmed, Armed, Spent };

  void fire(const std::shared_ptr<NSTimer>& self) {
    state_ = State::Spent;
    const Action action = std::exchange(action_, nullptr);
    action(self);
  }

  VirtualTime& time_;
  double seconds_;
  Action action_;
  State state_ = State::Unarmed;
  VirtualTime::WorkId work_ = 0;
};

}  // namespace

bool SimulatedRunLoop::isMainThread() const {
  return mainThreadAnswer_.value_or(std::this_thread::get_id() == mainThread_);
}

void SimulatedRunLoop::dispatchAsync(std::function<void()> work) { time_.after(0, std::move(work)); }

void SimulatedRunLoop::dispatchAfter(double seconds, std::function<void()> work) {
  time_.after(seconds, std::move(work));
}

std::shared_ptr<platform::NSTimer> SimulatedRunLoop::makeTimer(double seconds, SimulatedTimer::Action action) {
  return std::make_shared<SimulatedTimer>(time_, seconds, std::move(action));
}

void SimulatedRunLoop::addTimer(const std::shared_ptr<platform::NSTimer>& timer) {
  const auto own = std::dynamic_pointer_cast<SimulatedTimer>(timer);
  if (!own) throw std::invalid_argument("a timer that this phone did not make cannot be added to its run loop");
  own->add();
}

void SimulatedRunLoop::performSelector(std::shared_ptr<platform::Object> target, std::string_view selector,
                                       double seconds, std::function<void()> action) {
  record_.append(
      kind::perform,
      {{"operation", "schedule"}, {"selector", selector}, {"target", target->description()}, {"delay", seconds}});
  const auto request = requests_.insert(requests_.end(), {std::move(target), std::string(selector), 0});
  request->work = time_.after(seconds, [this, request, action = std::move(action)] {
    // The target lives until its action is over.
    const PerformRequest performed = std::move(*request);
    requests_.erase(request);
    action();
  });
}

void SimulatedRunLoop::cancelPreviousPerformRequests(const std::shared_ptr<platform::Object>& target,
                                                     std::string_view selector) {
  std::list<PerformRequest> cancelled;
  for (auto request = requests_.begin(); request != requests_.end();) {
    const auto next = std::next(request);
    if (request->target == target && request->selector == selector) {
      cancelled.splice(cancelled.end(), requests_, request);
    }
    request = next;
  }
  for (const PerformRequest& request : cancelled) {
    time_.cancel(request.work);
    record_.append(
        kind::perform,
        {{"operation", "cancel"}, {"selector", request.selector}, {"target", request.target->description()}});
  }
}

}  // namespace hushmode::devices
