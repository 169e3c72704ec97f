// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ClockText.h"

#include "apps/words/Clock.h"

#include <ctime>
#include <string>

namespace hushmode::cli {

namespace {

/// "08 AM".
std::string twelveHourText(int hour) {
  std::tm time{};
  time.tm_hour = hour % 24;
  char text[32];
  return {text, std::strftime(text, sizeof text, "%I %p", &time)};
}

}  // namespace

std::string clockText(int minute) {
  if (minute == 1440 && !hasTwelveHourClock()) return "24:00";
  return clockWithMinutes(minute % 1440 * 60);
}

std::string hourText(int hour) {
  if (!hasTwelveHourClock()) return clockText(hour * 60);
  const std::string text = twelveHourText(hour);
  return text.starts_with('0') ? text.substr(1) : text;
}

}  // namespace hushmode::cli
