// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/sound/FeedbackDaemon.h"
#include "devices/linux/sound/ThemeSounds.h"
#include "platform/AudioToolbox.h"
#include "platform/ToneLibrary.h"

#include <giomm/dbusconnection.h>
#include <memory>
#include <string>

namespace hushmode::devices {

/// Tones and vibration of a Linux phone: feedbackd's where it runs; else tones are sounds of the desktop's theme, and
/// vibration rests. Tones sound at the volume of the event role (the ringtone volume). docs/tones.md says which tones
/// there are. Services reported: "tones", "vibration".
///
/// For the main loop's thread.
class Tones final : public platform::AudioToolbox {
 public:
  /// `sessionBus` may be null. `services` must outlive it.
  Tones(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services);
  ~Tones() override;

  /// The class that is found as "TLAlert". A tone's type and its vibration make no difference here. An alert that is
  /// let go of stops.
  platform::TLAlert::Class& alertClass();

  /// Vibrates as feedbackd's theme does for a message when it must not sound: `soundID` and `pattern` make no
  /// difference, since feedbackd takes no pattern.
  void AudioServicesPlaySystemSoundWithVibration(std::uint32_t soundID, const platform::Dictionary& pattern) override;

 private:
  class Alert;
  class AlertClass;

  std::unique_ptr<Playing> play(const platform::TLAlert::Identifier& tone, Repeat repeat);
  void report(const ServiceState& tones, const ServiceState& vibration);

  Services& services_;
  FeedbackDaemon feedback_;
  ThemeSounds sounds_;
  std::unique_ptr<Playing> playedOnce_, vibration_;
  std::unique_ptr<AlertClass> alertClass_;
};

}  // namespace hushmode::devices
