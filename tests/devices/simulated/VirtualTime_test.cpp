// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/VirtualTime.h"

#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace hushmode::devices {
namespace {

using platform::Date;

constexpr Date start(1715673600);

/// The names of the work that ran, each with the seconds since the start at which it did.
class VirtualTimeTest : public ::testing::Test {
 protected:
  VirtualTime::Work note(std::string name) {
    return [this, name = std::move(name)] { ran.push_back({name, time.now() - start}); };
  }

  struct Ran {
    std::string name;
    double at;
    bool operator==(const Ran&) const = default;
    friend void PrintTo(const Ran& ran, std::ostream* out) { *out << ran.name << " at " << ran.at; }
  };
  using RanList = std::vector<Ran>;

  VirtualTime time{start};
  RanList ran;
};

TEST_F(VirtualTimeTest, StandsStillUntilItIsRun) {
  time.after(0, note("a"));
  EXPECT_EQ(time.now(), start);
  EXPECT_EQ(ran, RanList());
}

TEST_F(VirtualTimeTest, RunsWorkOfEqualDueTimeInTheOrderOfQueueing) {
  time.after(2, note("late"));
  time.after(1, note("first"));
  time.wakeAt(start.addingSeconds(0.5), 0.5, note("wake-up"));
  time.after(1, [&] {
    note("third")();
    time.after(0, note("queued meanwhile"));
  });
  time.after(1, note("fourth"));
  time.runFor(1);
  EXPECT_EQ(ran, (RanList{{"first", 1}, {"wake-up", 1}, {"third", 1}, {"fourth", 1}, {"queued meanwhile", 1}}));
}

TEST_F(VirtualTimeTest, CountsDelaysThatAreNoDelaysAsNone) {
  for (const double seconds : {0.0, -5.0, std::numeric_limits<double>::quiet_NaN()}) time.after(seconds, note("a"));
  time.after(std::numeric_limits<double>::infinity(), note("never"));
  time.runUntil(start);
  EXPECT_EQ(ran, (RanList{{"a", 0}, {"a", 0}, {"a", 0}}));
}

TEST_F(VirtualTimeTest, RunsWhatIsDueAtTheLimitAndStaysThere) {
  time.after(10, note("at the limit"));
  time.after(10.001, note("after it"));
  time.runUntil(start.addingSeconds(10));
  EXPECT_EQ(ran, (RanList{{"at the limit", 10}}));
  EXPECT_EQ(time.now() - start, 10);
  time.runUntil(start);
  EXPECT_EQ(time.now() - start, 10) << "a limit in the past does not turn the clock back";
}

TEST_F(VirtualTimeTest, CancelsOnlyWhatStillWaits) {
  const auto id = time.after(1, note("cancelled"));
  EXPECT_TRUE(time.cancel(id));
  EXPECT_FALSE(time.cancel(id));
  EXPECT_FALSE(time.cancel(12345));
  VirtualTime::WorkId own = 0;
  own = time.after(1, [&] { EXPECT_FALSE(time.cancel(own)) << "it runs already"; });
  time.runFor(5);
  EXPECT_EQ(ran, RanList());
}

TEST_F(VirtualTimeTest, RunsUntilIdleAndSaysWhetherItIs) {
  time.after(3, [&] { time.after(4, note("second")); });
  EXPECT_EQ(time.nextDue(), start.addingSeconds(3));
  EXPECT_FALSE(time.runUntilIdle(start.addingSeconds(5)));
  EXPECT_EQ(time.now() - start, 5);
  EXPECT_TRUE(time.runUntilIdle(start.addingSeconds(100)));
  EXPECT_EQ(time.now() - start, 7);
  EXPECT_EQ(ran, (RanList{{"second", 7}}));
  EXPECT_EQ(time.nextDue(), std::nullopt);
}

TEST_F(VirtualTimeTest, LosesOnlyThePieceThatThrows) {
  time.after(1, [] { throw std::out_of_range("a fault"); });
  time.after(1, note("next"));
  EXPECT_THROW(time.runFor(10), std::out_of_range);
  EXPECT_EQ(time.now() - start, 1);
  EXPECT_EQ(ran, RanList());
  time.runUntil(start.addingSeconds(10));
  EXPECT_EQ(ran, (RanList{{"next", 1}}));
}

TEST_F(VirtualTimeTest, CannotBeRunByItsOwnWork) {
  time.after(1, [&] { time.runFor(1); });
  EXPECT_THROW(time.runFor(1), std::logic_error);
  time.runFor(1);
  EXPECT_EQ(time.now() - start, 2) << "and can be run again afterwards";
}

TEST_F(VirtualTimeTest, GivesUpOnWorkThatQueuesItselfForEver) {
  std::function<void()> again = [&] { time.after(0, again); };
  time.after(1, again);
  EXPECT_THROW(time.runFor(2), std::runtime_error);
}

TEST_F(VirtualTimeTest, TellsOfEveryPieceThatRan) {
  int steps = 0;
  time.setOnStep([&] { ++steps; });
  time.after(1, note("a"));
  time.after(2, [] { throw std::runtime_error("a fault"); });
  time.after(3, note("b"));
  EXPECT_THROW(time.runFor(10), std::runtime_error);
  time.runFor(10);
  EXPECT_EQ(steps, 2);
}

TEST_F(VirtualTimeTest, WakesExactlyAtTheDateAndNeverEarly) {
  // Dates between the steps of uptime, far from the start.
  time.runFor(0.1 + 1e-7);
  for (int day = 0; day < 1000; ++day) {
    const Date date = start.addingSeconds(day * 86400.0 + 0.3 * day + 1);
    time.wakeAt(date, 0, [&, date] { EXPECT_EQ(time.now(), date); });
  }
  EXPECT_TRUE(time.runUntilIdle(start.addingSeconds(2000 * 86400.0)));
}

TEST_F(VirtualTimeTest, MovesWakeUpsAndNoDelaysWhenTheClockIsSet) {
  struct Case {
    const char* name;
    double jumpAfter, jumpTo;
    double wakeUpAt, delayAt;  ///< In seconds of uptime.
  } const cases[] = {
      {"no jump", 10, 10, 100.5, 50},
      {"forward, short of the date", 10, 60, 50.5, 50},
      {"forward to the date", 10, 100, 10.5, 50},
      {"forward over the date", 10, 500, 10.5, 50},
      {"back", 10, -20, 130.5, 50},
      {"forward while the wake-up is on its way", 100.25, 500, 100.5, 50},
      {"back a little while it is on its way", 100.25, 100, 100.5, 50},
      {"back before the date while it is on its way", 100.25, 90, 110.75, 50},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    VirtualTime clock(start);
    double wakeUpAt = -1, delayAt = -1;
    clock.wakeAt(start.addingSeconds(100), 0.5, [&] {
      wakeUpAt = clock.uptime();
      EXPECT_GE(clock.now(), start.addingSeconds(100));
    });
    clock.after(50, [&] { delayAt = clock.uptime(); });
    clock.runFor(each.jumpAfter);
    clock.jumpTo(start.addingSeconds(each.jumpTo));
    EXPECT_EQ(clock.now() - start, each.jumpTo);
    clock.runFor(1000);
    EXPECT_EQ(wakeUpAt, each.wakeUpAt);
    EXPECT_EQ(delayAt, each.delayAt);
  }
}

TEST_F(VirtualTimeTest, RunsUntilADateOnTheClockAsItIsAfterAJump) {
  time.after(5, [&] { time.jumpTo(start.addingSeconds(100)); });
  time.after(50, note("fifty seconds in"));
  time.runUntil(start.addingSeconds(120));
  EXPECT_EQ(time.uptime(), 25);
  EXPECT_EQ(ran, RanList());
}

TEST_F(VirtualTimeTest, HoldsDelaysWhileSuspendedAndCountsThemOnAfterwards) {
  time.after(10, note("before"));
  time.runFor(4);
  time.suspend();
  time.runFor(100);
  time.after(3, note("queued while suspended"));
  time.runFor(100);
  EXPECT_EQ(ran, RanList());
  EXPECT_EQ(time.now() - start, 204) << "the clock goes on";
  time.resume();
  time.runFor(100);
  EXPECT_EQ(ran, (RanList{{"queued while suspended", 207}, {"before", 210}}));
}

TEST_F(VirtualTimeTest, KeepsWakeUpsToTheirDatesThroughASuspension) {
  time.wakeAt(start.addingSeconds(100), 0.5, note("wake-up"));
  time.suspend();
  time.runFor(50);
  time.resume();
  time.runFor(100);
  EXPECT_EQ(ran, (RanList{{"wake-up", 100.5}}));
}

TEST_F(VirtualTimeTest, IsResumedByAWakeUp) {
  time.setOnWake(note("resumed"));
  time.after(10, note("delayed"));
  time.wakeAt(start.addingSeconds(1000), 0.5, note("wake-up"));
  time.suspend();
  EXPECT_EQ(time.nextDue(), start.addingSeconds(1000.5));
  time.runFor(2000);
  EXPECT_EQ(ran, (RanList{{"resumed", 1000.5}, {"wake-up", 1000.5}, {"delayed", 1010.5}}));
  EXPECT_FALSE(time.isSuspended());
}

TEST_F(VirtualTimeTest, TakesWorkFromOtherThreads) {
  constexpr int threads = 4, pieces = 500;
  int count = 0;
  std::vector<std::thread> others;
  for (int each = 0; each < threads; ++each) {
    others.emplace_back([&] {
      for (int piece = 0; piece < pieces; ++piece) time.after(0.001 * piece, [&] { ++count; });
    });
  }
  time.runFor(0.2);
  for (std::thread& other : others) other.join();
  EXPECT_TRUE(time.runUntilIdle(start.addingSeconds(1000)));
  EXPECT_EQ(count, threads * pieces);
}

TEST_F(VirtualTimeTest, DropsWorkWhoseEndQueuesMore) {
  struct Queuer {
    VirtualTime& time;
    ~Queuer() {
      time.after(0, [] {});
    }
  };
  auto queuer = std::make_shared<Queuer>(time);
  const auto id = time.after(1, [queuer] {});
  queuer.reset();
  EXPECT_TRUE(time.cancel(id));
  EXPECT_EQ(time.pending(), 1U);
}

}  // namespace
}  // namespace hushmode::devices
