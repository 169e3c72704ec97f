// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/sound/Playing.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// Plays sounds of the desktop's sound theme through libcanberra, as streams of the event role.
///
/// libcanberra waits for the sound server in its calls, and calls back on threads of its own: a thread per tone keeps
/// both away from the main loop.
class ThemeSounds {
 public:
  /// `started` hears from the main loop how each sound went: empty, or what went wrong, for people.
  using Started = std::function<void(const std::string& error)>;

  explicit ThemeSounds(Started started);
  /// Stops what plays; waits for that a little, and not for a sound server that hangs.
  ~ThemeSounds();
  ThemeSounds(const ThemeSounds&) = delete;
  ThemeSounds& operator=(const ThemeSounds&) = delete;

  /// Plays a sound of the Sound Naming Specification. Null when it cannot be tried, which is told inside the call.
  std::unique_ptr<Playing> play(const std::string& sound, Repeat repeat);

 private:
  class Player;
  class Handle;

  std::shared_ptr<Started> started_;
  std::vector<std::weak_ptr<Player>> players_;  ///< A player lives as long as its thread, and its handle.
};

}  // namespace hushmode::devices
