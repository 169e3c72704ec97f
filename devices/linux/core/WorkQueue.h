// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <functional>
#include <glibmm/main.h>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace hushmode::devices {

/// Work that waits for its time on the default main context. The clock of the delays stands still while the machine
/// sleeps. With nothing due the process is not woken at all.
///
/// Work of equal due time runs in the order in which it was queued. What a piece of work throws is told in one line;
/// the others run. Queueing and cancelling are for any thread, all else for the one that runs the main context.
class WorkQueue : public std::enable_shared_from_this<WorkQueue> {
 public:
  using Work = std::function<void()>;
  using WorkId = std::uint64_t;  ///< Never 0, never used twice.
  using Diagnostics = std::function<void(const std::string& line)>;

  /// To be held by a shared pointer, so that it outlives a piece of work that drops it.
  explicit WorkQueue(Diagnostics diagnose);
  ~WorkQueue();
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;

  /// Queues `work` to run after `seconds`; what is below 0 or no number counts as 0. It never runs inside this call.
  WorkId after(double seconds, Work work);
  /// Takes queued work back; false when it has run or was never queued.
  bool cancel(WorkId id);
  /// Drops everything that is queued.
  void clear();

 private:
  /// By due time in microseconds of the monotonic clock, then by order of queueing.
  using Key = std::pair<std::int64_t, WorkId>;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer queue);
  Work takeDue(std::int64_t now);  ///< None when nothing is due.
  void run(const Work& work);
  void awaitNext();  ///< With the mutex held.

  Diagnostics diagnose_;
  std::mutex mutex_;
  std::map<Key, Work> queue_;
  WorkId lastId_ = 0;
  GSource* source_;
};

}  // namespace hushmode::devices
