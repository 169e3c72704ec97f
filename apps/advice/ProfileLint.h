// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/advice/Finding.h"
#include "apps/client/KnownEvents.h"
#include "apps/client/Places.h"
#include "apps/profiles/ProfileRules.h"
#include "devices/shared/TimeZone.h"
#include "host/Switches.h"
#include "platform/PropertyList.h"

#include <optional>
#include <vector>

/// What is wrong with profiles that nobody would see before a meeting is loud: over values alone.
namespace hushmode::cli {

/// What the profiles are held against.
struct LintSubject {
  std::vector<platform::Dictionary> profiles;  ///< In the form of their file.
  KnownEvents known;                           ///< Of the time that the switches are forecast for.
  std::vector<host::Switch> switches;          ///< That are to come, in order.
  /// None: nobody knows.
  std::optional<std::vector<KnownNetwork>> networks;
  /// Whether `known` has all calendars of the phone; else only those of the calendar folder.
  bool accountsKnown = false;
};

/// What was found, by profile in the order of the file; a disabled profile is noted and not looked at further.
/// `zone` is for the moments that are told.
std::vector<Finding> lint(const LintSubject& subject, const devices::TimeZone& zone);

}  // namespace hushmode::cli
