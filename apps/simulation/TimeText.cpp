// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/TimeText.h"

#include "apps/words/Clock.h"
#include "devices/words/Text.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace hushmode::simulation {

using devices::TimeZone;
using platform::Date;

namespace {

using namespace std::chrono;

/// Takes exactly `count` digits off the front.
std::optional<int> takeDigits(std::string_view& text, std::size_t count) {
  int number = 0;
  if (text.size() < count) return std::nullopt;
  for (std::size_t i = 0; i < count; ++i) {
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    number = number * 10 + (text[i] - '0');
  }
  text.remove_prefix(count);
  return number;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<year_month_day> takeDay(std::string_view& text) {
  const auto y = takeDigits(text, 4);
  if (!y || !take(text, '-')) return std::nullopt;
  const auto m = takeDigits(text, 2);
  if (!m || !take(text, '-')) return std::nullopt;
  const auto d = takeDigits(text, 2);
  if (!d) return std::nullopt;
  const year_month_day ymd{year(*y), month(static_cast<unsigned>(*m)), day(static_cast<unsigned>(*d))};
  return ymd.ok() ? std::optional(ymd) : std::nullopt;
}

struct Clock {
  std::int64_t seconds;
  double fraction;
};

std::optional<Clock> takeClock(std::string_view& text) {
  const auto h = takeDigits(text, 2);
  if (!h || *h > 23 || !take(text, ':')) return std::nullopt;
  const auto m = takeDigits(text, 2);
  if (!m || *m > 59) return std::nullopt;
  Clock clock{*h * 3600 + *m * 60, 0};
  if (!take(text, ':')) return clock;
  const auto s = takeDigits(text, 2);
  if (!s || *s > 59) return std::nullopt;
  clock.seconds += *s;
  if (!text.empty() && text.front() == '.') {
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), clock.fraction, std::chars_format::fixed);
    if (result.ec != std::errc() || result.ptr == text.data() + 1) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
  }
  return clock;
}

std::int64_t wholeSeconds(Date date) { return static_cast<std::int64_t>(std::floor(date.secondsSince1970())); }

struct Local {
  year_month_day day;
  hh_mm_ss<seconds> clock;
  std::int64_t offset;
};

Local localOf(Date date, const TimeZone& zone) {
  const std::int64_t utc = wholeSeconds(date);
  const sys_seconds local{seconds(zone.localFromUtc(utc))};
  const auto midnight = floor<days>(local);
  return {year_month_day(midnight), hh_mm_ss<seconds>(local - midnight), zone.offsetAt(utc)};
}

template <class... Numbers>
std::string printed(const char* format, Numbers... numbers) {
  std::array<char, 80> text;
  std::snprintf(text.data(), text.size(), format, numbers...);
  return text.data();
}

}  // namespace

std::optional<Date> parseTime(std::string_view text, const TimeZone& zone, std::optional<Date> day) {
  std::int64_t midnight = 0;
  const bool clockAlone = text.size() > 2 && text[2] == ':';
  if (clockAlone) {
    if (!day) return std::nullopt;
    midnight = sys_days(localOf(*day, zone).day).time_since_epoch().count() * 86400LL;
  } else {
    const auto ymd = takeDay(text);
    if (!ymd) return std::nullopt;
    midnight = sys_days(*ymd).time_since_epoch().count() * 86400LL;
    if (text.empty()) return Date(static_cast<double>(zone.startOfDay(midnight)));
    if (!take(text, 'T') && !take(text, ' ')) return std::nullopt;
  }
  const auto clock = takeClock(text);
  if (!clock) return std::nullopt;
  const bool utc = take(text, 'Z');
  if (!text.empty()) return std::nullopt;
  const std::int64_t local = midnight + clock->seconds;
  return Date(static_cast<double>(utc ? local : zone.utcFromLocal(local)) + clock->fraction);
}

std::string timeFormats() { return tr("2024-05-14, 2024-05-14T09:30 or 2024-05-14T09:30:15"); }

bool isDateOnly(std::string_view text) { return takeDay(text) && text.empty(); }

Date beginningOfLocalDay(Date date, const TimeZone& zone, int days) {
  const std::int64_t local = zone.localFromUtc(wholeSeconds(date));
  const std::int64_t midnight = static_cast<std::int64_t>(std::floor(static_cast<double>(local) / 86400)) * 86400;
  return Date(static_cast<double>(zone.startOfDay(midnight + days * 86400LL)));
}

std::string isoTime(Date date, const TimeZone& zone) {
  // Rounded to the millisecond first, so that the last millisecond of a second does not read as 1000.
  const Date rounded(std::round(date.secondsSince1970() * 1000) / 1000);
  const Local local = localOf(rounded, zone);
  std::string text = printed(
      "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(local.day.year()), static_cast<unsigned>(local.day.month()),
      static_cast<unsigned>(local.day.day()), static_cast<int>(local.clock.hours().count()),
      static_cast<int>(local.clock.minutes().count()), static_cast<int>(local.clock.seconds().count()));
  const auto milliseconds =
      static_cast<int>(std::lround((rounded.secondsSince1970() - static_cast<double>(wholeSeconds(rounded))) * 1000));
  if (milliseconds != 0) text += printed(".%03d", milliseconds);
  const auto minutes = static_cast<int>(std::abs(local.offset) / 60);
  return text + printed("%c%02d:%02d", local.offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

std::string dayHeading(Date date, const TimeZone& zone) {
  const Local local = localOf(date, zone);
  return dayText(weekday(sys_days(local.day)).c_encoding(), static_cast<unsigned>(local.day.day()),
                 static_cast<unsigned>(local.day.month()), static_cast<int>(local.day.year()));
}

std::string clockTime(Date date, const TimeZone& zone) {
  return clockWithSeconds(static_cast<int>(localOf(date, zone).clock.to_duration().count()));
}

std::string minuteTime(Date date, const TimeZone& zone) {
  return clockWithMinutes(static_cast<int>(localOf(date, zone).clock.to_duration().count()));
}

}  // namespace hushmode::simulation
