// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "platform/Export.h"

namespace hushmode {

/// Local midnight at the start of the date's day; where that midnight does not exist, the day's first instant.
HUSHMODE_API platform::Date hm_beginningOfDay(platform::Date date);

/// One second before the next local midnight: 23:59:59.000 on an ordinary day, so the day's last second lies outside. A
/// day lengthened or shortened by a daylight-saving change ends one second before the next midnight all the same.
HUSHMODE_API platform::Date hm_endOfDay(platform::Date date);

/// Whether `date` lies between the two dates, both bounds included. Always false when `first` is later than `second`.
constexpr bool hm_isBetweenDate(platform::Date date, platform::Date first, platform::Date second) {
  return date - first >= 0 && date - second <= 0;
}

}  // namespace hushmode
