// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/desktop/DarwinNotifications.h"
#include "platform/Foundation.h"

#include <giomm/settings.h>
#include <sigc++/connection.h>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// The feedback profile ("full", "quiet" or "silent") that serves somebody who chose `chosen` and does, or does not,
/// want vibration while the phone is silent. "quiet" without vibration is "silent". The others stay: "silent" does not
/// vibrate anyway, and "full" has no counterpart that sounds but does not vibrate; a phone that shall ring must ring.
std::string_view feedbackProfileFor(std::string_view chosen, bool silentVibrate);

/// Makes feedbackd's profile follow the phone's vibrate switches, which are kept in the domain "com.apple.springboard"
/// of our defaults and announced by system-wide notifications.
///
/// The user's own choice is kept in the domain "com.quorvel.hushmode.vibrate" while it is overruled, so that it comes
/// back even after a crash; a choice that the user makes meanwhile stands. Switches that were never set are on, as
/// feedbackd has it. Reports as "vibrate switches".
class VibrateMirror {
 public:
  /// `defaults` and `notifications` must outlive it.
  VibrateMirror(platform::UserDefaults& defaults, DarwinNotifications& notifications, Services& services);
  ~VibrateMirror();
  VibrateMirror(const VibrateMirror&) = delete;
  VibrateMirror& operator=(const VibrateMirror&) = delete;

 private:
  void setMissingSwitches();
  void follow();
  void set(std::string_view profile);
  void profileChanged();
  std::string remembered() const;
  void remember(std::string_view profile);

  platform::UserDefaults& defaults_;
  Services& services_;
  Glib::RefPtr<Gio::Settings> settings_;
  sigc::connection changes_;
  DarwinNotifications::Observation observation_;
};

}  // namespace hushmode::devices
