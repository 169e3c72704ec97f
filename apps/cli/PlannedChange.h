// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Switches.h"

#include <string>

namespace hushmode::cli {

/// What a switch to come will change, in words: "ringtone 5%, do not disturb on". `found` is the phone before the first
/// switch. What goes back to it is told "as before": how the real phone will be then, nobody can know.
std::string plannedChange(const host::Switch& each, const host::PhoneState& found);

}  // namespace hushmode::cli
