// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/MainLoop.h"

#include <stdexcept>
#include <utility>

namespace hushmode::devices {

namespace {

/// Owned by the run loop, through the queued work, from `add` until it fires or is invalidated.
class MainLoopTimer final : public platform::NSTimer {
 public:
  using Action = std::function<void(const std::shared_ptr<NSTimer>&)>;

  MainLoopTimer(std::weak_ptr<WorkQueue> queue, double seconds, Action action)
      : queue_(std::move(queue)), seconds_(seconds), action_(std::move(action)) {}

  std::string description() const override { return "<NSTimer>"; }

  void add() {
    const auto queue = queue_.lock();
    if (!queue || state_ != State::Unarmed) return;
    state_ = State::Armed;
    const auto self = std::static_pointer_cast<MainLoopTimer>(shared_from_this());
    work_ = queue->after(seconds_, [self] { self->fire(self); });
  }

  void invalidate() override {
    const auto self = shared_from_this();  // The queue may hold the last reference.
    if (const auto queue = queue_.lock(); queue && state_ == State::Armed) queue->cancel(work_);
    state_ = State::Spent;
    action_ = nullptr;
  }

 private:
  enum class State { Unarmed, Armed, Spent };

  void fire(const std::shared_ptr<NSTimer>& self) {
    state_ = State::Spent;
    const Action action = std::exchange(action_, nullptr);
    if (action) action(self);
  }

  std::weak_ptr<WorkQueue> queue_;
  double seconds_;
  Action action_;
  State state_ = State::Unarmed;
  WorkQueue::WorkId work_ = 0;
};

}  // namespace

MainLoop::MainLoop(WorkQueue::Diagnostics diagnose) : queue_(std::make_shared<WorkQueue>(std::move(diagnose))) {}

void MainLoop::dispatchAsync(std::function<void()> work) { queue_->after(0, std::move(work)); }

void MainLoop::dispatchAfter(double seconds, std::function<void()> work) { queue_->after(seconds, std::move(work)); }

std::shared_ptr<platform::NSTimer> MainLoop::makeTimer(double seconds, MainLoopTimer::Action action) {
  return std::make_shared<MainLoopTimer>(queue_, seconds, std::move(action));
}

void MainLoop::addTimer(const std::shared_ptr<platform::NSTimer>& timer) {
  const auto own = std::dynamic_pointer_cast<MainLoopTimer>(timer);
  if (!own) throw std::invalid_argument("a timer that this run loop did not make cannot be added to it");
  own->add();
}

void MainLoop::performSelector(std::shared_ptr<platform::Object> target, std::string_view selector, double seconds,
                               std::function<void()> action) {
  const auto request = requests_.insert(requests_.end(), {std::move(target), std::string(selector), 0});
  request->work = queue_->after(seconds, [this, request, action = std::move(action)] {
    // The target lives until its action is over.
    const PerformRequest performed = std::move(*request);
    requests_.erase(request);
    action();
  });
}

void MainLoop::cancelPreviousPerformRequests(const std::shared_ptr<platform::Object>& target,
                                             std::string_view selector) {
  std::list<PerformRequest> cancelled;
  for (auto request = requests_.begin(); request != requests_.end();) {
    const auto next = std::next(request);
    if (request->target == target && request->selector == selector) {
      cancelled.splice(cancelled.end(), requests_, request);
    }
    request = next;
  }
  for (const PerformRequest& request : cancelled) queue_->cancel(request.work);
}

void MainLoop::processEnded() {
  std::list<PerformRequest> dropped;  // Ends last: targets may call back from their destructors.
  dropped.swap(requests_);
  queue_->clear();
}

}  // namespace hushmode::devices
