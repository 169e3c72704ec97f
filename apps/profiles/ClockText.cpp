// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ClockText.h"

#include "apps/words/Clock.h"

#include <ctime>
#include <string>

namespace hushmode::cli {

namespace {

std::string printed(const char* form, int minute) {
  std::tm time{};
  time.tm_hour = minute / 60 % 24;
  time.tm_min = minute % 60;
  char text[32];
  return {text, std::strftime(text, sizeof text, form, &time)};
}

}  // namespace

std::string clockText(int minute) {
  if (hasTwelveHourClock()) return printed("%I:%M %p", minute);
  return minute == 1440 ? "24:00" : printed("%H:%M", minute);
}

std::string hourText(int hour) {
  if (!hasTwelveHourClock()) return clockText(hour * 60);
  const std::string text = printed("%I %p", hour * 60);
  return text.starts_with('0') ? text.substr(1) : text;
}

}  // namespace hushmode::cli
