// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Export.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hushmode {

/// The pieces of a time of day such as "8:00 AM", as texts.
struct TimeOfDayText {
  std::string hours, minutes;
  std::optional<std::string> period;  ///< "AM" or "PM" in any letter case; whatever else stands there; or absent.
};

/// Splits a time of day: the hours stand before the first ":", and the rest, up to another ":", is split at single
/// blanks into the minutes and the period; further pieces are ignored, and so is a third part. Nothing is checked.
/// Throws std::out_of_range when there is no ":".
HUSHMODE_API TimeOfDayText splitTimeOfDay(std::string_view time);

/// The hour of the day, 0 to 23 for sensible texts. Without "AM" or "PM" it is 0 whatever the hours say: "14:30" is
/// half past midnight. That is meant: the stored form has always had a period.
HUSHMODE_API std::int64_t hourOfDay(std::string_view hours, const std::optional<std::string>& period);

}  // namespace hushmode
