#pragma once

#include <chrono>
#include <functional>
#include <glibmm/main.h>

namespace hushmode {

/// Runs the default main loop until the condition holds; false when that takes longer than any working machine needs.
inline bool runUntil(const std::function<bool()>& condition,
                     std::chrono::milliseconds limit = std::chrono::seconds(30)) {
  bool isOver = false;
  sigc::connection timer = Glib::signal_timeout().connect(
      [&] {
        isOver = true;
        return false;
      },
      static_cast<unsigned>(limit.count()));
  while (!condition() && !isOver) Glib::MainContext::get_default()->iteration(true);
  timer.disconnect();
  return condition();
}

}  // namespace hushmode
