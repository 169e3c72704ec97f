// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListScalar.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>
#include <system_error>

namespace hushmode::devices {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// Takes `prefix` off the front of `text`, if it is there.
bool take(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

std::size_t takeDigits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count;
}

/// Decimal, or hexadecimal behind "0x"; what does not fit a signed 64-bit integer is no integer. Nor is a decimal with
/// a leading zero: libplist reads it as octal.
bool isInteger(std::string_view text) {
  text = trimmed(text);
  const bool negative = take(text, "-");
  if (!negative) take(text, "+");
  const int base = take(text, "0x") || take(text, "0X") ? 16 : 10;
  if (base == 10 && text.size() > 1 && text.front() == '0') return false;
  std::uint64_t magnitude = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
  constexpr std::uint64_t kMost = INT64_MAX;
  return error == std::errc() && end == text.data() + text.size() && magnitude <= (negative ? kMost + 1 : kMost);
}

/// Decimal with an optional exponent, or one of the words for what is no number and for infinity.
bool isReal(std::string_view text) {
  text = trimmed(text);
  if (!take(text, "-")) take(text, "+");
  if (text == "nan" || text == "inf" || text == "infinity") return true;
  std::size_t digits = takeDigits(text);
  if (take(text, ".")) digits += takeDigits(text);
  if (digits == 0) return false;
  if (take(text, "e") || take(text, "E")) {
    if (!take(text, "-")) take(text, "+");
    if (takeDigits(text) == 0) return false;
  }
  return text.empty();
}

std::optional<int> numberIn(std::string_view digits) {
  int number = 0;
  if (!std::all_of(digits.begin(), digits.end(), isDigit)) return std::nullopt;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

/// "2024-05-14T09:00:00Z", a date that exists and that the library can hold.
bool isDate(std::string_view text) {
  if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' || text[16] != ':' ||
      text[19] != 'Z') {
    return false;
  }
  const auto year = numberIn(text.substr(0, 4)), month = numberIn(text.substr(5, 2)), day = numberIn(text.substr(8, 2));
  const auto hour = numberIn(text.substr(11, 2)), minute = numberIn(text.substr(14, 2)),
             second = numberIn(text.substr(17, 2));
  if (!year || !month || !day || !hour || !minute || !second) return false;
  if (*hour > 23 || *minute > 59 || *second > 59) return false;

  using namespace std::chrono;
  const year_month_day date = std::chrono::year(*year) / *month / *day;
  if (!date.ok()) return false;
  const std::int64_t instant = sys_days(date).time_since_epoch() / 1s + *hour * 3600 + *minute * 60 + *second;
  return instant >= kFirstPropertyListSecond && instant <= kLastPropertyListSecond;
}

/// Base64 with its padding; white space may stand anywhere.
bool isBase64(std::string_view text) {
  std::size_t characters = 0, padding = 0;
  for (const char c : text) {
    if (isSpace(c)) continue;
    ++characters;
    if (c == '=') {
      ++padding;
    } else if (padding > 0 ||
               !(isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '+' || c == '/')) {
      return false;
    }
  }
  return characters % 4 == 0 && padding <= 2;
}

constexpr PropertyListScalar kScalars[] = {
    {"integer", HUSHMODE_MARKED("a whole number of 64 bits without leading zeros"), isInteger},
    {"real", HUSHMODE_MARKED("a decimal number"), isReal},
    {"date", HUSHMODE_MARKED("a date like 2024-05-14T09:00:00Z, from 1932-12-13 to 2069-01-19"), isDate},
    {"data", "base64", isBase64},
};

}  // namespace

const PropertyListScalar* propertyListScalarNamed(std::string_view element) {
  const auto found = std::find_if(std::begin(kScalars), std::end(kScalars),
                                  [&](const PropertyListScalar& scalar) { return scalar.element == element; });
  return found == std::end(kScalars) ? nullptr : found;
}

}  // namespace hushmode::devices
