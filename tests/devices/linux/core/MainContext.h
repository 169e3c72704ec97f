// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <glibmm/main.h>
#include <stdexcept>

namespace hushmode::devices {

/// Runs the default main context until the condition holds; throws where that takes longer than anything may.
inline void runMainContextUntil(const std::function<bool()>& condition) {
  using Clock = std::chrono::steady_clock;
  const auto limit = Clock::now() + std::chrono::seconds(30);
  // Ends the wait of a context in which nothing happens.
  sigc::connection tick = Glib::signal_timeout().connect([] { return true; }, 1000);
  while (!condition()) {
    if (Clock::now() > limit) throw std::runtime_error("the condition did not hold within 30 seconds");
    Glib::MainContext::get_default()->iteration(true);
  }
  tick.disconnect();
}

}  // namespace hushmode::devices
