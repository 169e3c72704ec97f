// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/ClockSteps.h"

#include "devices/linux/core/MainLoop.h"
#include "tests/devices/linux/core/MainContext.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace hushmode::devices {
namespace {

/// A timer whose events the test makes, since nobody may set the machine's clock for a test.
class PretendedTimer final : public TimerDescriptor {
 public:
  explicit PretendedTimer(std::vector<std::int64_t>& armed) : armed_(armed) {}
  ~PretendedTimer() override { ::close(fd_); }

  void make(Event event) {
    next_ = event;
    ::eventfd_write(fd_, 1);
  }

  int fd() const override { return fd_; }
  void armAt(std::int64_t nanoseconds) override { armed_.push_back(nanoseconds); }
  void disarm() override {}
  Event take() override {
    eventfd_t count;
    return ::eventfd_read(fd_, &count) == 0 ? std::exchange(next_, Event::None) : Event::None;
  }

 private:
  int fd_ = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  std::vector<std::int64_t>& armed_;
  Event next_ = Event::None;
};

TEST(ClockStepsTest, TellsEachStepAndWatchesOn) {
  std::vector<std::int64_t> armed;
  auto made = std::make_unique<PretendedTimer>(armed);
  PretendedTimer& timer = *made;
  int steps = 0;
  ClockSteps watch([&] { ++steps; }, std::move(made));
  EXPECT_EQ(armed.size(), 1U);
  for (int step = 1; step <= 3; ++step) {
    timer.make(TimerDescriptor::Event::ClockSet);
    runMainContextUntil([&] { return steps == step; });
    EXPECT_EQ(armed.size(), 1U + step) << "armed again, for the next one";
  }
  timer.make(TimerDescriptor::Event::Expired);
  runMainContextUntil([&] { return armed.size() == 5; });
  EXPECT_EQ(steps, 3) << "the end of time is no step";
  for (const std::int64_t when : armed) EXPECT_EQ(when, armed[0]);
}

TEST(ClockStepsTest, TellsNothingOnceItHasEnded) {
  std::vector<std::int64_t> armed;
  auto made = std::make_unique<PretendedTimer>(armed);
  made->make(TimerDescriptor::Event::ClockSet);
  {
    ClockSteps watch([] { FAIL(); }, std::move(made));
  }
  while (Glib::MainContext::get_default()->iteration(false)) {
  }
}

TEST(ClockStepsTest, WatchesTheMachinesClockWithoutWaking) {
  ClockSteps watch([] { FAIL(); });
  bool over = false;
  MainLoop loop(nullptr);
  loop.dispatchAfter(0.05, [&] { over = true; });
  while (Glib::MainContext::get_default()->iteration(false)) {
  }
  int turns = 0;
  while (!over) {
    Glib::MainContext::get_default()->iteration(true);
    ++turns;
  }
  EXPECT_EQ(turns, 1);
}

}  // namespace
}  // namespace hushmode::devices
