// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "model/TimeOfDay.h"

#include "util/Numbers.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace hushmode {

TimeOfDayText splitTimeOfDay(std::string_view time) {
  const std::size_t colon = time.find(':');
  if (colon == std::string_view::npos) {
    throw std::out_of_range("time of day \"" + std::string(time) +
                            "\" has no \":\"; expected a text such as \"8:00 AM\"");
  }
  std::string_view rest = time.substr(colon + 1);
  rest = rest.substr(0, rest.find(':'));
  TimeOfDayText text{std::string(time.substr(0, colon)), std::string(rest), std::nullopt};
  if (const std::size_t blank = rest.find(' '); blank != std::string_view::npos) {
    text.minutes = rest.substr(0, blank);
    const std::string_view period = rest.substr(blank + 1);
    text.period = period.substr(0, period.find(' '));
  }
  return text;
}

std::int64_t hourOfDay(std::string_view hours, const std::optional<std::string>& period) {
  if (!period) return 0;
  std::string upper = *period;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
  const std::int64_t hour = leadingInteger(hours);
  if (upper == "AM") return hour == 12 ? 0 : hour;
  if (upper == "PM") return hour == 12 ? 12 : std::min(hour, std::numeric_limits<std::int64_t>::max() - 12) + 12;
  return 0;
}

}  // namespace hushmode
