// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ZonedCalendar.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <cmath>

namespace hushmode::devices {

namespace {

using platform::Date;
using platform::DateComponents;

constexpr std::int64_t kDay = 86'400;

constexpr std::int64_t midnightOf(int year, unsigned month, unsigned day) {
  using namespace std::chrono;
  const sys_days date = std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
  return date.time_since_epoch() / 1s;
}

constexpr int kFarthestYear = 30'000;
// A day inside the years, so that no zone's offset leads out of them.
constexpr std::int64_t kFirstSecond = midnightOf(-kFarthestYear, 1, 2);
constexpr std::int64_t kLastSecond = midnightOf(kFarthestYear, 12, 31) - 1;

/// The whole second that `date` is in.
std::int64_t wholeSeconds(Date date) {
  const double seconds = date.secondsSince1970();
  if (std::isnan(seconds)) return 0;
  return static_cast<std::int64_t>(
      std::clamp(std::floor(seconds), static_cast<double>(kFirstSecond), static_cast<double>(kLastSecond)));
}

std::int64_t midnightBefore(std::int64_t local) {
  const std::int64_t intoDay = local % kDay;
  return local - (intoDay < 0 ? intoDay + kDay : intoDay);
}

/// `count` units of `seconds` each, in seconds; counts far beyond the calendar's years are cut there.
std::int64_t boundedSeconds(std::int64_t count, std::int64_t seconds) {
  const std::int64_t most = (kLastSecond - kFirstSecond) / seconds;
  return std::clamp(count, -most, most) * seconds;
}

/// Local midnight of the day of `components`.
std::int64_t localMidnight(const DateComponents& components) {
  const std::int64_t months = std::int64_t{components.year} * 12 + components.month - 1;
  const std::int64_t year = months >= 0 ? months / 12 : (months - 11) / 12;
  const auto month = static_cast<unsigned>(months - year * 12 + 1);
  const std::int64_t bounded = std::clamp<std::int64_t>(year, -kFarthestYear, kFarthestYear);
  return midnightOf(static_cast<int>(bounded), month, 1) + boundedSeconds(std::int64_t{components.day} - 1, kDay);
}

Date dateOf(std::int64_t utc) { return Date(static_cast<double>(utc)); }

}  // namespace

ZonedCalendar::ZonedCalendar(std::shared_ptr<const TimeZone> zone) : zone_(std::move(zone)) { assert(zone_); }

void ZonedCalendar::setTimeZone(std::shared_ptr<const TimeZone> zone) {
  assert(zone);
  zone_ = std::move(zone);
}

DateComponents ZonedCalendar::componentsOfDate(Date date) const {
  const std::int64_t local = zone_->localFromUtc(wholeSeconds(date));
  const std::int64_t midnight = midnightBefore(local);
  const std::chrono::year_month_day day{std::chrono::sys_days(std::chrono::days(midnight / kDay))};
  DateComponents components;
  components.year = static_cast<int>(day.year());
  components.month = static_cast<int>(static_cast<unsigned>(day.month()));
  components.day = static_cast<int>(static_cast<unsigned>(day.day()));
  const std::int64_t clock = local - midnight;
  components.hour = clock / 3600;
  components.minute = clock / 60 % 60;
  components.second = clock % 60;
  return components;
}

Date ZonedCalendar::dateFromComponents(const DateComponents& components) const {
  const std::int64_t midnight = std::clamp(localMidnight(components), kFirstSecond, midnightBefore(kLastSecond));
  if (!components.hour && !components.minute && !components.second) return dateOf(zone_->startOfDay(midnight));
  const std::int64_t clock = boundedSeconds(components.hour.value_or(0), 3600) +
                             boundedSeconds(components.minute.value_or(0), 60) +
                             boundedSeconds(components.second.value_or(0), 1);
  return dateOf(zone_->utcFromLocal(std::clamp(midnight + clock, kFirstSecond, kLastSecond)));
}

Date ZonedCalendar::dateByAddingDays(Date date, int days) const {
  const std::int64_t utc = wholeSeconds(date);
  const double fraction = date.secondsSince1970() - static_cast<double>(utc);
  // Beyond the calendar's years, or no number: days of 24 hours are as good as any.
  if (!(fraction >= 0 && fraction < 1)) return date.addingSeconds(static_cast<double>(days) * kDay);
  const std::int64_t local = zone_->localFromUtc(utc);
  const std::int64_t midnight = midnightBefore(local);
  const std::int64_t target = midnight + boundedSeconds(days, kDay);
  if (utc == zone_->startOfDay(midnight) && fraction == 0) return dateOf(zone_->startOfDay(target));
  return dateOf(zone_->utcFromLocal(target + (local - midnight))).addingSeconds(fraction);
}

}  // namespace hushmode::devices
