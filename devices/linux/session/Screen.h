// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/session/Logind.h"
#include "devices/linux/session/MutterDisplay.h"
#include "devices/linux/session/ScreenSaver.h"
#include "platform/SpringBoard.h"

#include <memory>

namespace hushmode::devices {

/// The screen of a Linux phone: its lock (class "SpringBoard") and its light (class "SBBacklightController"). As the
/// service "screen".
///
/// Locked is what logind says of the session; where it says nothing, a screen saver that is active counts.
///
/// The light is Mutter's where there is Mutter, else it is lit through the screen saver; with neither, nothing happens.
/// Only Mutter's can be put out again, and only as it was found: where it was lit here, still is, and the phone was not
/// unlocked meanwhile.
class Screen {
 public:
  /// `logind` must outlive it.
  Screen(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, const Logind& logind, Services& services,
         std::chrono::milliseconds limit = BusClient::answerLimit);
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  platform::SpringBoard::Class& springBoardClass();
  platform::SBBacklightController::Class& backlightClass();

 private:
  class Application;
  class ApplicationClass;
  class Backlight;
  class BacklightClass;

  bool isLocked() const;
  bool isOn() const;
  void light();
  void putOut();
  bool hasMutter() const { return mutter_->power().has_value(); }
  void report();

  const Logind& logind_;
  Services& services_;
  std::unique_ptr<ApplicationClass> applicationClass_;
  std::unique_ptr<BacklightClass> backlightClass_;
  std::optional<int> powerBefore_;  ///< Of a screen that was lit here and has not changed since.
  bool wasLocked_ = false;          ///< When it was lit.
  bool isLitBySaver_ = false;
  std::unique_ptr<MutterDisplay> mutter_;
  std::unique_ptr<ScreenSaver> saver_;
};

}  // namespace hushmode::devices
