// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ICalDays.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace hushmode::devices {

/// A time on a wall clock, without a zone: seconds since 1970-01-01 00:00 of that clock.
using WallTime = std::int64_t;

/// How much work the expansion of entries may still cost: a day or moment that a rule looks at costs 1, an occurrence
/// that comes of it more.
class WorkBudget {
 public:
  static constexpr std::int64_t kOccurrence = 16;

  explicit WorkBudget(std::int64_t units) : left_(units) {}
  /// False when the budget does not allow it: the work must not be done.
  bool take(std::int64_t units) { return (left_ -= units) >= 0; }
  std::int64_t left() const { return left_; }

 private:
  std::int64_t left_;
};

/// A recurrence rule as written (RFC 5545, 3.3.10). Sets are bit masks; an empty set or list is a part that the rule
/// does not have.
struct RecurrenceRule {
  enum class Frequency : std::uint8_t { Secondly, Minutely, Hourly, Daily, Weekly, Monthly, Yearly };
  /// Of BYDAY: "-1SU" is {0, -1}, "MO" is {1, 0}.
  struct Weekday {
    std::int8_t day;  ///< 0 is Sunday.
    std::int16_t ordinal;
  };

  Frequency frequency = Frequency::Daily;
  std::int8_t weekStart = 1;      ///< 0 is Sunday.
  std::int32_t interval = 1;      ///< 1 or more.
  std::int32_t count = 0;         ///< 0: no COUNT.
  std::optional<WallTime> until;  ///< The last moment that may be an occurrence.
  std::uint32_t months = 0;       ///< Bits 1 to 12.
  std::uint64_t hours = 0, minutes = 0, seconds = 0;
  std::vector<std::int16_t> monthDays, yearDays, weekNumbers, positions;  ///< Negative ones count from the end.
  std::vector<Weekday> weekdays;
};

/// The occurrences of a rule, on the wall clock of its first one.
///
/// Whether a rule meets a day follows from the day alone, so a span is expanded by looking at its days: the cost is
/// that of the span, however long ago the rule began and however rarely, or never, it matches. Only a COUNT has to be
/// counted from the beginning; how far that got is remembered.
class ICalRecurrence {
 public:
  /// What the rule leaves open (the day of the month, the hour, …) is taken from `start`.
  ICalRecurrence(RecurrenceRule rule, WallTime start);

  /// Appends the occurrences in [from, to], in order, `start` itself only if the rule meets it. Answers false when the
  /// budget ended it early.
  bool expand(WallTime from, WallTime to, WorkBudget& budget, std::vector<WallTime>& occurrences);

  /// Counts a COUNT to its end if the budget allows, and as far as it allows.
  void count(WorkBudget& budget);

  /// No occurrence is later than this. Absent for rules without end, and as long as a COUNT is not counted to its end.
  std::optional<WallTime> last() const { return rule_.until; }

 private:
  struct Span {
    WallTime from, to;
  };

  void takeDefaultsFromStart();
  bool countThrough(WallTime to, WorkBudget& budget);
  bool collect(Span span, WorkBudget& budget, std::vector<WallTime>& occurrences) const;
  bool collectChosenPositions(Span span, WorkBudget& budget, std::vector<WallTime>& occurrences) const;
  bool appendTimes(std::int64_t day, Span span, WorkBudget& budget, std::vector<WallTime>& occurrences) const;
  bool appendSubDailyTimes(std::int64_t day, Span span, WorkBudget& budget, std::vector<WallTime>& occurrences) const;
  void choosePositions(std::vector<WallTime>& occurrences, std::size_t first) const;
  bool isSubDaily() const { return rule_.frequency < RecurrenceRule::Frequency::Daily; }
  std::int64_t nextDayToLookAt(const CivilDay& day) const;
  std::int64_t nextDayInStep(const CivilDay& day) const;
  std::pair<std::int64_t, std::int64_t> daysOfPeriod(const CivilDay& day) const;
  bool meets(const CivilDay& day) const;
  bool meetsWeekdays(const CivilDay& day) const;

  RecurrenceRule rule_;
  WallTime start_;
  CivilDay startDay_;
  WallTime countedBefore_;  ///< All occurrences before it are in `counted_`; only where there is a COUNT.
  std::int32_t counted_ = 0;
};

}  // namespace hushmode::devices
