// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Process.h"

#include <string_view>

namespace hushmode {

/// Keys of the saved device state in the standard user defaults. They are global, not per profile: the first apply
/// saves, and any revert restores and removes the volumes. The vibrate keys are never removed.
namespace saved {
inline constexpr std::string_view ringtone = "com.quorvel.hushmode-ringtone";
inline constexpr std::string_view volume = "com.quorvel.hushmode-volume";
inline constexpr std::string_view playBackVolume = "com.quorvel.hushmode-playBackVolume";
inline constexpr std::string_view ringVibrate = "com.quorvel.hushmode-ring-vibrate";
inline constexpr std::string_view silentVibrate = "com.quorvel.hushmode-silent-vibrate";
}  // namespace saved

inline platform::UserDefaults& userDefaults() { return platform::device().foundation().standardUserDefaults(); }

inline platform::RunLoop& mainRunLoop() { return platform::device().coreFoundation().mainRunLoop(); }

}  // namespace hushmode
