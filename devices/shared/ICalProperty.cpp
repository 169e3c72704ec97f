// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalProperty.h"

#include "devices/shared/ICalText.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <system_error>

namespace hushmode::devices {

namespace {

/// The filled part of one of libical's arrays of numbers.
template <std::size_t Size>
std::span<const short> filledPart(const short (&numbers)[Size]) {
  std::size_t length = 0;
  while (length < Size && numbers[length] != ICAL_RECURRENCE_ARRAY_MAX) ++length;
  return {numbers, length};
}

std::vector<std::int16_t> listOf(std::span<const short> numbers) { return {numbers.begin(), numbers.end()}; }

std::uint64_t maskOf(std::span<const short> numbers) {
  std::uint64_t mask = 0;
  for (const short number : numbers) {
    if (number >= 0 && number < 64) mask |= std::uint64_t{1} << number;
  }
  return mask;
}

RecurrenceRule::Frequency frequencyOf(icalrecurrencetype_frequency frequency) {
  switch (frequency) {
    case ICAL_SECONDLY_RECURRENCE:
      return RecurrenceRule::Frequency::Secondly;
    case ICAL_MINUTELY_RECURRENCE:
      return RecurrenceRule::Frequency::Minutely;
    case ICAL_HOURLY_RECURRENCE:
      return RecurrenceRule::Frequency::Hourly;
    case ICAL_WEEKLY_RECURRENCE:
      return RecurrenceRule::Frequency::Weekly;
    case ICAL_MONTHLY_RECURRENCE:
      return RecurrenceRule::Frequency::Monthly;
    case ICAL_YEARLY_RECURRENCE:
      return RecurrenceRule::Frequency::Yearly;
    default:
      return RecurrenceRule::Frequency::Daily;
  }
}

/// The last wall time that UNTIL allows. Where either side is a date, only the date counts, as it is written.
std::optional<WallTime> lastMoment(const icaltimetype& until, const ICalTime& start) {
  const std::optional<WallTime> wall = wallTimeOf(until);
  if (!wall) return std::nullopt;
  if (start.isDate || until.is_date != 0) return (dayOf(*wall) + 1) * kSecondsPerDay - 1;
  const bool utc = icaltime_is_utc(until) != 0;
  return utc && start.zone != nullptr ? start.zone->localFromUtc(*wall) : *wall;
}

/// Takes the INTERVAL out of the rule, since libical keeps it in 16 bits, too few for the seconds of a day. Answers 1
/// when there is none; absent when it is no positive number.
std::optional<std::int32_t> takeInterval(std::string& rule) {
  constexpr std::string_view kName = "INTERVAL=";
  const auto found = std::search(rule.begin(), rule.end(), kName.begin(), kName.end(), [](char a, char b) {
    return equalsIgnoringCase({&a, 1}, {&b, 1});
  });
  if (found == rule.end()) return 1;
  const auto begin = static_cast<std::size_t>(found - rule.begin());
  const std::size_t end = std::min(rule.find(';', begin), rule.size());
  std::int32_t interval = 0;
  const auto result = std::from_chars(rule.data() + begin + kName.size(), rule.data() + end, interval);
  if (result.ec != std::errc() || result.ptr != rule.data() + end || interval < 1) return std::nullopt;
  // With the semicolon behind it, or as the last part the one before it.
  if (end < rule.size()) {
    rule.erase(begin, end + 1 - begin);
  } else {
    rule.erase(begin == 0 ? 0 : begin - 1);
  }
  return interval;
}

}  // namespace

ICalComponentPointer parsedComponent(const std::string& text) {
  // Else whatever libical meets that it does not understand would end the process.
  [[maybe_unused]] static const bool errorsAreReturned = (icalerror_set_errors_are_fatal(0), true);
  return {icalparser_parse_string(text.c_str()), icalcomponent_free};
}

std::string textOf(std::string_view line) {
  const std::string escaped(line.substr(valueBegin(line)));
  const std::unique_ptr<icalvalue, decltype(&icalvalue_free)> value(
      icalvalue_new_from_string(ICAL_TEXT_VALUE, escaped.c_str()), icalvalue_free);
  const char* text = value ? icalvalue_get_text(value.get()) : nullptr;
  return text != nullptr ? text : "";
}

std::string_view timeZoneIdentifierOf(icalproperty* property) {
  icalparameter* parameter = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
  const char* identifier = parameter != nullptr ? icalparameter_get_tzid(parameter) : nullptr;
  return identifier != nullptr ? identifier : std::string_view();
}

std::optional<WallTime> wallTimeOf(const icaltimetype& time) {
  if (icaltime_is_null_time(time) || time.year < 1 || time.year > 9999 || time.month < 1 || time.month > 12) {
    return std::nullopt;
  }
  if (time.day < 1 || time.day > icaltime_days_in_month(time.month, time.year)) return std::nullopt;
  const WallTime midnight = dayNumber(time.year, time.month, time.day) * kSecondsPerDay;
  return time.is_date != 0 ? midnight : midnight + time.hour * 3600 + time.minute * 60 + time.second;
}

std::optional<RecurrenceRule> recurrenceRuleOf(std::string_view value, const ICalTime& start) {
  std::string rest(value);
  const std::optional<std::int32_t> interval = takeInterval(rest);
  const icalrecurrencetype parsed = icalrecurrencetype_from_string(rest.c_str());
  if (parsed.freq == ICAL_NO_RECURRENCE || !interval) return std::nullopt;
  if (parsed.rscale != nullptr && std::string_view(parsed.rscale) != "GREGORIAN") return std::nullopt;
  RecurrenceRule rule;
  rule.frequency = frequencyOf(parsed.freq);
  rule.weekStart = static_cast<std::int8_t>(parsed.week_start == ICAL_NO_WEEKDAY ? 1 : parsed.week_start - 1);
  rule.interval = *interval;
  rule.count = parsed.count;
  if (icaltime_is_null_time(parsed.until) == 0) rule.until = lastMoment(parsed.until, start);
  rule.months = static_cast<std::uint32_t>(maskOf(filledPart(parsed.by_month)));
  rule.hours = maskOf(filledPart(parsed.by_hour));
  rule.minutes = maskOf(filledPart(parsed.by_minute));
  rule.seconds = maskOf(filledPart(parsed.by_second));
  rule.monthDays = listOf(filledPart(parsed.by_month_day));
  rule.yearDays = listOf(filledPart(parsed.by_year_day));
  rule.weekNumbers = listOf(filledPart(parsed.by_week_no));
  rule.positions = listOf(filledPart(parsed.by_set_pos));
  for (const short weekday : filledPart(parsed.by_day)) {
    const int day = icalrecurrencetype_day_day_of_week(weekday) - 1;
    const int ordinal = icalrecurrencetype_day_position(weekday);
    rule.weekdays.push_back({static_cast<std::int8_t>(day), static_cast<std::int16_t>(ordinal)});
  }
  return rule;
}

}  // namespace hushmode::devices
