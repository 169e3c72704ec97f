// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/VirtualTime.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace hushmode::devices {

using platform::Date;

namespace {

/// Work that queues itself again without a delay would hold the clock for ever.
constexpr int kMostPiecesAtOneInstant = 100'000;

double delayOf(double seconds) { return seconds > 0 ? seconds : 0; }

}  // namespace

VirtualTime::VirtualTime(Date start) : anchorDate_(start), now_(start.secondsSince1970()) {}

Date VirtualTime::dateAt(double uptime) const { return anchorDate_.addingSeconds(uptime - anchorUptime_); }

double VirtualTime::uptimeAt(Date date) const {
  const double uptime = anchorUptime_ + (date - anchorDate_);
  if (dateAt(uptime) >= date) return uptime;
  // The sum was rounded to just before the date: one step of the wall clock further is never early.
  const double seconds = date.secondsSince1970();
  return uptime + (std::nextafter(seconds, std::numeric_limits<double>::infinity()) - seconds);
}

double VirtualTime::dueOf(const WakeUp& wakeUp) const {
  return std::max(uptime(), uptimeAt(wakeUp.date)) + wakeUp.latency;
}

void VirtualTime::moveTo(double uptime) {
  if (uptime <= this->uptime()) return;
  uptime_.store(uptime, std::memory_order_relaxed);
  now_.store(dateAt(uptime).secondsSince1970(), std::memory_order_relaxed);
}

VirtualTime::WorkId VirtualTime::after(double seconds, Work work) {
  const std::lock_guard lock(mutex_);
  const double begin = suspendedAt_.value_or(uptime());
  const Key key{begin + delayOf(seconds), ++lastId_};
  queue_.emplace(key, Item{std::move(work), std::nullopt});
  return key.id;
}

VirtualTime::WorkId VirtualTime::wakeAt(Date date, double latency, Work work) {
  const std::lock_guard lock(mutex_);
  const WakeUp wakeUp{date, delayOf(latency)};
  const Key key{dueOf(wakeUp), ++lastId_};
  queue_.emplace(key, Item{std::move(work), wakeUp});
  return key.id;
}

bool VirtualTime::cancel(WorkId id) {
  Queue::node_type cancelled;  // Ends after the lock: what it holds may call back from its destructor.
  const std::lock_guard lock(mutex_);
  const auto place = std::find_if(queue_.begin(), queue_.end(), [&](const auto& each) { return each.first.id == id; });
  if (place == queue_.end()) return false;
  cancelled = queue_.extract(place);
  return true;
}

void VirtualTime::clear() {
  Queue dropped;  // Ends after the lock, as in `cancel`.
  const std::lock_guard lock(mutex_);
  dropped.swap(queue_);
}

std::size_t VirtualTime::pending() const {
  const std::lock_guard lock(mutex_);
  return queue_.size();
}

VirtualTime::Queue::const_iterator VirtualTime::next() const {
  if (!suspendedAt_) return queue_.begin();
  return std::find_if(queue_.begin(), queue_.end(), [](const auto& each) { return each.second.wakeUp.has_value(); });
}

std::optional<Date> VirtualTime::nextDue() const {
  const std::lock_guard lock(mutex_);
  const auto first = next();
  if (first == queue_.end()) return std::nullopt;
  return dateAt(std::max(uptime(), first->first.due));
}

template <class NewDue>
void VirtualTime::rekey(NewDue newDue) {
  Queue moved;
  while (!queue_.empty()) {
    auto node = queue_.extract(queue_.begin());
    node.key().due = newDue(node.key().due, node.mapped());
    moved.insert(std::move(node));
  }
  queue_ = std::move(moved);
}

void VirtualTime::jumpTo(Date date) {
  const std::lock_guard lock(mutex_);
  const Date before = now();
  anchorDate_ = date;
  anchorUptime_ = uptime();
  now_.store(date.secondsSince1970(), std::memory_order_relaxed);
  rekey([&](double due, const Item& item) {
    if (!item.wakeUp) return due;
    // A wake-up on its way stays on its way, unless its date lies ahead again.
    const bool onItsWay = item.wakeUp->date <= before && item.wakeUp->date <= date;
    return onItsWay ? due : dueOf(*item.wakeUp);
  });
}

void VirtualTime::suspend() {
  const std::lock_guard lock(mutex_);
  if (!suspendedAt_) suspendedAt_ = uptime();
}

void VirtualTime::resume() {
  const std::lock_guard lock(mutex_);
  if (suspendedAt_) resumeLocked();
}

void VirtualTime::resumeLocked() {
  const double suspended = uptime() - *std::exchange(suspendedAt_, std::nullopt);
  rekey([&](double due, const Item& item) { return item.wakeUp ? due : due + suspended; });
}

std::optional<VirtualTime::Item> VirtualTime::takeNext(double limit, bool& woke) {
  const std::lock_guard lock(mutex_);
  const auto first = next();
  if (first == queue_.end() || first->first.due > limit) return std::nullopt;
  moveTo(first->first.due);
  Item item = std::move(queue_.extract(first).mapped());
  woke = suspendedAt_.has_value();
  if (woke) resumeLocked();
  return item;
}

template <class Limit>
void VirtualTime::run(Limit limit) {
  if (running_) throw std::logic_error("virtual time cannot be run from within a piece of its own work");
  struct Running {
    bool& flag;
    explicit Running(bool& running) : flag(running) { flag = true; }
    ~Running() { flag = false; }
  } running(running_);

  double instant = uptime();
  int piecesAtInstant = 0;
  bool woke = false;
  while (const auto item = takeNext(limit(), woke)) {
    if (uptime() > instant) {
      instant = uptime();
      piecesAtInstant = 0;
    }
    if (++piecesAtInstant > kMostPiecesAtOneInstant) {
      throw std::runtime_error("a hundred thousand pieces of work have run without time moving on");
    }
    if (woke && onWake_) onWake_();
    item->work();
    if (onStep_) onStep_();
  }
  const double end = limit();
  const std::lock_guard lock(mutex_);
  moveTo(end);
}

void VirtualTime::runUntil(Date limit) {
  // Asked anew each time: the wall clock may be set by a piece of work.
  run([&] { return std::max(uptime(), uptimeAt(limit)); });
}

void VirtualTime::runFor(double seconds) {
  const double limit = uptime() + delayOf(seconds);
  run([&] { return limit; });
}

bool VirtualTime::runUntilIdle(Date limit) {
  // With an empty queue the limit is the present, so that the clock stays at the last piece.
  run([&] { return pending() == 0 ? uptime() : std::max(uptime(), uptimeAt(limit)); });
  return pending() == 0;
}

}  // namespace hushmode::devices
