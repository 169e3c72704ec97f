// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/words/NearTime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fmt/format.h>

namespace hushmode {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

/// The digits in front; empty when there are none, or more than a date has.
std::string_view takeDigits(std::string_view& text) {
  constexpr std::size_t most = 8;
  const auto count = static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
  if (count > most) return {};
  const auto digits = text.substr(0, count);
  text.remove_prefix(count);
  return digits;
}

int numberOf(std::string_view digits) {
  int number = 0;
  for (const char c : digits) number = number * 10 + (c - '0');
  return number;
}

struct Clock {
  int minute = 0;
  bool hasPeriod = false;  ///< Of a clock of twelve hours.
};

std::optional<Clock> clockOf(std::string_view text) {
  text = trimmed(text);
  const auto digits = takeDigits(text);
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  const std::size_t hourDigits = digits.size() > 2 ? digits.size() - 2 : digits.size();
  int hour = numberOf(digits.substr(0, hourDigits)), minute = numberOf(digits.substr(hourDigits));
  // "9:5", and seconds, which are left out.
  for (int place = 0; place < 2 && !text.empty() && (text.front() == ':' || text.front() == '.'); ++place) {
    text.remove_prefix(1);
    const int part = numberOf(takeDigits(text));
    if (place == 0) minute = part;
  }
  std::string rest;
  for (const char c : trimmed(text)) {
    if (c != '.' && c != '\'') rest += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  const bool morning = rest == "am" || rest == "a", afternoon = rest == "pm" || rest == "p";
  constexpr std::array hourWords{"", "h", "hrs", "oclock", "uhr"};
  const bool isHour = std::find(hourWords.begin(), hourWords.end(), rest) != hourWords.end();
  if ((!morning && !afternoon && !isHour) || hour > 24 || minute > 59) return std::nullopt;
  if (hour < 12 && afternoon) hour += 12;
  if (hour == 12 && morning) hour = 0;
  return Clock{(hour % 24) * 60 + minute, morning || afternoon};
}

std::string written(int minute) { return fmt::format("{:02}:{:02}", minute / 60, minute % 60); }

/// Two texts with something between them that people write between times.
std::pair<std::string_view, std::string_view> parted(std::string_view text) {
  for (const std::string_view between : {"\u2013", "\u2014", "-", "..", " to ", " until ", "/", ",", " "}) {
    const auto place = text.find(between);
    if (place != std::string_view::npos && place > 0) {
      return {text.substr(0, place), text.substr(place + between.size())};
    }
  }
  return {text, {}};
}

std::optional<std::chrono::year_month_day> dayOf(int year, int month, int day) {
  using namespace std::chrono;
  if (month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
  const year_month_day_last last(std::chrono::year(year),
                                 month_day_last(std::chrono::month(static_cast<unsigned>(month))));
  return year_month_day(last.year(), last.month(), std::min(last.day(), std::chrono::day(static_cast<unsigned>(day))));
}

/// Takes a day off the front.
std::optional<std::chrono::year_month_day> takeDay(std::string_view& text) {
  const auto first = takeDigits(text);
  if (first.size() == 8) {
    return dayOf(numberOf(first.substr(0, 4)), numberOf(first.substr(4, 2)), numberOf(first.substr(6)));
  }
  if (first.empty() || text.empty() || std::string_view("-./").find(text.front()) == std::string_view::npos) {
    return std::nullopt;
  }
  const char separator = text.front();
  text.remove_prefix(1);
  const auto second = takeDigits(text);
  if (second.empty() || !text.starts_with(separator)) return std::nullopt;
  text.remove_prefix(1);
  const auto third = takeDigits(text);
  const int a = numberOf(first), b = numberOf(second), c = numberOf(third);
  if (first.size() == 4) return dayOf(a, b, c);
  if (third.size() != 4) return std::nullopt;
  if (separator == '.' || a > 12 || a == b) return dayOf(c, b, a);
  return b > 12 ? dayOf(c, a, b) : std::nullopt;
}

}  // namespace

std::optional<std::string> nearestClock(std::string_view text) {
  const auto clock = clockOf(text);
  return clock ? std::optional(written(clock->minute)) : std::nullopt;
}

std::optional<std::string> nearestHours(const std::string& text, bool withinOneDay) {
  const auto [from, to] = parted(trimmed(text));
  const auto start = clockOf(from);
  auto end = clockOf(to);
  if (!start || !end) return std::nullopt;
  constexpr int halfDay = 12 * 60;
  if (withinOneDay && end->minute <= start->minute && !end->hasPeriod && end->minute < halfDay) end->minute += halfDay;
  if (withinOneDay && end->minute <= start->minute) return std::nullopt;
  if (start->minute == end->minute) return std::nullopt;
  return written(start->minute) + "-" + written(end->minute);
}

std::optional<std::string> nearestDay(std::string_view text) {
  text = trimmed(text);
  const auto day = takeDay(text);
  if (!day) return std::nullopt;
  const std::string date = fmt::format("{:04}-{:02}-{:02}", static_cast<int>(day->year()),
                                       static_cast<unsigned>(day->month()), static_cast<unsigned>(day->day()));
  if (text.starts_with('T') || text.starts_with(',')) text.remove_prefix(1);
  if (trimmed(text).empty()) return date;
  const auto clock = nearestClock(text);
  return clock ? std::optional(date + "T" + *clock) : std::nullopt;
}

}  // namespace hushmode
