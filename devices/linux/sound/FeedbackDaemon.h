// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"
#include "devices/linux/sound/Playing.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// feedbackd: the phone's own giver of feedback, by sound, vibration and light, as its theme and the user's feedback
/// profile have it.
class FeedbackDaemon {
 public:
  struct Handlers {
    std::function<void()> works;  ///< It is there; also each time that it did as it was asked.
    std::function<void()> went;
    std::function<void(const std::string& why)> failed;  ///< It did not do as it was asked; why, for people.
  };

  /// A null connection is a phone without it. What there is comes from the main loop; `went` also inside this, where
  /// there is no connection.
  FeedbackDaemon(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Handlers handlers);
  /// Stops what was given.
  ~FeedbackDaemon();
  FeedbackDaemon(const FeedbackDaemon&) = delete;
  FeedbackDaemon& operator=(const FeedbackDaemon&) = delete;

  bool isThere() const { return service_.client() != nullptr; }

  /// Gives the feedback of an event of the Event Naming Specification. `loudest` is the loudest feedback profile
  /// ("full", "quiet": without sounds) to take it from; the user's stands above it. Null when the daemon is away.
  std::unique_ptr<Playing> give(const std::string& event, const std::string& loudest, Repeat repeat);

 private:
  class Feedback;
  class Handle;

  Handlers handlers_;
  RemoteService service_;
  std::vector<std::weak_ptr<Feedback>> given_;  ///< Some may be over.
};

}  // namespace hushmode::devices
