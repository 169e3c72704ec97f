// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/CoreFoundation.h"

#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace hushmode::contracts {

/// A phone, as far as its run loop is concerned.
class RunLoopWorld {
 public:
  virtual ~RunLoopWorld() = default;
  virtual platform::RunLoop& loop() = 0;
  virtual std::shared_ptr<platform::NSTimer> makeTimer(
      double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) = 0;
  /// Runs the loop until the condition holds.
  virtual void runUntil(const std::function<bool()>& condition) = 0;
  /// Seconds, on the clock that delays are counted in.
  virtual double uptime() = 0;
  virtual void endProcess() = 0;
};

/// What every run loop does. Delays are short, since some worlds live in real time.
/// Include it once in a program; the parameter makes the world->
class RunLoopContract : public ::testing::TestWithParam<std::unique_ptr<RunLoopWorld> (*)()> {
 protected:
  class Target final : public platform::Object {};
  using Texts = std::vector<std::string>;

  static std::shared_ptr<platform::Object> makeTarget() { return std::make_shared<Target>(); }
  std::function<void()> note(std::string name) {
    return [this, name = std::move(name)] { ran.push_back(name); };
  }
  std::shared_ptr<platform::NSTimer> makeTimer(double seconds, std::string name) {
    return world->makeTimer(seconds, [run = note(std::move(name))](const auto&) { run(); });
  }
  platform::RunLoop& loop() { return world->loop(); }
  /// Runs all that is due within so many seconds; what would come later is not waited for.
  void runFor(double seconds) {
    bool over = false;
    loop().dispatchAfter(seconds, [&over] { over = true; });
    world->runUntil([&over] { return over; });
  }

  const std::unique_ptr<RunLoopWorld> world = GetParam()();
  Texts ran;
};

TEST_P(RunLoopContract, NeverRunsDispatchedWorkInsideTheCall) {
  loop().dispatchAsync(note("async"));
  loop().dispatchAfter(0, note("after nothing"));
  loop().dispatchAfter(-5, note("after less than nothing"));
  EXPECT_TRUE(ran.empty());
  runFor(0);
  EXPECT_EQ(ran, (std::vector<std::string>{"async", "after nothing", "after less than nothing"}));
}

TEST_P(RunLoopContract, RunsWorkByDueTimeThenInTheOrderOfQueueing) {
  loop().dispatchAfter(0.03, note("third"));
  loop().dispatchAfter(0.01, note("first"));
  loop().dispatchAfter(0.02, note("second"));
  std::vector<std::string> expected{"first", "second", "third"};
  for (int i = 0; i < 50; ++i) {
    loop().dispatchAsync(note(std::to_string(i)));
    expected.insert(expected.begin() + i, std::to_string(i));
  }
  // Late or not: the world may have been busy until all of it is due.
  const double begin = world->uptime();
  runFor(0.05);
  EXPECT_GE(world->uptime() - begin, 0.05);
  EXPECT_EQ(ran, expected);
}

TEST_P(RunLoopContract, RunsWorkThatWasQueuedByWorkLater) {
  loop().dispatchAsync([this] {
    ran.push_back("outer");
    loop().dispatchAsync(note("inner"));
    EXPECT_EQ(ran.size(), 1U);
  });
  loop().dispatchAsync(note("next"));
  runFor(0.01);
  EXPECT_EQ(ran, (std::vector<std::string>{"outer", "next", "inner"}));
}

TEST_P(RunLoopContract, TakesWorkFromOtherThreads) {
  std::thread([this] { loop().dispatchAsync(note("from another thread")); }).join();
  bool main = false, elsewhere = true;
  loop().dispatchAsync([&] { main = loop().isMainThread(); });
  std::thread([&] { elsewhere = loop().isMainThread(); }).join();
  world->runUntil([&] { return main; });
  EXPECT_EQ(ran, std::vector<std::string>{"from another thread"});
  EXPECT_FALSE(elsewhere);
}

