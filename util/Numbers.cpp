// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/Numbers.h"

#include "util/Format.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace hushmode {

using platform::Value;

namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";

std::string_view withoutLeadingSpace(std::string_view text) {
  const std::size_t first = text.find_first_not_of(whiteSpace);
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// Takes a sign off the front; true for a minus.
bool takeSign(std::string_view& text) {
  if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
  const bool negative = text.front() == '-';
  text.remove_prefix(1);
  return negative;
}

std::int64_t digits(std::string_view text) {
  std::int64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) return std::numeric_limits<std::int64_t>::max();
  return number;
}

bool beginsWithDigit(std::string_view text) { return !text.empty() && text.front() >= '0' && text.front() <= '9'; }

std::int64_t truncated(double number) {
  if (std::isnan(number)) return 0;
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (number >= limit) return std::numeric_limits<std::int64_t>::max();
  if (number < -limit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(number);
}

float narrowed(double number) {
  // A double beyond the range of float has no defined conversion; it means infinity.
  constexpr double limit = std::numeric_limits<float>::max();
  if (number > limit) return std::numeric_limits<float>::infinity();
  if (number < -limit) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(number);
}

bool textIsTrue(std::string_view text) {
  text = withoutLeadingSpace(text);
  takeSign(text);
  while (!text.empty() && text.front() == '0') text.remove_prefix(1);
  return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != std::string_view::npos;
}

std::int64_t textAsInteger(std::string_view text) {
  text = withoutLeadingSpace(text);
  const bool negative = takeSign(text);
  const std::int64_t number = beginsWithDigit(text) ? digits(text) : 0;
  return negative ? -number : number;
}

}  // namespace

std::int64_t leadingInteger(std::string_view text) {
  text = withoutLeadingSpace(text);
  return beginsWithDigit(text) ? digits(text) : 0;
}

float leadingFloat(std::string_view text) {
  text = withoutLeadingSpace(text);
  const bool negative = takeSign(text);
  // Digits first: from_chars takes "inf" and "nan" too, and these are no decimal numbers.
  if (!beginsWithDigit(text) && !(text.starts_with('.') && beginsWithDigit(text.substr(1)))) return 0;
  float number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  if (result.ec == std::errc::result_out_of_range) {
    // Too large, or too close to zero? Only a large one has a digit other than 0 before its point.
    const std::size_t significant = text.find_first_not_of('0');
    number = beginsWithDigit(text.substr(significant)) ? std::numeric_limits<float>::infinity() : 0;
  }
  return negative ? -number : number;
}

bool booleanMeaning(const Value* value) {
  if (!value) return false;
  if (const auto* boolean = value->as<bool>()) return *boolean;
  if (const auto* integer = value->as<std::int64_t>()) return *integer != 0;
  if (const auto* real = value->as<double>()) return *real != 0;
  if (const auto* text = value->as<std::string>()) return textIsTrue(*text);
  return false;
}

std::int64_t integerMeaning(const Value* value) {
  if (!value) return 0;
  if (const auto* integer = value->as<std::int64_t>()) return *integer;
  if (const auto* boolean = value->as<bool>()) return *boolean;
  if (const auto* real = value->as<double>()) return truncated(*real);
  if (const auto* text = value->as<std::string>()) return textAsInteger(*text);
  return 0;
}

float floatMeaning(const Value* value) {
  if (!value) return 0;
  if (const auto* real = value->as<double>()) return narrowed(*real);
  if (const auto* integer = value->as<std::int64_t>()) return static_cast<float>(*integer);
  if (const auto* boolean = value->as<bool>()) return *boolean ? 1.0F : 0.0F;
  if (const auto* text = value->as<std::string>()) return leadingFloat(*text);
  return 0;
}

std::optional<std::string> textMeaning(const Value* value) {
  if (!value) return std::nullopt;
  if (const auto* text = value->as<std::string>()) return *text;
  if (value->as<bool>() || value->as<std::int64_t>() || value->as<double>()) return describe(*value);
  return std::nullopt;
}

}  // namespace hushmode
