// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/ClockSteps.h"

#include "devices/linux/core/SystemClock.h"

#include <limits>
#include <utility>

namespace hushmode::devices {

namespace {

const std::int64_t kNever = nanosecondsReaching(platform::Date(std::numeric_limits<double>::infinity()));

}  // namespace

ClockSteps::ClockSteps(std::function<void()> stepped, std::unique_ptr<TimerDescriptor> descriptor)
    : stepped_(std::move(stepped)), descriptor_(std::move(descriptor)) {
  descriptor_->armAt(kNever);
  watch_ = Glib::signal_io().connect([this](Glib::IOCondition) { return read(); }, descriptor_->fd(),
                                     Glib::IOCondition::IO_IN);
}

ClockSteps::~ClockSteps() { watch_.disconnect(); }

bool ClockSteps::read() {
  const TimerDescriptor::Event event = descriptor_->take();
  if (event == TimerDescriptor::Event::None) return true;
  descriptor_->armAt(kNever);
  if (event == TimerDescriptor::Event::ClockSet) stepped_();
  return true;
}

}  // namespace hushmode::devices
