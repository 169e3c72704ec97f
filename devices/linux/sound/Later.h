// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <glibmm/main.h>
#include <sigc++/connection.h>
#include <utility>

namespace hushmode::devices {

/// Calls `work` once from the default main loop after `milliseconds` (0: soon), unless the connection is ended before.
inline sigc::connection callLater(unsigned milliseconds, std::function<void()> work) {
  const auto once = [work = std::move(work)] {
    work();
    return false;
  };
  return Glib::signal_timeout().connect(once, milliseconds);
}

}  // namespace hushmode::devices
