// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/words/Clock.h"

#include "devices/words/Text.h"

#include <array>
#include <cstring>
#include <ctime>
#include <langinfo.h>
#include <string_view>

namespace hushmode {

namespace {

std::string printed(const char* form, int seconds) {
  std::tm time{};
  time.tm_hour = seconds / 3600;
  time.tm_min = seconds / 60 % 60;
  time.tm_sec = seconds % 60;
  std::array<char, 64> text;
  return {text.data(), std::strftime(text.data(), text.size(), form, &time)};
}

/// The items of a series follow each other.
std::string item(nl_item first, unsigned index) { return ::nl_langinfo(first + static_cast<nl_item>(index)); }

}  // namespace

bool hasTwelveHourClock() {
  // Languages with a twelve-hour clock have a form for it, and use it.
  const char* form = ::nl_langinfo(T_FMT_AMPM);
  const std::string_view usual = ::nl_langinfo(T_FMT);
  const bool usesIt = usual.find("%p") != std::string_view::npos || usual.find("%r") != std::string_view::npos;
  return *::nl_langinfo(AM_STR) != '\0' && form && *form != '\0' && usesIt;
}

std::string clockWithSeconds(int seconds) {
  return printed(hasTwelveHourClock() ? "%I:%M:%S %p" : "%H:%M:%S", seconds);
}

std::string clockWithMinutes(int seconds) { return printed(hasTwelveHourClock() ? "%I:%M %p" : "%H:%M", seconds); }

std::string dayText(unsigned weekday, unsigned day, unsigned month, int year) {
  // Translators: a day: weekday, day, name of the month, year.
  return tr("{0}, {1} {2} {3}", item(DAY_1, weekday), day, item(MON_1, month - 1), year);
}

unsigned firstWeekday() {
  // glibc has the first weekday as a number from 1, counted from a day that is a Sunday in most languages and a Monday
  // in others; it tells which by a date. (It hands over the number itself where others get a pointer.)
  const char* const answer = ::nl_langinfo(_NL_TIME_WEEK_1STDAY);
  unsigned reference = 0;
  std::memcpy(&reference, &answer, sizeof reference);
  constexpr unsigned mondayReference = 19971201;
  const auto first = static_cast<unsigned>(static_cast<unsigned char>(*::nl_langinfo(_NL_TIME_FIRST_WEEKDAY)));
  if (first == 0) return 1;
  return (first - 1 + (reference == mondayReference ? 1 : 0)) % 7;
}

std::string shortWeekday(unsigned weekday) { return item(ABDAY_1, weekday); }

std::string longWeekday(unsigned weekday) { return item(DAY_1, weekday); }

}  // namespace hushmode
