// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HMProfile.h"
#include "platform/EventKit.h"

#include <memory>

/// What an event carries beyond the calendar's data: the profile that it belongs to, and whether that profile has been
/// applied for it. Both belong to the event object and not to the calendar entry: an event fetched anew carries
/// neither.
///
/// A null event answers none and no, and nothing else happens to it. Main thread.
namespace hushmode {

/// The bound profile, kept alive by the event; null when none is bound.
HUSHMODE_API std::shared_ptr<HMProfile> hm_profile(const std::shared_ptr<platform::EKEvent>& event);
/// Null removes the binding. Does not touch the applied flag.
HUSHMODE_API void setHm_profile(const std::shared_ptr<platform::EKEvent>& event, std::shared_ptr<HMProfile> profile);

HUSHMODE_API bool hm_isProfileApplied(const std::shared_ptr<platform::EKEvent>& event);
HUSHMODE_API void setHm_isProfileApplied(const std::shared_ptr<platform::EKEvent>& event, bool applied);

/// Applies the bound profile if it is enabled and has not been applied through this event since its last revert.
HUSHMODE_API void applyProfile(const std::shared_ptr<platform::EKEvent>& event);
/// Clears the flag and reverts the bound profile: unlike the apply, always.
HUSHMODE_API void revertProfile(const std::shared_ptr<platform::EKEvent>& event, bool silent);
HUSHMODE_API void revertProfile(const std::shared_ptr<platform::EKEvent>& event);  ///< Not silent.

/// Whether the event goes on now, both bounds included; a cancelled one never does.
HUSHMODE_API bool hm_isOccuring(const std::shared_ptr<platform::EKEvent>& event);

}  // namespace hushmode
