// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PersistentConnection.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace hushmode::contracts {

/// A phone, as far as its wake timers are concerned.
class WakeTimerWorld {
 public:
  virtual ~WakeTimerWorld() = default;
  virtual platform::PCSimpleTimer::Class& timers() = 0;
  virtual platform::RunLoop& loop() = 0;
  virtual platform::Date now() = 0;
  /// Runs the loop until the condition holds.
  virtual void runUntil(const std::function<bool()>& condition) = 0;
  virtual void endProcess() = 0;
};

/// What every wake timer does. Dates are near, since some worlds live in real time. Include it once in a program; the
/// parameter makes the world.
class WakeTimerContract : public ::testing::TestWithParam<std::unique_ptr<WakeTimerWorld> (*)()> {
 protected:
  using Timer = std::shared_ptr<platform::PCSimpleTimer>;
  using Texts = std::vector<std::string>;

  Timer makeTimer(double seconds, platform::PCSimpleTimer::Action action) {
    return world->timers().initWithFireDate(world->now().addingSeconds(seconds), "com.quorvel.hushmode",
                                            std::move(action), {{"ProfileIdentifier", 7}});
  }
  Timer makeTimer(double seconds, std::string name) {
    return makeTimer(seconds, [this, name = std::move(name)](const Timer&) { fired.push_back(name); });
  }
  void arm(const Timer& timer) { timer->scheduleInRunLoop(world->loop()); }
  /// Runs until a timer of its own has fired, and with it all those of the dates before.
  void runPast(double seconds) {
    bool over = false;
    arm(makeTimer(seconds, [&over](const Timer&) { over = true; }));
    world->runUntil([&over] { return over; });
  }

  const std::unique_ptr<WakeTimerWorld> world = GetParam()();
  Texts fired;
};

TEST_P(WakeTimerContract, FiresOnceAtItsDateOrLaterAndNeverEarly) {
  for (const double seconds : {0.02, 0.0123456789, 0.001, 0.00033333333333, 1e-7, 0.0, -1.0, -86400.0, -4e9}) {
    SCOPED_TRACE(seconds);
    const platform::Date date = world->now().addingSeconds(seconds);
    std::vector<double> late;
    const Timer timer = world->timers().initWithFireDate(
        date, "com.quorvel.hushmode", [&](const Timer&) { late.push_back(world->now() - date); }, {});
    arm(timer);
    EXPECT_TRUE(late.empty()) << "not inside the arming";
    world->runUntil([&] { return !late.empty(); });
    EXPECT_GE(late[0], 0);
    arm(timer);
    runPast(0.002);
    EXPECT_EQ(late.size(), 1U);
  }
}

TEST_P(WakeTimerContract, FireByTheirDatesWhateverTheOrderOfArming) {
  arm(makeTimer(0.03, "third"));
  arm(makeTimer(0.01, "first"));
  arm(makeTimer(0.02, "second"));
  const platform::Date same = world->now().addingSeconds(0.04);
  for (const char* name : {"fourth", "fifth", "sixth"}) {
    arm(world->timers().initWithFireDate(same, "", [this, name](const Timer&) { fired.push_back(name); }, {}));
  }
  runPast(0.06);
  EXPECT_EQ(fired, (Texts{"first", "second", "third", "fourth", "fifth", "sixth"}));
}

TEST_P(WakeTimerContract, CarryTheirUserInfoToTheCallback) {
  Timer seen;
  arm(makeTimer(0.001, [&](const Timer& timer) { seen = timer; }));
  world->runUntil([&] { return seen != nullptr; });
  EXPECT_EQ(seen->userInfo(), (platform::Dictionary{{"ProfileIdentifier", 7}}));
}

TEST_P(WakeTimerContract, LiveWhileArmedThoughNobodyElseHoldsThem) {
  std::weak_ptr<platform::PCSimpleTimer> watched;
  {
    const Timer timer = makeTimer(0.01, "fired");
    arm(timer);
    watched = timer;
  }
  EXPECT_FALSE(watched.expired());
  runPast(0.02);
  EXPECT_EQ(fired, Texts{"fired"});
  EXPECT_TRUE(watched.expired());
}

TEST_P(WakeTimerContract, LiveThroughTheirOwnCallbackThoughItLetsGoOfThem) {
  Timer held;
  held = makeTimer(0.01, [&](const Timer& timer) {
    held->invalidate();
    held.reset();
    EXPECT_EQ(timer->userInfo().size(), 1U);
    fired.push_back("fired");
  });
  arm(held);
  runPast(0.02);
  EXPECT_EQ(fired, Texts{"fired"});
}

TEST_P(WakeTimerContract, AreArmedOnce) {
  const Timer timer = makeTimer(0.01, "fired");
  arm(timer);
  arm(timer);
  runPast(0.02);
  arm(timer);
  runPast(0.01);
  EXPECT_EQ(fired, Texts{"fired"});
}

TEST_P(WakeTimerContract, NeverFireOnceInvalidated) {
  const Timer armed = makeTimer(0.01, "armed");
  arm(armed);
  armed->invalidate();
  armed->invalidate();
  arm(armed);
  const Timer unarmed = makeTimer(0.01, "unarmed");
  unarmed->invalidate();
  arm(unarmed);
  runPast(0.02);
  EXPECT_EQ(fired, Texts());
}

TEST_P(WakeTimerContract, MayBeInvalidatedByAnotherOfTheSameDate) {
  const platform::Date date = world->now().addingSeconds(0.01);
  Timer second;
  const auto first = world->timers().initWithFireDate(date, "",
                                                      [&](const Timer&) {
                                                        fired.push_back("first");
                                                        second->invalidate();
                                                      },
                                                      {});
  second = world->timers().initWithFireDate(date, "", [&](const Timer&) { fired.push_back("second"); }, {});
  arm(first);
  arm(second);
  runPast(0.02);
  EXPECT_EQ(fired, Texts{"first"});
}

TEST_P(WakeTimerContract, MayArmTheNextFromTheirCallback) {
  int rounds = 0;
  platform::PCSimpleTimer::Action again = [&](const Timer&) {
    if (++rounds < 5) arm(makeTimer(rounds % 2 == 0 ? -1 : 0.001, again));
  };
  arm(makeTimer(0.001, again));
  world->runUntil([&] { return rounds == 5; });
  runPast(0.01);
  EXPECT_EQ(rounds, 5);
}

TEST_P(WakeTimerContract, MayBeMadeAndStoppedOnAnotherThread) {
  Timer timer;
  std::thread([&] { timer = makeTimer(0.01, "fired"); }).join();
  arm(timer);
  std::thread([&] { timer->invalidate(); }).join();
  runPast(0.02);
  EXPECT_EQ(fired, Texts());
}

TEST_P(WakeTimerContract, EndWithTheProcess) {
  std::weak_ptr<platform::PCSimpleTimer> watched;
  {
    const Timer timer = makeTimer(0.01, "of the process that ended");
    arm(timer);
    watched = timer;
  }
  const Timer held = makeTimer(0.01, "held by somebody");
  arm(held);
  world->endProcess();
  EXPECT_TRUE(watched.expired());
  runPast(0.02);
  EXPECT_EQ(fired, Texts());
  held->invalidate();
}

}  // namespace hushmode::contracts
