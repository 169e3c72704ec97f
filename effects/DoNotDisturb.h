// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Export.h"

#include <optional>

namespace hushmode {

/// Whether the phone's Do Not Disturb is on, whoever switched it on; none where no switch is found. Changes nothing.
HUSHMODE_API std::optional<bool> isDoNotDisturbOn();

}  // namespace hushmode
