// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Process.h"

namespace hushmode {

/// The current instant, by the device's clock.
inline platform::Date now() { return platform::device().foundation().now(); }

}  // namespace hushmode
