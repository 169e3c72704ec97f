// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarInfo.h"
#include "devices/shared/TimeZone.h"
#include "platform/PropertyList.h"

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// Where a phone's calendars come from.
class CalendarSource {
 public:
  virtual ~CalendarSource() = default;

  /// The calendars, ordered by identifier. Valid until the next change.
  virtual const std::vector<CalendarInfo>& calendars() const = 0;
  /// The occurrences, in any order, that start at `to` or before and end after `from`, and those without length from
  /// `from` to `to`. Cancelled ones too.
  virtual std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to,
                                                      const TimeZone& local) const = 0;
  /// The first occurrence of the entry with this key; none when no calendar has it.
  virtual std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier,
                                                           const TimeZone& local) const = 0;
  virtual std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const = 0;
  virtual std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const = 0;
  /// The occurrence that starts at `start`.
  virtual std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                         const TimeZone& local) const = 0;

  /// Called after each change of the calendars or their events, with the fields of a step for the record: "step" says
  /// what was done. One handler at a time; empty for none.
  void setChangeHandler(std::function<void(const platform::Dictionary& step)> handler) {
    changed_ = std::move(handler);
  }

 protected:
  void tellChanged(const platform::Dictionary& step) const {
    if (changed_) changed_(step);
  }

 private:
  std::function<void(const platform::Dictionary&)> changed_;
};

}  // namespace hushmode::devices
