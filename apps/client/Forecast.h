// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/KnownEvents.h"
#include "devices/simulated/Record.h"
#include "host/Switches.h"
#include "platform/PropertyList.h"

#include <memory>

namespace hushmode::cli {

/// What is going to happen, if the calendars stay as they are and no network is joined or left.
struct Forecast {
  std::shared_ptr<const devices::TimeZone> zone;
  platform::Date from{0}, to{0};
  std::vector<platform::Dictionary> profiles;  ///< As they were given.
  KnownEvents known;                           ///< From the beginning of the first day.
  /// The phone before the first switch. It stands for whatever the real one will be: no profile sets such volumes; it
  /// vibrates, as a phone does whose user has not switched that off.
  host::PhoneState found;
  std::vector<host::Switch> switches;  ///< In order.
};

/// Plays the profiles (in the form of their file), and the phone's own calendars, on the library and the host on a
/// phone in memory. None of them is applied at `from`; what is due then switches on at once. `decisions` hears the
/// entries of the record, log lines included; empty for none.
Forecast forecast(std::vector<platform::Dictionary> profiles, platform::Date from, platform::Date to,
                  std::shared_ptr<const devices::TimeZone> zone, const Complaint& complaint,
                  const std::function<void(const devices::RecordEntry&)>& decisions = {});

}  // namespace hushmode::cli
