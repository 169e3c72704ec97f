// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/EventKit.h"

#include <cstdint>
#include <optional>
#include <vector>

/// Whether a profile ought to be on at a moment, as its user understands it: the decision alone, over values.
namespace hushmode::host {

/// A profile's conditions.
struct Conditions {
  bool enabled = false;
  bool allDay = false;            ///< No daily window.
  platform::Date windowStart{0};  ///< Of today; not looked at when all-day.
  platform::Date windowEnd{0};    ///< A window that does not end after its start is never open.
  bool onOwnNetwork = false;      ///< Joined to one of the profile's networks.
  std::int64_t wantedStatus = 0;  ///< Of events, 1 to 3; 0: any.
  bool allDayEventsIgnored = false;
};

/// An event of the profile's calendars.
struct Happening {
  platform::Date start, end;
  platform::EKEventStatus status = platform::EKEventStatus::None;
  bool allDay = false;
};

struct Expectation {
  bool on = false;
  bool byNetwork = false;            ///< On, for its network.
  std::optional<std::size_t> event;  ///< On, for this event (a place in the list): of those going on the last to end.
  bool operator==(const Expectation&) const = default;
};

/// An enabled profile whose window is open is on while it is on its network or one of its events goes on. The start is
/// included, the end is not. Cancelled events, those of another status than the wanted, and ignored all-day ones do not
/// count.
Expectation expectation(const Conditions& conditions, const std::vector<Happening>& events, platform::Date now);

/// The first moment after `now` at which the answer changes by itself; none when nothing known changes it.
std::optional<platform::Date> nextChange(const Conditions& conditions, const std::vector<Happening>& events,
                                         platform::Date now);

/// When the profile goes off again if nothing else happens: the end of the chain of events that it is on for, or the
/// window's. None when it is off, or on without a known end.
std::optional<platform::Date> onUntil(const Conditions& conditions, const std::vector<Happening>& events,
                                      platform::Date now);

}  // namespace hushmode::host
