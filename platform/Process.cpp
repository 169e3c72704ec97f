// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/Process.h"

#include <stdexcept>

namespace hushmode::platform {

namespace {
Process* currentProcess = nullptr;
}

Process::Process(Device& device) : device_(device) {
  if (currentProcess) throw std::logic_error("a host process is already current");
  currentProcess = this;
}

Process::~Process() {
  device_.processEnded();
  slots_.clear();
  currentProcess = nullptr;
}

Process& Process::current() {
  if (!currentProcess) throw std::logic_error("no host process is current: make a platform::Process first");
  return *currentProcess;
}

bool Process::hasCurrent() { return currentProcess != nullptr; }

Process::Slot& Process::slotFor(const void* key) {
  const std::lock_guard lock(mutex_);
  return slots_[key];
}

Device& device() { return Process::current().device(); }

}  // namespace hushmode::platform
