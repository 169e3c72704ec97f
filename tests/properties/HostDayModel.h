// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/MemoryCalendars.h"
#include "devices/simulated/SimulatedPhone.h"
#include "host/PhoneState.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

/// What a phone's user did and what their calendars say, told in as few words as possible and without the host's own
/// code, so that both can be held against each other.
namespace hushmode::properties {

/// What the user wants of the phone while no profile is applied. Several values where nobody could say: a ringtone
/// volume that the user may be asked about, or a switch that was set as the host was dead.
struct UsersWishes {
  explicit UsersWishes(const host::PhoneState& first);

  template <class T>
  static void set(std::set<T>& wish, T value, bool sure) {
    if (sure) wish.clear();
    wish.insert(value);
  }
  /// What is not as wanted, in words; empty when all is.
  std::string objection(const host::PhoneState& state) const;

  std::set<float> ringtone, media;
  std::set<bool> ringVibrate, silentVibrate, doNotDisturb;
};

/// Whether a profile ought to be applied, by its dictionary.
enum class Ought { On, Off, Unclear };

/// At this moment, unless something has happened a few seconds before or after.
Ought oughtToBe(const platform::Dictionary& profile, const std::vector<devices::SimulatedEvent>& events,
                devices::SimulatedPhone& phone, const devices::TimeZone& zone);

}  // namespace hushmode::properties
