// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/WorkQueue.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr double kMicroseconds = 1e6;
/// A delay of a hundred years is as good as any longer one, and adds up inside 64 bits.
constexpr double kLongestDelay = 100 * 366 * 86400.0;

std::int64_t dueAfter(double seconds) {
  const double delay = seconds > 0 ? std::min(seconds, kLongestDelay) : 0;
  return g_get_monotonic_time() + static_cast<std::int64_t>(std::ceil(delay * kMicroseconds));
}

}  // namespace

WorkQueue::WorkQueue(Diagnostics diagnose) : diagnose_(std::move(diagnose)) {
  // A source of its own instead of one for each piece of work: GLib runs what is overdue in the order of attaching,
  // not of due times.
  static GSourceFuncs functions = {nullptr, nullptr, &WorkQueue::dispatch, nullptr, nullptr, nullptr};
  source_ = g_source_new(&functions, sizeof(GSource));
  g_source_set_callback(source_, nullptr, this, nullptr);
  g_source_set_static_name(source_, "hushmode work");
  g_source_attach(source_, nullptr);
}

WorkQueue::~WorkQueue() {
  g_source_destroy(source_);
  g_source_unref(source_);
}

WorkQueue::WorkId WorkQueue::after(double seconds, Work work) {
  const std::lock_guard lock(mutex_);
  const Key key{dueAfter(seconds), ++lastId_};
  queue_.emplace(key, std::move(work));
  awaitNext();
  return key.second;
}

bool WorkQueue::cancel(WorkId id) {
  decltype(queue_)::node_type cancelled;  // Ends after the lock: what it holds may call back from its destructor.
  const std::lock_guard lock(mutex_);
  const auto place =
      std::find_if(queue_.begin(), queue_.end(), [&](const auto& each) { return each.first.second == id; });
  if (place == queue_.end()) return false;
  cancelled = queue_.extract(place);
  awaitNext();
  return true;
}

void WorkQueue::clear() {
  decltype(queue_) dropped;  // Ends after the lock, as in `cancel`.
  const std::lock_guard lock(mutex_);
  dropped.swap(queue_);
  awaitNext();
}

void WorkQueue::awaitNext() { g_source_set_ready_time(source_, queue_.empty() ? -1 : queue_.begin()->first.first); }

gboolean WorkQueue::dispatch(GSource*, GSourceFunc, gpointer queue) {
  const auto self = static_cast<WorkQueue*>(queue)->shared_from_this();
  // Not what is queued meanwhile: work that queues itself without a delay must not keep other sources waiting.
  const std::int64_t now = g_get_monotonic_time();
  while (const Work work = self->takeDue(now)) self->run(work);
  const std::lock_guard lock(self->mutex_);
  self->awaitNext();
  return G_SOURCE_CONTINUE;
}

WorkQueue::Work WorkQueue::takeDue(std::int64_t now) {
  const std::lock_guard lock(mutex_);
  if (queue_.empty() || queue_.begin()->first.first > now) return nullptr;
  return std::move(queue_.extract(queue_.begin()).mapped());
}

void WorkQueue::run(const Work& work) {
  try {
    work();
  } catch (const std::exception& failure) {
    if (diagnose_) diagnose_(tr("a piece of work failed: {}", failure.what()));
  } catch (...) {
    if (diagnose_) diagnose_(tr("a piece of work failed, without a reason"));
  }
}

}  // namespace hushmode::devices
