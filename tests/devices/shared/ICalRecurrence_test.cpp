// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalProperty.h"
#include "tests/devices/shared/CalendarSamples.h"

namespace hushmode::devices {
namespace {

using samples::wall;
using samples::wallText;

constexpr WallTime kFarFuture = dayNumber(2200, 1, 1) * kSecondsPerDay;

RecurrenceRule rule(const std::string& text, const ICalTime& start) {
  const auto rule = recurrenceRuleOf(text, start);
  EXPECT_TRUE(rule) << text;
  return rule.value_or(RecurrenceRule{});
}

struct Case {
  const char* rule;
  const char* start;
  std::size_t occurrences;  ///< How many are looked at.
  std::vector<std::string> days;
};

// The examples of RFC 5545, 3.8.5.3, and others that tell implementations apart.
const Case kCases[] = {
    {"FREQ=DAILY;COUNT=10", "1997-09-02 09:00", 3, {"1997-09-02", "1997-09-03", "1997-09-04"}},
    {"FREQ=DAILY;INTERVAL=10;COUNT=5",
     "1997-09-02 09:00",
     9,
     {"1997-09-02", "1997-09-12", "1997-09-22", "1997-10-02", "1997-10-12"}},
    {"FREQ=DAILY;UNTIL=20000131T140000Z;BYMONTH=1", "1998-01-31 09:00", 3, {"1998-01-31", "1999-01-01", "1999-01-02"}},
    {"FREQ=WEEKLY;INTERVAL=2;WKST=SU", "1997-09-02 09:00", 3, {"1997-09-02", "1997-09-16", "1997-09-30"}},
    {"FREQ=WEEKLY;INTERVAL=2;UNTIL=19971224T000000Z;WKST=SU;BYDAY=MO,WE,FR",
     "1997-09-01 09:00",
     5,
     {"1997-09-01", "1997-09-03", "1997-09-05", "1997-09-15", "1997-09-17"}},
    {"FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=MO",
     "1997-08-05 09:00",
     9,
     {"1997-08-05", "1997-08-10", "1997-08-19", "1997-08-24"}},
    {"FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU",
     "1997-08-05 09:00",
     9,
     {"1997-08-05", "1997-08-17", "1997-08-19", "1997-08-31"}},
    {"FREQ=MONTHLY;COUNT=3;BYDAY=1FR", "1997-09-05 09:00", 9, {"1997-09-05", "1997-10-03", "1997-11-07"}},
    {"FREQ=MONTHLY;INTERVAL=2;COUNT=4;BYDAY=1SU,-1SU",
     "1997-09-07 09:00",
     9,
     {"1997-09-07", "1997-09-28", "1997-11-02", "1997-11-30"}},
    {"FREQ=MONTHLY;COUNT=3;BYDAY=-2MO", "1997-09-22 09:00", 9, {"1997-09-22", "1997-10-20", "1997-11-17"}},
    {"FREQ=MONTHLY;BYMONTHDAY=-3", "1997-09-28 09:00", 3, {"1997-09-28", "1997-10-29", "1997-11-28"}},
    {"FREQ=MONTHLY;BYMONTHDAY=1,-1;COUNT=3", "1997-09-30 09:00", 9, {"1997-09-30", "1997-10-01", "1997-10-31"}},
    {"FREQ=MONTHLY;INTERVAL=18;BYMONTHDAY=10,11;COUNT=4",
     "1997-09-10 09:00",
     9,
     {"1997-09-10", "1997-09-11", "1999-03-10", "1999-03-11"}},
    {"FREQ=MONTHLY", "2026-01-31 09:00", 4, {"2026-01-31", "2026-03-31", "2026-05-31", "2026-07-31"}},
    {"FREQ=YEARLY;COUNT=4;BYMONTH=6,7",
     "1997-06-10 09:00",
     9,
     {"1997-06-10", "1997-07-10", "1998-06-10", "1998-07-10"}},
    {"FREQ=YEARLY;INTERVAL=3;COUNT=4;BYYEARDAY=1,100,200",
     "1997-01-01 09:00",
     9,
     {"1997-01-01", "1997-04-10", "1997-07-19", "2000-01-01"}},
    {"FREQ=YEARLY;BYDAY=20MO", "1997-05-19 09:00", 3, {"1997-05-19", "1998-05-18", "1999-05-17"}},
    {"FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO", "1997-05-12 09:00", 3, {"1997-05-12", "1998-05-11", "1999-05-17"}},
    {"FREQ=YEARLY;BYWEEKNO=53", "2015-12-31 09:00", 3, {"2015-12-31", "2020-12-31", "2026-12-31"}},
    {"FREQ=YEARLY;BYMONTH=3;BYDAY=TH", "1997-03-13 09:00", 4, {"1997-03-13", "1997-03-20", "1997-03-27", "1998-03-05"}},
    {"FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13", "1997-09-02 09:00", 3, {"1998-02-13", "1998-03-13", "1998-11-13"}},
    {"FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8",
     "1996-11-05 09:00",
     3,
     {"1996-11-05", "2000-11-07", "2004-11-02"}},
    {"FREQ=MONTHLY;COUNT=3;BYDAY=TU,WE,TH;BYSETPOS=3",
     "1997-09-04 09:00",
     9,
     {"1997-09-04", "1997-10-07", "1997-11-06"}},
    {"FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-2",
     "1997-09-29 09:00",
     3,
     {"1997-09-29", "1997-10-30", "1997-11-27"}},
    {"FREQ=YEARLY", "2020-02-29 09:00", 3, {"2020-02-29", "2024-02-29", "2028-02-29"}},
    {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "2020-02-29 09:00", 1, {}},
    {"FREQ=WEEKLY;BYDAY=MO;BYSETPOS=5", "2026-03-30 09:00", 1, {}},
    {"FREQ=HOURLY;INTERVAL=3;UNTIL=19970902T170000",
     "1997-09-02 09:00",
     9,
     {"1997-09-02", "1997-09-02 12:00", "1997-09-02 15:00"}},
    {"FREQ=MINUTELY;INTERVAL=90;COUNT=4",
     "1997-09-02 09:00",
     9,
     {"1997-09-02", "1997-09-02 10:30", "1997-09-02 12:00", "1997-09-02 13:30"}},
    {"FREQ=DAILY;BYHOUR=9,16;BYMINUTE=0,40;COUNT=5",
     "1997-09-02 09:00",
     9,
     {"1997-09-02", "1997-09-02 09:40", "1997-09-02 16:00", "1997-09-02 16:40", "1997-09-03"}},
    {"FREQ=MINUTELY;INTERVAL=20;BYHOUR=16",
     "1997-09-02 16:40",
     3,
     {"1997-09-02 16:40", "1997-09-03 16:00", "1997-09-03 16:20"}},
    {"FREQ=HOURLY;INTERVAL=36", "2026-03-30 09:00", 3, {"2026-03-30", "2026-03-31 21:00", "2026-04-02"}},
    {"FREQ=HOURLY;BYMINUTE=10,20,50;BYSETPOS=-1", "2026-03-30 09:00", 2, {"2026-03-30 09:50", "2026-03-30 10:50"}},
    {"FREQ=SECONDLY;INTERVAL=86400;COUNT=2", "2026-03-30 09:00", 9, {"2026-03-30", "2026-03-31"}},
};

/// "1997-09-02" stands for nine o'clock of that day.
std::vector<std::string> withTimes(const std::vector<std::string>& days) {
  std::vector<std::string> times;
  for (const std::string& day : days) times.push_back(day.size() > 10 ? day : day + " 09:00");
  return times;
}

TEST(ICalRecurrence, OccursAsRfc5545Shows) {
  for (const Case& expected : kCases) {
    SCOPED_TRACE(expected.rule);
    const ICalTime start{wall(expected.start)};
    ICalRecurrence recurrence(rule(expected.rule, start), start.wall);
    WorkBudget budget(10'000'000);
    std::vector<WallTime> times;
    // Most of these rules have no end: a few years show enough.
    EXPECT_TRUE(recurrence.expand(start.wall, start.wall + 12 * 366 * kSecondsPerDay, budget, times));
    times.resize(std::min(times.size(), expected.occurrences));
    std::vector<std::string> actual;
    for (const WallTime time : times) actual.push_back(wallText(time));
    EXPECT_EQ(actual, withTimes(expected.days));
  }
}

TEST(ICalRecurrence, AnswersTheSameForASpanAsForAllOfIt) {
  for (const Case& expected : kCases) {
    SCOPED_TRACE(expected.rule);
    const ICalTime start{wall(expected.start)};
    ICalRecurrence whole(rule(expected.rule, start), start.wall), parts(rule(expected.rule, start), start.wall);
    WorkBudget budget(10'000'000);
    const WallTime end = start.wall + 400 * kSecondsPerDay;
    std::vector<WallTime> all, pieces;
    EXPECT_TRUE(whole.expand(start.wall, end - 1, budget, all));
    // The last part is asked for first, so that a COUNT is counted past the others.
    const WallTime step = 50 * kSecondsPerDay;
    for (WallTime from = end - step; from >= start.wall; from -= step) {
      std::vector<WallTime> piece;
      EXPECT_TRUE(parts.expand(from, from + step - 1, budget, piece));
      pieces.insert(pieces.begin(), piece.begin(), piece.end());
    }
    EXPECT_EQ(pieces, all);
  }
}

TEST(ICalRecurrence, AgreesWithLibicalOnOrdinaryRules) {
  const char* const rules[] = {"FREQ=DAILY;INTERVAL=3",
                               "FREQ=WEEKLY;BYDAY=MO,WE,SA;INTERVAL=3;WKST=SU",
                               "FREQ=MONTHLY;BYMONTHDAY=-1,15",
                               "FREQ=MONTHLY;BYDAY=2TU,-1FR",
                               "FREQ=YEARLY;BYMONTH=1,6;BYDAY=1MO",
                               "FREQ=YEARLY;BYYEARDAY=-1,60",
                               "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=1,-1",
                               "FREQ=DAILY;BYMONTH=2,12;BYDAY=SU",
                               "FREQ=HOURLY;INTERVAL=7",
                               "FREQ=WEEKLY;BYDAY=TU;BYHOUR=7,19;COUNT=25"};
  for (const char* text : rules) {
    SCOPED_TRACE(text);
    const ICalTime start{wall("2024-02-27 07:15")};
    ICalRecurrence recurrence(rule(text, start), start.wall);
    WorkBudget budget(10'000'000);
    std::vector<WallTime> times;
    const WallTime end = start.wall + 2000 * kSecondsPerDay;
    EXPECT_TRUE(recurrence.expand(start.wall, end, budget, times));

    icalrecur_iterator* iterator =
        icalrecur_iterator_new(icalrecurrencetype_from_string(text), icaltime_from_string("20240227T071500"));
    ASSERT_NE(iterator, nullptr);
    for (std::size_t index = 0; index < 40; ++index) {
      const auto expected = wallTimeOf(icalrecur_iterator_next(iterator));
      if (!expected || *expected > end) {
        EXPECT_EQ(times.size(), index);
        break;
      }
      ASSERT_LT(index, times.size());
      EXPECT_EQ(wallText(times[index]), wallText(*expected)) << index;
    }
    icalrecur_iterator_free(iterator);
  }
}

TEST(ICalRecurrence, CountsOnWhereItStopped) {
  const ICalTime start{wall("2016-01-01 09:00")};
  ICalRecurrence recurrence(rule("FREQ=DAILY;COUNT=3000", start), start.wall);
  EXPECT_FALSE(recurrence.last());
  WorkBudget enough(100'000);
  recurrence.count(enough);
  ASSERT_TRUE(recurrence.last());
  EXPECT_EQ(wallText(*recurrence.last()), "2024-03-18 09:00");
  // Now that the end is known, late spans cost next to nothing.
  WorkBudget small(10);
  std::vector<WallTime> times;
  EXPECT_TRUE(recurrence.expand(*recurrence.last(), kFarFuture, small, times));
  EXPECT_EQ(times.size(), 1U);
}

TEST(ICalRecurrence, StopsWhenTheBudgetEnds) {
  for (const char* text : {"FREQ=SECONDLY", "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30;COUNT=1", "FREQ=DAILY;BYDAY=MO",
                           "FREQ=YEARLY;BYDAY=MO,TU;BYHOUR=1,2,3;BYSETPOS=-1", "FREQ=MINUTELY;BYSETPOS=2"}) {
    const ICalTime start{wall("2016-01-01 09:00")};
    ICalRecurrence recurrence(rule(text, start), start.wall);
    WorkBudget budget(100);
    std::vector<WallTime> times;
    EXPECT_FALSE(recurrence.expand(start.wall, kFarFuture, budget, times)) << text;
    EXPECT_LE(times.size(), 100U) << text;
  }
}

}  // namespace
}  // namespace hushmode::devices
