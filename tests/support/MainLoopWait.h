// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <glibmm/main.h>

namespace hushmode {

/// Runs the default main loop until the condition holds, which may be about another process too; false when that takes
/// longer than any working machine needs.
inline bool runUntil(const std::function<bool()>& condition,
                     std::chrono::milliseconds limit = std::chrono::seconds(30)) {
  bool isLate = false;
  sigc::connection deadline =
      Glib::signal_timeout().connect([&] { return !(isLate = true); }, static_cast<unsigned>(limit.count()));
  // Without it the loop would not come round for what happens elsewhere.
  sigc::connection tick = Glib::signal_timeout().connect([] { return true; }, 5);
  bool holds = condition();
  while (!holds && !isLate) {
    Glib::MainContext::get_default()->iteration(true);
    holds = condition();
  }
  deadline.disconnect();
  tick.disconnect();
  return holds;
}

}  // namespace hushmode
