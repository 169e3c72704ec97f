// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/WakeTimers.h"

#include "devices/linux/core/MainLoop.h"
#include "devices/linux/core/SystemClock.h"
#include "tests/contracts/WakeTimerContract.h"
#include "tests/devices/linux/core/MainContext.h"

#include <cmath>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace hushmode {

namespace contracts {
namespace {

class LinuxWakeTimerWorld final : public WakeTimerWorld {
 public:
  explicit LinuxWakeTimerWorld(std::unique_ptr<devices::TimerDescriptor> waking)
      : timers_(nullptr, std::move(waking)) {}

  platform::PCSimpleTimer::Class& timers() override { return timers_.timerClass(); }
  platform::RunLoop& loop() override { return loop_; }
  platform::Date now() override { return devices::systemNow(); }
  void runUntil(const std::function<bool()>& condition) override { devices::runMainContextUntil(condition); }
  void endProcess() override { timers_.processEnded(); }

 private:
  devices::MainLoop loop_{nullptr};
  devices::WakeTimers timers_;
};

std::unique_ptr<WakeTimerWorld> worldThatWakesWhereItMay() {
  return std::make_unique<LinuxWakeTimerWorld>(devices::TimerDescriptor::wakingTheDevice());
}
std::unique_ptr<WakeTimerWorld> worldThatMayNotWake() { return std::make_unique<LinuxWakeTimerWorld>(nullptr); }

INSTANTIATE_TEST_SUITE_P(Linux, WakeTimerContract, ::testing::Values(worldThatWakesWhereItMay, worldThatMayNotWake));

}  // namespace
}  // namespace contracts

namespace devices {
namespace {

using platform::Date;
using Timer = std::shared_ptr<platform::PCSimpleTimer>;

/// Takes the right to wake the machine from the calling thread.
void dropWakeAlarm() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2] = {};
  ASSERT_EQ(::syscall(SYS_capget, &header, data), 0);
  for (auto* set : {&data[1].effective, &data[1].permitted}) *set &= ~(1U << (CAP_WAKE_ALARM - 32));
  ASSERT_EQ(::syscall(SYS_capset, &header, data), 0);
}

TEST(WakeTimersTest, SayWhetherTheyMayWakeTheDevice) {
  EXPECT_EQ(WakeTimers(nullptr).mayWakeDevice(), TimerDescriptor::wakingTheDevice() != nullptr);
  std::thread([] {
    dropWakeAlarm();
    EXPECT_EQ(TimerDescriptor::wakingTheDevice(), nullptr);
    EXPECT_FALSE(WakeTimers(nullptr).mayWakeDevice());
  }).join();
}

TEST(WakeTimersTest, GoOnAfterACallbackThatThrowsAndSaySo) {
  std::vector<std::string> told;
  WakeTimers timers([&](const std::string& line) { told.push_back(line); });
  MainLoop loop(nullptr);
  bool over = false;
  const Date date = systemNow().addingSeconds(0.001);
  timers.timerClass()
      .initWithFireDate(date, "", [](const Timer&) { throw std::runtime_error("broken"); }, {})
      ->scheduleInRunLoop(loop);
  timers.timerClass().initWithFireDate(date, "", [](const Timer&) { throw 5; }, {})->scheduleInRunLoop(loop);
  timers.timerClass().initWithFireDate(date, "", [&](const Timer&) { over = true; }, {})->scheduleInRunLoop(loop);
  runMainContextUntil([&] { return over; });
  EXPECT_EQ(told, (std::vector<std::string>{"a wake timer's work failed: broken",
                                            "a wake timer's work failed, without a reason"}));
}

TEST(WakeTimersTest, TellWhatIsArmedByDate) {
  WakeTimers timers(nullptr);
  MainLoop loop(nullptr);
  for (const int day : {3, 1, 2}) {
    timers.timerClass().initWithFireDate(Date(4e9 + day * 86400), "", nullptr, {{"day", day}})->scheduleInRunLoop(loop);
  }
  std::vector<platform::Dictionary> infos;
  for (const auto& each : timers.armed()) infos.push_back(each.userInfo);
  EXPECT_EQ(infos, (std::vector<platform::Dictionary>{{{"day", 1}}, {{"day", 2}}, {{"day", 3}}}));
}

TEST(WakeTimersTest, AreNeverEarlyOnTheFinestClock) {
  WakeTimers timers(nullptr);
  MainLoop loop(nullptr);
  for (int round = 0; round < 300; ++round) {
    const Date date = systemNow().addingSeconds(0.0002 + round * 1.7e-6);
    double late = std::nan("");
    timers.timerClass()
        .initWithFireDate(date, "", [&](const Timer&) { late = systemNow() - date; }, {})
        ->scheduleInRunLoop(loop);
    runMainContextUntil([&] { return !std::isnan(late); });
    ASSERT_GE(late, 0) << "round " << round;
  }
}

TEST(SystemClockTest, ReachesADateAtTheFirstNanosecondThatShowsIt) {
  EXPECT_EQ(nanosecondsReaching(Date(1'715'673'600.5)), 1'715'673'600'500'000'000);
  EXPECT_EQ(nanosecondsReaching(Date(1'715'673'600)), 1'715'673'600'000'000'000);
  // A double of our days has steps of some 238 nanoseconds; counted from a whole second, all of this is exact.
  const double whole = 1'715'673'600;
  for (double date = whole; date < whole + 0.001; date = std::nextafter(date, 2e9)) {
    const auto reached = static_cast<double>(nanosecondsReaching(Date(date)) - 1'715'673'600'000'000'000);
    ASSERT_GE(reached, (date - whole) * 1e9);
    ASSERT_LT(reached - 1, (date - whole) * 1e9);
  }
  for (const double date : {0.0, -1.0, -1e300, std::nan(""), -HUGE_VAL}) EXPECT_EQ(nanosecondsReaching(Date(date)), 1);
  for (const double date : {1e10, 1e300, HUGE_VAL}) {
    EXPECT_EQ(nanosecondsReaching(Date(date)), 8'600'000'000'000'000'000);
  }
}

TEST(IdleTest, AnIdleProcessIsNotWokenBeforeItsTime) {
  MainLoop loop(nullptr);
  WakeTimers timers(nullptr);
  int turns = 0;
  bool over = false;
  loop.dispatchAfter(1000, [] {});
  timers.timerClass().initWithFireDate(Date(4e9), "", nullptr, {})->scheduleInRunLoop(loop);
  while (Glib::MainContext::get_default()->iteration(false)) {
  }
  timers.timerClass()
      .initWithFireDate(systemNow().addingSeconds(0.5), "", [&](const Timer&) { over = true; }, {})
      ->scheduleInRunLoop(loop);
  while (!over) {
    Glib::MainContext::get_default()->iteration(true);
    ++turns;
  }
  EXPECT_EQ(turns, 1) << "the one that was armed";
}

}  // namespace
}  // namespace devices
}  // namespace hushmode
