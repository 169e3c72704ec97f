// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The profile's daily window.

#include "model/DayHelpers.h"
#include "model/HMProfile.h"
#include "model/TimeOfDay.h"
#include "util/Now.h"
#include "util/Numbers.h"

namespace hushmode {

using platform::Date;

Date HMProfile::dateFromTime(const std::optional<std::string>& time) const {
  if (!time) return todayModifiedWithHours("", "", std::nullopt);
  const TimeOfDayText text = splitTimeOfDay(*time);
  return todayModifiedWithHours(text.hours, text.minutes, text.period);
}

Date HMProfile::todayModifiedWithHours(const std::string& hours, const std::string& minutes,
                                       const std::optional<std::string>& andPeriod) const {
  // Clock times are Gregorian whatever calendar the user prefers; only the bounds of days follow the user's.
  platform::Foundation& foundation = platform::device().foundation();
  const platform::Calendar& calendar = foundation.gregorianCalendar();
  platform::DateComponents today = calendar.componentsOfDate(foundation.now());
  today.hour = hourOfDay(hours, andPeriod);
  today.minute = leadingInteger(minutes);
  today.second = std::nullopt;
  return calendar.dateFromComponents(today);
}

Date HMProfile::startDate() {
  if (isAllDay()) return hm_beginningOfDay(now());
  if (!startDate_) startDate_ = dateFromTime(startTime());
  return *startDate_;
}

Date HMProfile::endDate() {
  if (isAllDay()) return hm_endOfDay(now());
  if (!endDate_) endDate_ = dateFromTime(endTime());
  return *endDate_;
}

Date HMProfile::createdDate() {
  if (!createdDate_) createdDate_ = Date(static_cast<double>(identifier()));
  return *createdDate_;
}

bool HMProfile::isDateBetweenProfileStartAndEndDate(Date date) {
  return isAllDay() || hm_isBetweenDate(date, startDate(), endDate());
}

std::array<Date, 2> HMProfile::gimmeIntersectionDates(Date eventStart, Date eventEnd) {
  const Date start = startDate(), end = endDate();
  return {start - eventStart > 0 ? start : eventStart, end - eventEnd <= 0 ? end : eventEnd};
}

}  // namespace hushmode
