// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "model/DayHelpers.h"

#include "platform/Process.h"

namespace hushmode {

using platform::Date;

Date hm_beginningOfDay(Date date) {
  const platform::Calendar& calendar = platform::device().foundation().currentCalendar();
  platform::DateComponents day = calendar.componentsOfDate(date);
  day.hour = day.minute = day.second = std::nullopt;
  return calendar.dateFromComponents(day);
}

Date hm_endOfDay(Date date) {
  const platform::Calendar& calendar = platform::device().foundation().currentCalendar();
  return calendar.dateByAddingDays(hm_beginningOfDay(date), 1).addingSeconds(-1.0);
}

}  // namespace hushmode
