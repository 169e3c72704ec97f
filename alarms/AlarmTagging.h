// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HMProfile.h"
#include "platform/MobileTimer.h"

#include <cstdint>
#include <memory>

/// Clock alarms that stand for profiles: recognised by their titles, "Hush ModeMe" at the front and the profile's
/// identifier after the last "+".
namespace hushmode {

/// Whether the title marks the alarm as the system's own. The log line beside it tells of another prefix; both are
/// meant.
HUSHMODE_API bool hm_isHidden(const std::shared_ptr<platform::Alarm>& alarm);
HUSHMODE_API bool hm_createdByHM(const std::shared_ptr<platform::Alarm>& alarm);  ///< The same.
/// The number after the title's last "+", whatever stands before; 0 where there is none.
HUSHMODE_API std::int64_t hm_identifier(const std::shared_ptr<platform::Alarm>& alarm);
/// The profile kept with the alarm, else the one that its title names (looked up anew on each call), or null.
HUSHMODE_API std::shared_ptr<HMProfile> hm_profile(const std::shared_ptr<platform::Alarm>& alarm);
HUSHMODE_API void setHm_profile(const std::shared_ptr<platform::Alarm>& alarm, std::shared_ptr<HMProfile> profile);

/// Flags for those who list alarms: of an alarm manager, and of the alarm manager's class. False unless set.
HUSHMODE_API bool hm_shouldGetHiddenAlarmsToo(const std::shared_ptr<platform::Object>& manager);
HUSHMODE_API void setHm_shouldGetHiddenAlarmsToo(const std::shared_ptr<platform::Object>& manager, bool wanted);
HUSHMODE_API bool hm_shouldGetHiddenAlarmsTooClassLevel(platform::Class* managerClass);
HUSHMODE_API void setHm_shouldGetHiddenAlarmsTooClassLevel(platform::Class* managerClass, bool wanted);

}  // namespace hushmode
