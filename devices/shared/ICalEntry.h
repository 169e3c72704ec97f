// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ICalRecurrence.h"
#include "devices/shared/KeptText.h"
#include "devices/shared/TimeZone.h"
#include "platform/EventKit.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::devices {

/// A DATE or DATE-TIME value.
struct ICalTime {
  WallTime wall = 0;               ///< Of a date: its midnight.
  const TimeZone* zone = nullptr;  ///< Null for dates and floating times: those of the phone's zone.
  bool isDate = false;

  std::int64_t day() const { return dayOf(wall); }
  /// Seconds since 1970, UTC.
  std::int64_t instant(const TimeZone& local) const {
    return isDate ? local.startOfDay(wall) : (zone != nullptr ? *zone : local).utcFromLocal(wall);
  }
  friend bool operator==(const ICalTime&, const ICalTime&) = default;
};

/// How long something lasts: up to a moment, or, when there is none, days of the wall clock and then exact seconds.
struct ICalLength {
  std::optional<ICalTime> end;
  std::int64_t days = 0, seconds = 0;
};

/// What makes an entry occur more than once.
struct ICalRepetition {
  struct Date {
    ICalTime start;
    std::optional<ICalLength> length;  ///< Of a PERIOD; else that of the entry.
  };
  std::vector<ICalRecurrence> rules;
  std::vector<Date> dates;
  std::vector<ICalTime> exceptions;
};

/// The occurrence that an entry replaces.
struct ICalReplaced {
  ICalTime start;              ///< RECURRENCE-ID.
  bool thisAndFuture = false;  ///< RANGE=THISANDFUTURE: with it, all later ones.
};

/// What a VEVENT says: a whole entry, or one that replaces occurrences of the entry with the same UID. Compact, since a
/// calendar may have 100,000 of them.
struct ICalEntry {
  KeptText uid;  ///< Never empty: the reader makes one up.
  std::size_t uidHash = 0;
  KeptText title;
  ICalTime start;
  ICalLength length;
  bool allDay = false;
  platform::EKEventStatus status = platform::EKEventStatus::None;
  std::int32_t sequence = 0;
  std::unique_ptr<ICalReplaced> replaced;      ///< Null for a whole entry.
  std::unique_ptr<ICalRepetition> repetition;  ///< Null when it occurs once.

  /// What its occurrences share, made when first asked for.
  std::shared_ptr<const platform::EKEventDetails> details;
};

/// What a file of events holds.
struct ICalFile {
  std::string calendarName;  ///< X-WR-CALNAME; empty when it has none.
  bool whole = false;        ///< Whether the text has a calendar, and its end: half-written ones are not whole.
  std::vector<ICalEntry> entries;
  std::vector<std::shared_ptr<const TimeZone>> zones;  ///< Keeps the zones of the entries' times.
};

}  // namespace hushmode::devices
