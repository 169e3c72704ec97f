// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/VolumeText.h"

#include "apps/terminal/Scanner.h"

#include <cmath>
#include <fmt/format.h>

namespace hushmode::cli {

namespace {

/// A number with a point or a comma; none where there is none, or where a number goes on.
std::optional<double> takeNumber(Scanner& scanner) {
  const auto whole = scanner.number(1, 9);
  double number = whole.value_or(0);
  if (scanner.take(".") || scanner.take(",")) {
    const auto before = scanner.rest().size();
    const auto fraction = scanner.number(1, 9);
    if (!fraction) return std::nullopt;
    number += *fraction / std::pow(10.0, static_cast<double>(before - scanner.rest().size()));
  } else if (!whole) {
    return std::nullopt;
  }
  return number;
}

}  // namespace

std::optional<double> volumeOf(const std::string& text) {
  Scanner scanner(text);
  scanner.skipBlanks();
  auto volume = takeNumber(scanner);
  if (!volume) return std::nullopt;
  scanner.skipBlanks();
  scanner.take("\u00a0");  // As some languages write it.
  if (scanner.take("%")) *volume /= 100;
  scanner.skipBlanks();
  return scanner.isAtEnd() && *volume <= 1 ? volume : std::nullopt;
}

std::string nearestVolume(const std::string& text) {
  Scanner scanner(text);
  scanner.skipBlanks();
  const bool isNegative = scanner.take("-");
  const auto number = takeNumber(scanner);
  if (!number) return "";
  if (isNegative) return "0%";
  if (*number > 100) return "100%";
  scanner.skipBlanks();
  const bool isFraction = *number <= 1 && !scanner.rest().starts_with("p") && !scanner.take("%");
  return fmt::format("{}%", std::round((isFraction ? *number * 100 : *number) * 100) / 100);
}

}  // namespace hushmode::cli
