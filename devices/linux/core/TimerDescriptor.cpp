// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/TimerDescriptor.h"

#include <cerrno>
#include <ctime>
#include <sys/timerfd.h>
#include <system_error>
#include <unistd.h>

namespace hushmode::devices {

namespace {

class KernelTimer final : public TimerDescriptor {
 public:
  KernelTimer(int fd, int flags) : fd_(fd), flags_(flags) {}
  ~KernelTimer() override { ::close(fd_); }
  KernelTimer(const KernelTimer&) = delete;
  KernelTimer& operator=(const KernelTimer&) = delete;

  int fd() const override { return fd_; }

  void armAt(std::int64_t nanoseconds) override {
    set(flags_, {{0, 0}, {nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000}});
  }

  void disarm() override { set(0, {}); }

  Event take() override {
    std::uint64_t expirations = 0;
    if (::read(fd_, &expirations, sizeof expirations) == sizeof expirations) return Event::Expired;
    return errno == ECANCELED ? Event::ClockSet : Event::None;
  }

 private:
  void set(int flags, const itimerspec& when) const {
    // With TFD_TIMER_CANCEL_ON_SET the kernel may tell a step of the clock here, with the timer set all the same.
    if (::timerfd_settime(fd_, flags, &when, nullptr) != 0 && errno != ECANCELED) {
      throw std::system_error(errno, std::generic_category(), "cannot set a timer");
    }
  }

  int fd_;
  int flags_;
};

std::unique_ptr<TimerDescriptor> timerOn(clockid_t clock, int flags) {
  const int fd = ::timerfd_create(clock, TFD_NONBLOCK | TFD_CLOEXEC);
  return fd < 0 ? nullptr : std::make_unique<KernelTimer>(fd, flags);
}

std::unique_ptr<TimerDescriptor> wallClockTimer(int flags) {
  auto timer = timerOn(CLOCK_REALTIME, flags);
  if (!timer) throw std::system_error(errno, std::generic_category(), "cannot make a timer");
  return timer;
}

}  // namespace

std::unique_ptr<TimerDescriptor> TimerDescriptor::wakingTheDevice() {
  return timerOn(CLOCK_REALTIME_ALARM, TFD_TIMER_ABSTIME);
}

std::unique_ptr<TimerDescriptor> TimerDescriptor::onTheWallClock() { return wallClockTimer(TFD_TIMER_ABSTIME); }

std::unique_ptr<TimerDescriptor> TimerDescriptor::tellingClockSteps() {
  return wallClockTimer(TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET);
}

}  // namespace hushmode::devices
