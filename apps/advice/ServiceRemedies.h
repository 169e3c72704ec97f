// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/advice/Finding.h"
#include "apps/profiles/ProfileRules.h"
#include "platform/PropertyList.h"

#include <string>
#include <vector>

namespace hushmode::cli {

/// What stands behind one of the phone's operations, as the daemon tells it.
struct ServiceStatus {
  std::string name;
  bool works = false;
  std::string detail;  ///< For people: which service it is, or what is missing.
};

/// What the enabled profiles ask of the phone.
struct ServiceNeeds {
  bool tones = false, light = false, doNotDisturb = false, networks = false;
  bool accounts = false;  ///< Calendars beyond the calendar folder.
};

ServiceNeeds needsOf(const std::vector<platform::Dictionary>& profiles);

/// What to do about a service that rests or is there only in part: a problem where without it nothing falls silent, a
/// warning where a profile lacks it, else a note. A service that works is a note without a remedy.
Finding serviceFinding(const ServiceStatus& service, const ServiceNeeds& needs);

}  // namespace hushmode::cli
