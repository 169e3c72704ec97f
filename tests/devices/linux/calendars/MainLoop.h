// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/MainLoopWait.h"

#include <chrono>
#include <functional>
#include <giomm/init.h>
#include <glibmm/main.h>
#include <stdexcept>
#include <string>

namespace hushmode::devices {

/// Before anything else of giomm.
inline const bool giommIsReady = (Gio::init(), true);

/// Runs the main loop until the condition holds; throws where that takes longer than anything may.
inline void runMainLoopUntil(const std::function<bool()>& condition,
                             std::chrono::seconds limit = std::chrono::seconds(30)) {
  if (!runUntil(condition, limit)) {
    throw std::runtime_error("what was waited for did not happen within " + std::to_string(limit.count()) + " seconds");
  }
}

/// Runs the main loop for that long, to see that something does not happen.
inline void runMainLoopFor(std::chrono::milliseconds time) {
  bool over = false;
  Glib::signal_timeout().connect_once([&] { over = true; }, static_cast<unsigned>(time.count()));
  while (!over) Glib::MainContext::get_default()->iteration(true);
}

}  // namespace hushmode::devices
