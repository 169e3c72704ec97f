// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/DateFormatter.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace hushmode::devices {

namespace {

using namespace std::chrono;

struct LocalTime {
  year_month_day day;
  weekday dayOfWeek;
  hh_mm_ss<seconds> clock;
  int milliseconds;
};

LocalTime localTime(platform::Date date, const TimeZone& zone) {
  const double whole = std::floor(date.secondsSince1970());
  const sys_seconds local{seconds(zone.localFromUtc(static_cast<std::int64_t>(whole)))};
  const auto midnight = floor<days>(local);
  return {year_month_day(midnight), weekday(midnight), hh_mm_ss<seconds>(local - midnight),
          static_cast<int>((date.secondsSince1970() - whole) * 1000)};
}

std::string padded(long number, std::size_t digits) {
  std::string text = std::to_string(number);
  return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

/// A name in full from four letters on, else its first three characters.
std::string named(std::string_view name, std::size_t letters) {
  return std::string(letters > 3 ? name : name.substr(0, 3));
}

std::string field(char letter, std::size_t count, const LocalTime& time) {
  static constexpr std::array months{"January", "February", "March",     "April",   "May",      "June",
                                     "July",    "August",   "September", "October", "November", "December"};
  static constexpr std::array weekdays{"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
  const auto month = static_cast<unsigned>(time.day.month());
  const auto hour = time.clock.hours().count();
  switch (letter) {
    case 'y': {
      const int year = static_cast<int>(time.day.year());
      return count == 2 ? padded(year % 100, 2) : padded(year, count);
    }
    case 'M':
      return count > 2 ? named(months[month - 1], count) : padded(month, count);
    case 'd':
      return padded(static_cast<unsigned>(time.day.day()), count);
    case 'E':
      return named(weekdays[time.dayOfWeek.c_encoding()], count);
    case 'H':
      return padded(hour, count);
    case 'h':
      return padded(hour % 12 == 0 ? 12 : hour % 12, count);
    case 'm':
      return padded(time.clock.minutes().count(), count);
    case 's':
      return padded(time.clock.seconds().count(), count);
    case 'S':
      return padded(time.milliseconds, 3).substr(0, count);
    case 'a':
      return hour < 12 ? "AM" : "PM";
    default:
      return std::string(count, letter);
  }
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

/// Appends the quoted text whose quote is at `at`, and answers where the pattern goes on. Two quotes are one quote,
/// inside a quoted text and outside; a text that is not closed goes to the end.
std::size_t quotedFrom(const std::string& pattern, std::size_t at, std::string& text) {
  if (pattern.compare(at, 2, "''") == 0) {
    text += '\'';
    return at + 2;
  }
  for (++at; at < pattern.size(); ++at) {
    if (pattern[at] != '\'') {
      text += pattern[at];
    } else if (pattern.compare(at, 2, "''") == 0) {
      text += pattern[at++];
    } else {
      return at + 1;
    }
  }
  return at;
}

}  // namespace

std::string DateFormatter::stringFromDate(platform::Date date) const {
  if (!pattern_) return {};
  const LocalTime time = localTime(date, *zone_());
  const std::string& pattern = *pattern_;
  std::string text;
  for (std::size_t at = 0; at < pattern.size();) {
    if (pattern[at] == '\'') {
      at = quotedFrom(pattern, at, text);
    } else if (isLetter(pattern[at])) {
      const std::size_t end = std::min(pattern.find_first_not_of(pattern[at], at), pattern.size());
      text += field(pattern[at], end - at, time);
      at = end;
    } else {
      text += pattern[at++];
    }
  }
  return text;
}

}  // namespace hushmode::devices
