// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <giomm/init.h>
#include <glibmm/main.h>
#include <sigc++/connection.h>
#include <stdexcept>

namespace hushmode::devices {

/// Before anything else of giomm.
inline const bool giommIsReady = (Gio::init(), true);

/// Runs the main loop until the condition holds; throws where that takes longer than anything may.
inline void runMainLoopUntil(const std::function<bool()>& condition,
                             std::chrono::seconds limit = std::chrono::seconds(30)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  // Ends the wait of a loop in which nothing happens.
  sigc::connection tick = Glib::signal_timeout().connect([] { return true; }, 500);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      tick.disconnect();
      throw std::runtime_error("what was waited for did not happen within " + std::to_string(limit.count()) +
                               " seconds");
    }
    Glib::MainContext::get_default()->iteration(true);
  }
  tick.disconnect();
}

/// Runs the main loop for that long, to see that something does not happen.
inline void runMainLoopFor(std::chrono::milliseconds time) {
  bool over = false;
  Glib::signal_timeout().connect_once([&] { over = true; }, static_cast<unsigned>(time.count()));
  while (!over) Glib::MainContext::get_default()->iteration(true);
}

}  // namespace hushmode::devices
