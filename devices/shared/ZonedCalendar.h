// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/Foundation.h"

#include <memory>

namespace hushmode::devices {

/// The Gregorian calendar in a time zone that can be changed while the device runs. For one thread.
///
/// Good for the years -30,000 to 30,000. Dates and components beyond are taken for the nearest in them, a date that is
/// no number for 1970; nothing overflows.
class ZonedCalendar : public platform::Calendar {
 public:
  /// `zone` must not be null.
  explicit ZonedCalendar(std::shared_ptr<const TimeZone> zone);

  const std::shared_ptr<const TimeZone>& timeZone() const { return zone_; }
  /// Holds from the next call on. `zone` must not be null.
  void setTimeZone(std::shared_ptr<const TimeZone> zone);

  platform::DateComponents componentsOfDate(platform::Date date) const override;
  /// A month out of range carries over into the year, a day into the month, as clock times do.
  platform::Date dateFromComponents(const platform::DateComponents& components) const override;
  /// Fractions of a second are kept. From the beginning of a day it leads to the beginning of a day, also where one of
  /// them is not at midnight.
  platform::Date dateByAddingDays(platform::Date date, int days) const override;

 private:
  std::shared_ptr<const TimeZone> zone_;
};

}  // namespace hushmode::devices
