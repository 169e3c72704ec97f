// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/Date.h"

#include <memory>

namespace hushmode::cli {

/// The machine's clock.
platform::Date wallClock();
/// The user's time zone. Throws simulation::InputError when TZ names none that the system knows.
std::shared_ptr<const devices::TimeZone> userZone();

}  // namespace hushmode::cli
