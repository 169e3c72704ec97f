// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalRecurrence.h"

#include "devices/shared/ICalDays.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <utility>

namespace hushmode::devices {

namespace {

using Frequency = RecurrenceRule::Frequency;

bool contains(std::uint64_t mask, std::int64_t value) { return (mask >> value & 1) != 0; }

/// Whether `list` holds the 1-based `position`, counted from either end of `length`.
bool holds(const std::vector<std::int16_t>& list, std::int64_t position, std::int64_t length) {
  return std::any_of(list.begin(), list.end(), [&](std::int16_t entry) {
    return entry > 0 ? entry == position : entry + length + 1 == position;
  });
}

/// Calls `visit` with each number in the mask, in order, until it answers false.
template <class Visit>
bool forEachIn(std::uint64_t mask, Visit visit) {
  for (; mask != 0; mask &= mask - 1) {
    if (!visit(std::countr_zero(mask))) return false;
  }
  return true;
}

/// Removes the times outside [from, to] from the index `first` on.
void eraseOutside(WallTime from, WallTime to, std::vector<WallTime>& times, std::size_t first) {
  const auto outside = [&](WallTime time) { return time < from || time > to; };
  times.erase(std::remove_if(times.begin() + static_cast<std::ptrdiff_t>(first), times.end(), outside), times.end());
}

/// Seconds in a period of a frequency below a day.
std::int64_t secondsIn(Frequency frequency) {
  return frequency == Frequency::Hourly ? 3600 : frequency == Frequency::Minutely ? 60 : 1;
}

/// The number of the week that the day lies in, and how many weeks its year has. The first week of a year is the first
/// with four days in it.
std::pair<std::int64_t, std::int64_t> weekOfYear(const CivilDay& day, std::int64_t weekStart) {
  const CivilDay fourth(day.firstOfWeek(weekStart) + 3);
  const std::int64_t week = (fourth.number - fourth.firstOfYear()) / 7 + 1;
  return {week, week + (fourth.lastOfYear() - fourth.number) / 7};
}

/// Nobody asks for later occurrences.
constexpr WallTime kLastMomentCounted = dayNumber(10'000, 1, 1) * kSecondsPerDay;
/// How much is counted at once, and may have to be counted anew when the budget ends in the middle of it.
constexpr WallTime kLongestCountingStride = 1024 * kSecondsPerDay;

}  // namespace

ICalRecurrence::ICalRecurrence(RecurrenceRule rule, WallTime start)
    : rule_(std::move(rule)), start_(start), startDay_(dayOf(start)), countedBefore_(start) {
  takeDefaultsFromStart();
}

void ICalRecurrence::takeDefaultsFromStart() {
  const CivilDay& day = startDay_;
  const auto second = start_ - day.number * kSecondsPerDay;
  const auto bit = [](std::int64_t value) { return std::uint64_t{1} << value; };
  if (rule_.hours == 0 && rule_.frequency > Frequency::Hourly) rule_.hours = bit(second / 3600);
  if (rule_.minutes == 0 && rule_.frequency > Frequency::Minutely) rule_.minutes = bit(second / 60 % 60);
  if (rule_.seconds == 0 && rule_.frequency > Frequency::Secondly) rule_.seconds = bit(second % 60);

  if (!rule_.monthDays.empty() || !rule_.yearDays.empty() || !rule_.weekdays.empty()) return;
  const auto weekday = RecurrenceRule::Weekday{static_cast<std::int8_t>(day.weekday), 0};
  if (rule_.frequency == Frequency::Weekly) rule_.weekdays = {weekday};
  if (rule_.frequency == Frequency::Monthly) rule_.monthDays = {static_cast<std::int16_t>(day.dayOfMonth)};
  if (rule_.frequency == Frequency::Yearly) {
    if (!rule_.weekNumbers.empty()) {
      rule_.weekdays = {weekday};
      return;
    }
    if (rule_.months == 0) rule_.months = 1U << day.month;
    rule_.monthDays = {static_cast<std::int16_t>(day.dayOfMonth)};
  }
}

bool ICalRecurrence::expand(WallTime from, WallTime to, WorkBudget& budget, std::vector<WallTime>& occurrences) {
  from = std::max(from, start_);
  bool complete = true;
  if (rule_.count > 0 && !countThrough(std::min(to, rule_.until.value_or(to)), budget)) {
    complete = false;
    to = std::min(to, countedBefore_ - 1);
  }
  if (rule_.until) to = std::min(to, *rule_.until);
  if (from > to) return complete;
  return collect({from, to}, budget, occurrences) && complete;
}

void ICalRecurrence::count(WorkBudget& budget) {
  if (rule_.count > 0) countThrough(rule_.until.value_or(kLastMomentCounted), budget);
}

/// Counts on to `to`. Once the last occurrence of the COUNT is known, it is the rule's UNTIL, and there is nothing left
/// to count.
bool ICalRecurrence::countThrough(WallTime to, WorkBudget& budget) {
  WallTime stride = kSecondsPerDay * (isSubDaily() ? 1 : 32);
  std::vector<WallTime> occurrences;
  for (; countedBefore_ <= to; stride = std::min(stride * 2, kLongestCountingStride)) {
    occurrences.clear();
    const WallTime end = countedBefore_ + stride - 1;
    const bool complete = collect({countedBefore_, end}, budget, occurrences);
    const auto missing = static_cast<std::size_t>(rule_.count - counted_);
    if (occurrences.size() >= missing) {
      const WallTime last = occurrences[missing - 1];
      rule_.until = std::min(rule_.until.value_or(last), last);
      rule_.count = 0;
      return true;
    }
    if (!complete) return false;
    counted_ += static_cast<std::int32_t>(occurrences.size());
    countedBefore_ = end + 1;
  }
  return true;
}

bool ICalRecurrence::collect(Span span, WorkBudget& budget, std::vector<WallTime>& occurrences) const {
  if (!rule_.positions.empty() && !isSubDaily()) return collectChosenPositions(span, budget, occurrences);
  const std::int64_t lastDay = dayOf(span.to);
  for (std::int64_t number = dayOf(span.from); number <= lastDay;) {
    if (!budget.take(1)) return false;
    const CivilDay day(number);
    if (const std::int64_t next = nextDayToLookAt(day); next != number) {
      number = next;
      continue;
    }
    if (meets(day) && !appendTimes(number, span, budget, occurrences)) return false;
    ++number;
  }
  return true;
}

/// BYSETPOS chooses among all occurrences of a period, so that whole periods have to be looked at.
bool ICalRecurrence::collectChosenPositions(Span span, WorkBudget& budget, std::vector<WallTime>& occurrences) const {
  const std::int64_t lastDay = dayOf(span.to);
  for (std::int64_t number = dayOf(span.from); number <= lastDay;) {
    if (!budget.take(1)) return false;
    const CivilDay day(number);
    const auto [firstOfPeriod, lastOfPeriod] = daysOfPeriod(day);
    if (nextDayToLookAt(day) > lastOfPeriod) {
      number = lastOfPeriod + 1;
      continue;
    }
    const std::size_t first = occurrences.size();
    const Span everything{std::numeric_limits<WallTime>::min(), std::numeric_limits<WallTime>::max()};
    for (std::int64_t inPeriod = firstOfPeriod; inPeriod <= lastOfPeriod; ++inPeriod) {
      if (!budget.take(1)) return false;
      if (meets(CivilDay(inPeriod)) && !appendTimes(inPeriod, everything, budget, occurrences)) return false;
    }
    choosePositions(occurrences, first);
    eraseOutside(span.from, span.to, occurrences, first);
    number = lastOfPeriod + 1;
  }
  return true;
}

/// Keeps of the occurrences from index `first` on, which are those of one period, the ones that BYSETPOS names.
void ICalRecurrence::choosePositions(std::vector<WallTime>& occurrences, std::size_t first) const {
  const std::size_t length = occurrences.size() - first;
  std::size_t kept = first;
  for (std::size_t index = 0; index < length; ++index) {
    if (holds(rule_.positions, static_cast<std::int64_t>(index) + 1, static_cast<std::int64_t>(length))) {
      occurrences[kept++] = occurrences[first + index];
    }
  }
  occurrences.resize(kept);
}

/// The occurrences of a day that the rule meets.
bool ICalRecurrence::appendTimes(std::int64_t day, Span span, WorkBudget& budget,
                                 std::vector<WallTime>& occurrences) const {
  if (isSubDaily()) return appendSubDailyTimes(day, span, budget, occurrences);
  return forEachIn(rule_.hours, [&](int hour) {
    return forEachIn(rule_.minutes, [&](int minute) {
      return forEachIn(rule_.seconds, [&](int second) {
        if (!budget.take(1)) return false;
        const WallTime time = day * kSecondsPerDay + hour * 3600 + minute * 60 + second;
        if (time >= span.from && time <= span.to) occurrences.push_back(time);
        return true;
      });
    });
  });
}

/// The same for a rule whose period is an hour, a minute or a second.
bool ICalRecurrence::appendSubDailyTimes(std::int64_t day, Span span, WorkBudget& budget,
                                         std::vector<WallTime>& occurrences) const {
  const std::int64_t unit = secondsIn(rule_.frequency);
  const std::int64_t step = unit * rule_.interval;
  const WallTime midnight = day * kSecondsPerDay, anchor = floorDivide(start_, unit) * unit;
  for (WallTime period = midnight + floorModulo(anchor - midnight, step); period < midnight + kSecondsPerDay;
       period += step) {
    if (!budget.take(1)) return false;
    const std::int64_t second = period - midnight;
    if (rule_.hours != 0 && !contains(rule_.hours, second / 3600)) continue;
    if (unit <= 60 && rule_.minutes != 0 && !contains(rule_.minutes, second / 60 % 60)) continue;
    if (unit == 1 && rule_.seconds != 0 && !contains(rule_.seconds, second % 60)) continue;
    const std::size_t first = occurrences.size();
    const bool complete = forEachIn(unit == 3600 ? rule_.minutes : 1, [&](int minute) {
      return forEachIn(unit >= 60 ? rule_.seconds : 1, [&](int inMinute) {
        if (!budget.take(1)) return false;
        occurrences.push_back(period + minute * 60 + inMinute);
        return true;
      });
    });
    if (!complete) return false;
    if (!rule_.positions.empty()) choosePositions(occurrences, first);
    eraseOutside(span.from, span.to, occurrences, first);
  }
  return true;
}

/// `day` itself when it may hold occurrences, else the next day that may.
std::int64_t ICalRecurrence::nextDayToLookAt(const CivilDay& day) const {
  if (const std::int64_t next = nextDayInStep(day); next != day.number) return next;
  const bool monthMayMatch = rule_.months == 0 || contains(rule_.months, day.month);
  return monthMayMatch ? day.number : day.lastOfMonth() + 1;
}

/// `day` itself when INTERVAL does not skip its period, else the first day of the next period that is not skipped.
std::int64_t ICalRecurrence::nextDayInStep(const CivilDay& day) const {
  const auto periodsToNext = [&](std::int64_t periodsSinceStart) {
    return floorModulo(-periodsSinceStart, std::int64_t{rule_.interval});
  };
  switch (rule_.frequency) {
    case Frequency::Yearly: {
      const std::int64_t years = periodsToNext(day.year - startDay_.year);
      return years == 0 ? day.number : dayNumber(day.year + years, 1, 1);
    }
    case Frequency::Monthly: {
      const std::int64_t months = periodsToNext((day.year - startDay_.year) * 12 + day.month - startDay_.month);
      return months == 0 ? day.number : dayNumber(day.year, day.month + months, 1);
    }
    case Frequency::Weekly: {
      const std::int64_t week = day.firstOfWeek(rule_.weekStart);
      const std::int64_t weeks = periodsToNext((week - startDay_.firstOfWeek(rule_.weekStart)) / 7);
      return weeks == 0 ? day.number : week + weeks * 7;
    }
    case Frequency::Daily:
      return day.number + periodsToNext(day.number - startDay_.number);
    default: {
      const std::int64_t unit = secondsIn(rule_.frequency);
      const WallTime midnight = day.number * kSecondsPerDay, anchor = floorDivide(start_, unit) * unit;
      return dayOf(midnight + floorModulo(anchor - midnight, unit * rule_.interval));
    }
  }
}

/// The first and last day of the period of a rule of days or more that `day` lies in.
std::pair<std::int64_t, std::int64_t> ICalRecurrence::daysOfPeriod(const CivilDay& day) const {
  switch (rule_.frequency) {
    case Frequency::Yearly:
      return {day.firstOfYear(), day.lastOfYear()};
    case Frequency::Monthly:
      return {day.firstOfMonth(), day.lastOfMonth()};
    case Frequency::Weekly:
      return {day.firstOfWeek(rule_.weekStart), day.firstOfWeek(rule_.weekStart) + 6};
    default:
      return {day.number, day.number};
  }
}

/// Whether the day has every property that the BY parts ask for.
bool ICalRecurrence::meets(const CivilDay& day) const {
  if (rule_.months != 0 && !contains(rule_.months, day.month)) return false;
  if (!rule_.weekNumbers.empty()) {
    const auto [week, weeks] = weekOfYear(day, rule_.weekStart);
    if (!holds(rule_.weekNumbers, week, weeks)) return false;
  }
  if (!rule_.yearDays.empty()) {
    const std::int64_t first = day.firstOfYear();
    if (!holds(rule_.yearDays, day.number - first + 1, day.lastOfYear() - first + 1)) return false;
  }
  if (!rule_.monthDays.empty()) {
    if (!holds(rule_.monthDays, day.dayOfMonth, day.lastOfMonth() - day.firstOfMonth() + 1)) return false;
  }
  return rule_.weekdays.empty() || meetsWeekdays(day);
}

/// BYDAY. Ordinals count within the month, or in a yearly rule without BYMONTH within the year; in other rules RFC 5545
/// forbids them, and they are ignored.
bool ICalRecurrence::meetsWeekdays(const CivilDay& day) const {
  const bool inYear = rule_.frequency == Frequency::Yearly && rule_.months == 0;
  const bool ordinalsCount = rule_.frequency >= Frequency::Monthly && rule_.weekNumbers.empty();
  return std::any_of(rule_.weekdays.begin(), rule_.weekdays.end(), [&](const RecurrenceRule::Weekday& weekday) {
    if (weekday.day != day.weekday) return false;
    if (weekday.ordinal == 0 || !ordinalsCount) return true;
    const std::int64_t days = weekday.ordinal > 0 ? day.number - (inYear ? day.firstOfYear() : day.firstOfMonth())
                                                  : (inYear ? day.lastOfYear() : day.lastOfMonth()) - day.number;
    return days / 7 + 1 == std::abs(weekday.ordinal);
  });
}

}  // namespace hushmode::devices
