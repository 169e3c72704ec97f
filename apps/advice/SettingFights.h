// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/advice/Finding.h"
#include "apps/advice/ProfileLint.h"

#include <vector>

namespace hushmode::cli {

/// Two profiles that are on at the same time and ask for different volumes or vibration: which of them holds depends on
/// which went on later. Do Not Disturb and the icon are on while any profile asks for them, so they cannot fight.
/// Each pair is found once, with the first time. `rules` are those of the subject's profiles.
void lintFights(const LintSubject& subject, const std::vector<ProfileRules>& rules, const devices::TimeZone& zone,
                std::vector<Finding>& findings);

}  // namespace hushmode::cli
