// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/LengthText.h"

#include "apps/simulation/WrongValue.h"
#include "apps/terminal/Scanner.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace hushmode::cli {

namespace {

constexpr int hour = 60, day = 24 * hour, longest = 7 * day;

std::optional<int> minutesOf(const std::string& text) {
  Scanner scanner(text);
  int minutes = 0;
  auto number = scanner.number(1, 4);
  if (number && scanner.take("h")) {
    minutes = *number * hour;
    number = scanner.number(1, 4);
  }
  const bool isWhole = number ? scanner.take("min") || scanner.take("m") : minutes > 0;
  if (number) minutes += *number;
  return isWhole && scanner.isAtEnd() && minutes >= 1 && minutes <= longest ? std::optional(minutes) : std::nullopt;
}

/// As `minutesOf` reads it, in whole hours where they are.
std::string written(int minutes) {
  const int hours = minutes / hour, rest = minutes % hour;
  if (hours == 0 || (rest != 0 && hours == 1)) return fmt::format("{}m", minutes);
  return rest == 0 ? fmt::format("{}h", hours) : fmt::format("{}h{}m", hours, rest);
}

/// What a number without a unit, with a unit in words, a fraction ("1.5h") or a clock's form ("1:30") is meant as.
std::string nearestLength(const std::string& text) {
  std::string dense = text;
  std::erase(dense, ' ');
  if (dense.find('h') != std::string::npos) {
    // "1h 30m" and "1h30".
    for (const std::string& each : {dense, dense + "m"}) {
      if (const auto minutes = minutesOf(each)) return written(*minutes);
    }
  }
  Scanner scanner(text);
  scanner.skipBlanks();
  scanner.take("-");
  const auto number = scanner.number(1, 4);
  if (!number) return "";
  if (scanner.take(":")) {
    const auto minutes = scanner.number(2, 2);
    return minutes ? written(std::clamp(*number * hour + *minutes, 1, longest)) : "";
  }
  double amount = *number;
  if (scanner.take(".") || scanner.take(",")) {
    const auto digits = scanner.rest().size();
    const auto fraction = scanner.number(1, 4);
    if (fraction) amount += *fraction / std::pow(10.0, static_cast<double>(digits - scanner.rest().size()));
  }
  scanner.skipBlanks();
  // Nobody is quiet for two minutes.
  constexpr double mostHoursWithoutUnit = 4;
  const auto isUnit = [unit = scanner.rest()](std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), unit) != names.end();
  };
  int unit = 0;
  if (isUnit({""})) unit = amount <= mostHoursWithoutUnit ? hour : 1;
  if (isUnit({"m", "M", "min", "mins", "minute", "minutes"})) unit = 1;
  if (isUnit({"h", "H", "hr", "hrs", "hour", "hours"})) unit = hour;
  if (isUnit({"d", "D", "day", "days"})) unit = day;
  if (unit == 0) return "";
  const double minutes = amount * unit;
  return written(static_cast<int>(std::clamp<double>(std::round(minutes), 1, longest)));
}

}  // namespace

int parseLength(const std::string& text) {
  if (const auto minutes = minutesOf(text)) return *minutes;
  throw simulation::wrongValue("quiet " + text, tr("how long, such as 90m, 2h or 1h30m, at most a week"),
                               nearestLength(text));
}

}  // namespace hushmode::cli
