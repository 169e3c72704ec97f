// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/Places.h"
#include "devices/shared/TimeZone.h"
#include "platform/Date.h"
#include "platform/EventKit.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// Takes a line for people about something that could not be used.
using Complaint = std::function<void(const std::string& line)>;

/// One occurrence of a calendar entry.
struct KnownEvent {
  platform::Date start{0}, end{0};  ///< `start` <= `end`; of all-day ones the local midnights.
  std::string calendar;             ///< Its identifier, as in KnownCalendar.
  std::string uid;
  std::optional<std::string> title;
  platform::EKEventStatus status = platform::EKEventStatus::None;
  bool allDay = false;
};

struct KnownEvents {
  std::vector<KnownCalendar> calendars;  ///< All of them, ordered by identifier.
  std::vector<KnownEvent> events;        ///< Ordered by start, end, calendar, uid. Cancelled ones too.
};

/// What the phone's calendars hold from `from` to `to`, repeats included: from the daemon while it runs, since it alone
/// sees the accounts; else from the calendar folder.
KnownEvents knownEvents(platform::Date from, platform::Date to, const devices::TimeZone& zone,
                        const Complaint& complaint);

/// The same from the calendar folder alone, through what is remembered of its files. `complaint` hears of each file
/// that cannot be used.
KnownEvents eventsInFolder(platform::Date from, platform::Date to, const devices::TimeZone& zone,
                           const Complaint& complaint);

}  // namespace hushmode::cli
