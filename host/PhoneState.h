// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Message.h"

#include <optional>
#include <string>

namespace hushmode::host {

/// What profiles change on a phone. A value is absent while it cannot be read.
struct PhoneState {
  std::optional<float> ringtone, media;            ///< Volumes, 0.0 to 1.0.
  std::optional<bool> ringVibrate, silentVibrate;  ///< The two vibrate switches.
  std::optional<bool> doNotDisturb;
  std::optional<bool> icon;  ///< Whether our icon is shown.
  bool operator==(const PhoneState&) const = default;
};

/// Whether two volumes are the same to people and to sound servers, which round: half a percent is no difference.
bool sameVolume(float a, float b);

/// What the current process's device shows at this moment; all but the icon, which has no reader.
PhoneState readPhoneState();

// Each sets one thing on the phone and nothing else. What is not there is not set.
void setRingtone(float volume);
void setMedia(float volume);
/// Writes both switches into the home screen's domain and tells the system.
void setVibrateSwitches(bool ring, bool silent);

/// What differs: "ringtone 80% to 6%, media 50% to 0%"; "nothing changed" when nothing does. What is absent on either
/// side is left out.
Message difference(const PhoneState& before, const PhoneState& after);
/// The same in English.
std::string differenceText(const PhoneState& before, const PhoneState& after);

}  // namespace hushmode::host
