// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/UserTime.h"

#include "apps/simulation/Scenario.h"

#include <chrono>
#include <optional>

namespace hushmode::cli {

using platform::Date;

Date wallClock() {
  using namespace std::chrono;
  return Date(duration<double>(system_clock::now().time_since_epoch()).count());
}

std::shared_ptr<const devices::TimeZone> userZone() { return simulation::zoneNamed(std::nullopt); }

}  // namespace hushmode::cli