TEST_P(RunLoopContract, CountsATimersIntervalFromTheMomentItIsAdded) {
  const auto timer = makeTimer(0.04, "timer");
  runFor(0.06);
  EXPECT_TRUE(ran.empty());
  const double added = world->uptime();
  loop().addTimer(timer);
  loop().addTimer(timer);
  world->runUntil([this] { return !ran.empty(); });
  EXPECT_GE(world->uptime() - added, 0.04);
  loop().addTimer(timer);
  runFor(0.06);
  EXPECT_EQ(ran, std::vector<std::string>{"timer"}) << "one shot";
}

TEST_P(RunLoopContract, KeepsAnAddedTimerAndDropsAnInvalidatedOne) {
  loop().addTimer(makeTimer(0.01, "kept"));
  std::weak_ptr<platform::NSTimer> watched;
  {
    const auto invalidated = makeTimer(0.01, "invalidated");
    watched = invalidated;
    loop().addTimer(invalidated);
    invalidated->invalidate();
  }
  EXPECT_TRUE(watched.expired());
  const auto neverAdded = makeTimer(0.01, "never added");
  neverAdded->invalidate();
  loop().addTimer(neverAdded);
  runFor(0.02);
  EXPECT_EQ(ran, std::vector<std::string>{"kept"});
}

TEST_P(RunLoopContract, LetsATimerInvalidateItselfInItsOwnAction) {
  loop().addTimer(world->makeTimer(0.01, [this](const auto& timer) {
    timer->invalidate();
    ran.push_back("fired");
  }));
  runFor(0.02);
  EXPECT_EQ(ran, std::vector<std::string>{"fired"});
}

TEST_P(RunLoopContract, RefusesTimersOfAnotherMake) {
  struct Foreign final : platform::NSTimer {
    void invalidate() override {}
  };
  EXPECT_THROW(loop().addTimer(std::make_shared<Foreign>()), std::invalid_argument);
  EXPECT_THROW(loop().addTimer(nullptr), std::invalid_argument);
}

TEST_P(RunLoopContract, CancelsRequestsByTargetAndSelector) {
  const auto work = makeTarget(), other = makeTarget();
  loop().performSelector(work, "hide", 0.02, note("work's, twice"));
  loop().performSelector(work, "hide", 0.01, note("work's, twice"));
  loop().performSelector(work, "another", 0.02, note("work's other"));
  loop().performSelector(other, "hide", 0.03, note("other's"));
  loop().cancelPreviousPerformRequests(work, "hide");
  loop().cancelPreviousPerformRequests(work, "hide");
  loop().performSelector(work, "hide", 0.04, note("work's"));
  runFor(0.06);
  EXPECT_EQ(ran, (std::vector<std::string>{"work's other", "other's", "work's"}));
}

TEST_P(RunLoopContract, KeepsATargetUntilItsActionIsOver) {
  auto target = makeTarget();
  const std::weak_ptr<platform::Object> watched = target;
  loop().performSelector(target, "act", 0.01, [&] {
    loop().cancelPreviousPerformRequests(watched.lock(), "act");  // Too late: it runs.
    ran.push_back(watched.expired() ? "gone" : "kept");
  });
  target.reset();
  runFor(0.02);
  EXPECT_EQ(ran, std::vector<std::string>{"kept"});
  EXPECT_TRUE(watched.expired());
}

TEST_P(RunLoopContract, DropsEverythingWithTheProcess) {
  auto target = makeTarget();
  const std::weak_ptr<platform::Object> watched = target;
  loop().dispatchAsync(note("work"));
  loop().performSelector(std::move(target), "act", 0.01, note("request"));
  const auto timer = makeTimer(0.01, "timer");
  loop().addTimer(timer);
  world->endProcess();
  EXPECT_TRUE(watched.expired());
  loop().dispatchAsync(note("the next process's"));
  runFor(0.02);
  EXPECT_EQ(ran, std::vector<std::string>{"the next process's"});
  timer->invalidate();
}

}  // namespace hushmode::contracts
