// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/MainLoop.h"

#include "tests/contracts/RunLoopContract.h"
#include "tests/devices/linux/core/MainContext.h"

#include <optional>

namespace hushmode {

namespace contracts {
namespace {

class LinuxRunLoopWorld final : public RunLoopWorld {
 public:
  platform::RunLoop& loop() override { return loop_; }
  std::shared_ptr<platform::NSTimer> makeTimer(
      double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) override {
    return loop_.makeTimer(seconds, std::move(action));
  }
  void runUntil(const std::function<bool()>& condition) override { devices::runMainContextUntil(condition); }
  double uptime() override { return static_cast<double>(g_get_monotonic_time()) / 1e6; }
  void endProcess() override { loop_.processEnded(); }

 private:
  devices::MainLoop loop_{nullptr};
};

INSTANTIATE_TEST_SUITE_P(Linux, RunLoopContract, ::testing::Values([]() -> std::unique_ptr<RunLoopWorld> {
                           return std::make_unique<LinuxRunLoopWorld>();
                         }));

}  // namespace
}  // namespace contracts

namespace devices {
namespace {

TEST(MainLoopTest, GoesOnAfterWorkThatThrowsAndSaysSo) {
  std::vector<std::string> told;
  MainLoop loop([&](const std::string& line) { told.push_back(line); });
  bool over = false;
  loop.dispatchAsync([] { throw std::runtime_error("no colon in \"8\""); });
  loop.dispatchAsync([] { throw 5; });
  loop.dispatchAsync([&] { over = true; });
  runMainContextUntil([&] { return over; });
  EXPECT_EQ(told, (std::vector<std::string>{"a piece of work failed: no colon in \"8\"",
                                            "a piece of work failed, without a reason"}));
}

TEST(MainLoopTest, LetsOtherSourcesRunThoughWorkQueuesItselfWithoutEnd) {
  MainLoop loop(nullptr);
  int rounds = 0;
  std::function<void()> again = [&] {
    ++rounds;
    loop.dispatchAsync(again);
  };
  loop.dispatchAsync(again);
  bool other = false;
  Glib::signal_timeout().connect_once([&] { other = true; }, 5);
  runMainContextUntil([&] { return other; });
  EXPECT_GT(rounds, 0);
}

TEST(MainLoopTest, MayEndInsideItsOwnWork) {
  auto loop = std::make_optional<MainLoop>(nullptr);
  const auto timer = loop->makeTimer(0, [](const auto&) { FAIL(); });
  loop->addTimer(timer);
  bool over = false;
  loop.emplace(nullptr);  // The first one's timer goes with it.
  loop->dispatchAsync([&] {
    loop->dispatchAsync([] { FAIL() << "the loop has ended"; });
    loop.reset();
    over = true;
  });
  runMainContextUntil([&] { return over; });
  while (Glib::MainContext::get_default()->iteration(false)) {
  }
  timer->invalidate();
}

TEST(MainLoopTest, NeverFiresATimerEarly) {
  MainLoop loop(nullptr);
  for (const double seconds : {0.0001, 0.0004, 0.00151, 0.0023, 0.0107}) {
    const std::int64_t added = g_get_monotonic_time();
    std::int64_t fired = 0;
    loop.dispatchAfter(seconds, [&] { fired = g_get_monotonic_time(); });
    runMainContextUntil([&] { return fired != 0; });
    EXPECT_GE(static_cast<double>(fired - added) / 1e6, seconds);
  }
}

}  // namespace
}  // namespace devices
}  // namespace hushmode
