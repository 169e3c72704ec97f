// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>

namespace hushmode::devices {

/// The one clock of a simulated phone, and the queue of work that waits for it.
///
/// There are two hands. *Uptime* counts seconds since the phone was made and only goes forward; delays are counted in
/// it. The *wall clock* shows a date; it runs along with uptime, and can be set to another date without moving any
/// delay. Time stands still except inside the `run` functions, which jump from one piece of work to the next.
///
/// Work of equal due time runs in the order in which it was queued. While the phone is suspended only wake-ups run; the
/// first one that is due resumes the phone. Delays do not count time in which the phone was suspended: what had ten
/// seconds to go before has ten seconds to go afterwards.
///
/// Queueing, cancelling and reading the clock are safe from any thread; running, jumping and suspending belong to one.
class VirtualTime {
 public:
  using Work = std::function<void()>;
  using WorkId = std::uint64_t;  ///< Never 0, never used twice.

  explicit VirtualTime(platform::Date start);

  platform::Date now() const { return platform::Date(now_.load(std::memory_order_relaxed)); }
  double uptime() const { return uptime_.load(std::memory_order_relaxed); }  ///< In seconds, time suspended included.

  /// Queues `work` to run after `seconds` (negative ones count as 0). It never runs inside this call.
  WorkId after(double seconds, Work work);
  /// Queues a wake-up: `work` runs `latency` seconds after the wall clock first reaches `date`, be it by running or by
  /// a jump; never while the wall clock is before `date`. A `date` that has passed counts as reached now.
  WorkId wakeAt(platform::Date date, double latency, Work work);
  /// Takes queued work back; false when it has run or was never queued.
  bool cancel(WorkId id);
  /// Drops everything that is queued.
  void clear();
  std::size_t pending() const;
  /// The date of the next piece of work, wake-ups only while suspended; none when nothing waits.
  std::optional<platform::Date> nextDue() const;

  /// Runs what is due until the wall clock shows `limit`, and leaves it there; what is due at `limit` itself runs. A
  /// `limit` that has passed runs what is due now. An exception thrown by a piece of work leaves through here; the
  /// piece is gone, all else is still queued, and the clock stands at the piece's time. Throws std::logic_error when
  /// called from a piece of work, and std::runtime_error when a hundred thousand pieces have run at one instant.
  void runUntil(platform::Date limit);
  /// The same for a span of uptime.
  void runFor(double seconds);
  /// Runs until nothing is queued, and leaves the clock at the last piece; answers true. When `limit` comes first, the
  /// clock stops there and the answer is false.
  bool runUntilIdle(platform::Date limit);

  /// Sets the wall clock. Delays stay as they are; wake-ups follow the new wall clock.
  void jumpTo(platform::Date date);

  void suspend();
  void resume();
  bool isSuspended() const { return suspendedAt_.has_value(); }

  /// Called after each piece of work that ran to its end. Empty for none.
  void setOnStep(std::function<void()> onStep) { onStep_ = std::move(onStep); }
  /// Called when a due wake-up resumes the suspended phone, before the wake-up itself runs. Empty for none.
  void setOnWake(std::function<void()> onWake) { onWake_ = std::move(onWake); }

 private:
  struct WakeUp {
    platform::Date date;
    double latency;
  };
  struct Item {
    Work work;
    std::optional<WakeUp> wakeUp;
  };
  /// By due time in uptime, then by order of queueing.
  struct Key {
    double due;
    WorkId id;
    bool operator<(const Key& other) const { return due != other.due ? due < other.due : id < other.id; }
  };
  using Queue = std::map<Key, Item>;

  // With the mutex held:
  platform::Date dateAt(double uptime) const;
  double uptimeAt(platform::Date date) const;  ///< The first moment at which the wall clock shows at least `date`.
  double dueOf(const WakeUp& wakeUp) const;
  void moveTo(double uptime);
  Queue::const_iterator next() const;
  template <class NewDue>
  void rekey(NewDue newDue);
  void resumeLocked();

  /// Takes the next piece due at `limit` or before out of the queue and sets the clock to it.
  std::optional<Item> takeNext(double limit, bool& woke);
  template <class Limit>
  void run(Limit limit);

  mutable std::mutex mutex_;
  Queue queue_;
  WorkId lastId_ = 0;
  platform::Date anchorDate_;  ///< What the wall clock showed at `anchorUptime_`.
  double anchorUptime_ = 0;
  std::atomic<double> uptime_ = 0;
  std::atomic<double> now_;
  std::optional<double> suspendedAt_;
  bool running_ = false;
  std::function<void()> onStep_, onWake_;
};

}  // namespace hushmode::devices
