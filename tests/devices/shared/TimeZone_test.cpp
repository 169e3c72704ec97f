// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/TimeZone.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace hushmode::devices {
namespace {

/// Seconds since 1970-01-01 00:00 of a date and clock time, whosever clock it is.
std::int64_t at(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
  using namespace std::chrono;
  const sys_days date = std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
  return (date.time_since_epoch() / 1s) + hour * 3600 + minute * 60 + second;
}

constexpr std::int64_t kHour = 3600;

std::shared_ptr<const TimeZone> zone(const char* name) {
  auto found = TimeZone::named(name);
  EXPECT_TRUE(found) << name;
  return found ? found : TimeZone::utc();
}

TEST(TimeZone, IsFoundByItsDatabaseNameOnly) {
  for (const char* name :
       {"UTC", "Europe/Berlin", "Etc/GMT+12", "America/Argentina/Buenos_Aires", "EST5EDT", "Etc/UTC"}) {
    const auto found = TimeZone::named(name);
    ASSERT_TRUE(found) << name;
    EXPECT_EQ(found->name(), name);
  }
  for (const char* name : {"", "Z", "01", "+01:00", "europe/berlin", "Europe", "Europe/", "Nowhere/Land", "leapseconds",
                           "zone.tab", "/usr/share/zoneinfo/Europe/Berlin", "../zoneinfo/UTC", ":Europe/Berlin",
                           "CET-1CEST,M3.5.0,M10.5.0/3", "EST5", "Europe/Berlin\n"}) {
    EXPECT_FALSE(TimeZone::named(name)) << name;
  }
}

TEST(TimeZone, IsTheSameObjectForTheSameName) {
  EXPECT_EQ(TimeZone::named("Europe/Berlin"), TimeZone::named("Europe/Berlin"));
  EXPECT_EQ(TimeZone::named("UTC"), TimeZone::utc());
}

TEST(TimeZone, KnowsTheOffsetOfAnInstant) {
  const struct {
    const char* zone;
    std::int64_t utc;
    std::int64_t offset;
  } cases[] = {
      {"UTC", at(2026, 7, 1), 0},
      {"Europe/Berlin", at(2026, 1, 1), kHour},
      {"Europe/Berlin", at(2026, 3, 29, 0, 59, 59), kHour},
      {"Europe/Berlin", at(2026, 3, 29, 1), 2 * kHour},
      {"Europe/Berlin", at(2026, 10, 25, 0, 59, 59), 2 * kHour},
      {"Europe/Berlin", at(2026, 10, 25, 1), kHour},
      {"Europe/Berlin", at(1969, 7, 1), kHour},
      {"Europe/Berlin", at(1800, 1, 1), 3208},  // local mean time
      {"Europe/Berlin", at(2040, 7, 1), 2 * kHour},
      {"Europe/Berlin", at(2099, 12, 31), kHour},
      {"Europe/Berlin", at(2100, 7, 1), 2 * kHour},
      {"Europe/Berlin", at(2500, 7, 1), 2 * kHour},
      {"America/New_York", at(1969, 7, 1), -4 * kHour},
      {"America/New_York", at(2040, 3, 11, 6, 59, 59), -5 * kHour},
      {"America/New_York", at(2040, 3, 11, 7), -4 * kHour},
      {"Australia/Lord_Howe", at(2026, 1, 1), 11 * kHour},
      {"Australia/Lord_Howe", at(2026, 7, 1), 10 * kHour + 1800},
      {"Australia/Lord_Howe", at(2040, 7, 1), 10 * kHour + 1800},
      {"Asia/Kathmandu", at(2026, 7, 1), 5 * kHour + 2700},
      {"Etc/GMT+12", at(2026, 7, 1), -12 * kHour},
      {"Etc/GMT-12", at(2026, 7, 1), 12 * kHour},
      {"Etc/GMT-14", at(2026, 7, 1), 14 * kHour},
      {"Pacific/Apia", at(2011, 12, 30, 9, 59, 59), -10 * kHour},
      {"Pacific/Apia", at(2011, 12, 30, 10), 14 * kHour},
      {"Europe/Dublin", at(2026, 1, 1), 0},
      {"Europe/Dublin", at(2037, 12, 1), 0},
      {"Europe/Dublin", at(2040, 1, 1), 0},
      {"Europe/Dublin", at(2040, 7, 1), kHour},
      {"Europe/Dublin", at(2150, 1, 1), 0},
      {"Africa/Casablanca", at(2026, 3, 1), 0},  // the month of fasting
      {"Africa/Casablanca", at(2026, 7, 1), kHour},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(zone(c.zone)->offsetAt(c.utc), c.offset) << c.zone << " at " << c.utc;
    EXPECT_EQ(zone(c.zone)->localFromUtc(c.utc), c.utc + c.offset) << c.zone << " at " << c.utc;
  }
}

TEST(TimeZone, TurnsLocalTimesIntoInstants) {
  const struct {
    const char* what;
    const char* zone;
    std::int64_t local;
    std::int64_t utc;
  } cases[] = {
      {"utc", "UTC", at(2026, 7, 1, 9), at(2026, 7, 1, 9)},
      {"winter", "Europe/Berlin", at(2026, 1, 1, 9), at(2026, 1, 1, 8)},
      {"last second before the gap", "Europe/Berlin", at(2026, 3, 29, 1, 59, 59), at(2026, 3, 29, 0, 59, 59)},
      {"first of the gap becomes 03:00", "Europe/Berlin", at(2026, 3, 29, 2), at(2026, 3, 29, 1)},
      {"02:30 becomes 03:30", "Europe/Berlin", at(2026, 3, 29, 2, 30), at(2026, 3, 29, 1, 30)},
      {"after the gap", "Europe/Berlin", at(2026, 3, 29, 3), at(2026, 3, 29, 1)},
      {"before the overlap", "Europe/Berlin", at(2026, 10, 25, 1, 59, 59), at(2026, 10, 24, 23, 59, 59)},
      {"first of two", "Europe/Berlin", at(2026, 10, 25, 2, 30), at(2026, 10, 25, 0, 30)},
      {"after the overlap", "Europe/Berlin", at(2026, 10, 25, 3), at(2026, 10, 25, 2)},
      {"gap in the west", "America/New_York", at(2026, 3, 8, 2, 30), at(2026, 3, 8, 7, 30)},
      {"overlap in the west", "America/New_York", at(2026, 11, 1, 1, 30), at(2026, 11, 1, 5, 30)},
      {"southern gap of half an hour", "Australia/Lord_Howe", at(2026, 10, 4, 2, 15), at(2026, 10, 3, 15, 45)},
      {"southern overlap of half an hour", "Australia/Lord_Howe", at(2026, 4, 5, 1, 45), at(2026, 4, 4, 14, 45)},
      {"southern gap", "Australia/Sydney", at(2026, 10, 4, 2, 30), at(2026, 10, 3, 16, 30)},
      {"southern overlap", "Australia/Sydney", at(2026, 4, 5, 2, 30), at(2026, 4, 4, 15, 30)},
      {"missing midnight", "America/Sao_Paulo", at(2018, 11, 4), at(2018, 11, 4, 3)},
      {"23:30 twice", "America/Sao_Paulo", at(2018, 2, 17, 23, 30), at(2018, 2, 18, 1, 30)},
      {"day that was skipped", "Pacific/Apia", at(2011, 12, 30, 12), at(2011, 12, 30, 22)},
      {"day after", "Pacific/Apia", at(2011, 12, 31, 12), at(2011, 12, 30, 22)},
      {"far east", "Etc/GMT-12", at(2026, 1, 1), at(2025, 12, 31, 12)},
      {"far west", "Etc/GMT+12", at(2026, 1, 1), at(2026, 1, 1, 12)},
      {"2040 gap", "Europe/Berlin", at(2040, 3, 25, 2, 30), at(2040, 3, 25, 1, 30)},
      {"2140 overlap", "Europe/Berlin", at(2140, 10, 30, 2, 30), at(2140, 10, 30, 0, 30)},
      {"1969", "America/New_York", at(1969, 4, 27, 2, 30), at(1969, 4, 27, 7, 30)},
  };
  for (const auto& c : cases) EXPECT_EQ(zone(c.zone)->utcFromLocal(c.local), c.utc) << c.what;
}

TEST(TimeZone, FindsTheFirstInstantOfALocalDay) {
  const struct {
    const char* what;
    const char* zone;
    std::int64_t midnight;
    std::int64_t utc;
  } cases[] = {
      {"utc", "UTC", at(2026, 7, 1), at(2026, 7, 1)},
      {"ordinary", "Europe/Berlin", at(2026, 7, 1), at(2026, 6, 30, 22)},
      {"midnight missing, begins at 01:00", "America/Sao_Paulo", at(2018, 11, 4), at(2018, 11, 4, 3)},
      {"midnight missing in Beirut", "Asia/Beirut", at(2026, 3, 29), at(2026, 3, 28, 22)},
      {"midnight missing in 2040", "Asia/Beirut", at(2040, 3, 25), at(2040, 3, 24, 22)},
      {"clock set back at midnight", "Asia/Beirut", at(2026, 10, 25), at(2026, 10, 24, 22)},
      {"00:00 to 00:59 twice", "America/Havana", at(2026, 11, 1), at(2026, 11, 1, 4)},
      {"set back at 00:01", "America/St_Johns", at(2010, 11, 7), at(2010, 11, 7, 2, 30)},
      {"jump from 23:30 to 00:30", "America/Toronto", at(1919, 3, 31), at(1919, 3, 31, 4, 30)},
      {"skipped day begins with the next", "Pacific/Apia", at(2011, 12, 30), at(2011, 12, 30, 10)},
      {"day after the skipped one", "Pacific/Apia", at(2011, 12, 31), at(2011, 12, 30, 10)},
  };
  for (const auto& c : cases) EXPECT_EQ(zone(c.zone)->startOfDay(c.midnight), c.utc) << c.what;
}

TEST(TimeZone, GivesEveryInstantBackFromItsLocalTimeUnlessItIsTheSecondOfTwo) {
  for (const char* name : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Beirut", "Pacific/Apia"}) {
    const auto& tz = *zone(name);
    for (std::int64_t utc = at(1965, 1, 1); utc < at(2045, 1, 1); utc += 7 * kHour + 13 * 60) {
      const std::int64_t back = tz.utcFromLocal(tz.localFromUtc(utc));
      if (back == utc) continue;
      EXPECT_LT(back, utc) << name;
      EXPECT_EQ(tz.localFromUtc(back), tz.localFromUtc(utc)) << name << " at " << utc;
    }
  }
}

TEST(TimeZone, SurvivesInstantsBeyondAllCalendars) {
  const auto tz = zone("Europe/Berlin");
  for (const std::int64_t far : {INT64_MIN, INT64_MIN + 1, INT64_MAX - 1, INT64_MAX}) {
    EXPECT_LT(std::abs(tz->offsetAt(far)), 16 * kHour);
    EXPECT_EQ(tz->utcFromLocal(far) > 0, far > 0);
    EXPECT_EQ(tz->startOfDay(far / 86'400 * 86'400) > 0, far > 0);
  }
}

TEST(TimeZone, MayBeUsedByManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::vector<std::int64_t> sums(4);
  for (std::size_t i = 0; i < sums.size(); ++i) {
    threads.emplace_back([&sum = sums[i]] {
      const auto tz = TimeZone::named("America/Chicago");
      for (std::int64_t utc = at(2020, 1, 1); utc < at(2030, 1, 1); utc += 86'400) sum += tz->offsetAt(utc);
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_LT(sums[0], 0);
  for (const auto sum : sums) EXPECT_EQ(sum, sums[0]);
}

}  // namespace
}  // namespace hushmode::devices
