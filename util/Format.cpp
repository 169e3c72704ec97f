// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/Format.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace hushmode {

namespace {

std::string integerText(std::int64_t number) { return std::to_string(number); }

std::string decimalText(double number) {
  char text[400];
  const auto result = std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, 6);
  return std::string(text, result.ptr);
}

std::string shortestText(double number) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, number);
  return std::string(text, result.ptr);
}

std::string twoDigits(long number) { return number < 10 ? "0" + std::to_string(number) : std::to_string(number); }

struct Placeholder {
  enum class Kind { Text, Integer, Decimal } kind;
  std::size_t length;
};

std::optional<Placeholder> placeholderAt(std::string_view rest) {
  using Kind = Placeholder::Kind;
  if (rest.starts_with("%@") || rest.starts_with("%s")) return Placeholder{Kind::Text, 2};
  if (rest.starts_with("%d")) return Placeholder{Kind::Integer, 2};
  if (rest.starts_with("%ld")) return Placeholder{Kind::Integer, 3};
  if (rest.starts_with("%f")) return Placeholder{Kind::Decimal, 2};
  return std::nullopt;
}

std::string fill(Placeholder::Kind kind, const FormatArgument& argument) {
  if (const auto* text = std::get_if<std::string>(&argument)) return *text;
  if (const auto* integer = std::get_if<std::int64_t>(&argument)) {
    return kind == Placeholder::Kind::Decimal ? decimalText(static_cast<double>(*integer)) : integerText(*integer);
  }
  return decimalText(std::get<double>(argument));
}

}  // namespace

std::string formattedWith(std::string_view format, std::span<const FormatArgument> arguments) {
  std::string text;
  text.reserve(format.size() + 16 * arguments.size());
  std::size_t next = 0;
  for (std::size_t at = 0; at < format.size();) {
    const std::size_t percent = format.find('%', at);
    text += format.substr(at, percent - at);
    if (percent == std::string_view::npos) break;
    const auto placeholder = placeholderAt(format.substr(percent));
    if (placeholder && next < arguments.size()) {
      text += fill(placeholder->kind, arguments[next++]);
      at = percent + placeholder->length;
    } else {
      text += '%';
      at = percent + 1;
    }
  }
  return text;
}

std::string describe(platform::Date date) {
  using namespace std::chrono;
  // Far beyond any calendar: the number itself, rather than an overflowing conversion.
  if (!(std::abs(date.secondsSince1970()) < 1e11)) return decimalText(date.secondsSince1970());
  const auto instant = sys_seconds(seconds(static_cast<std::int64_t>(std::floor(date.secondsSince1970()))));
  const auto day = floor<days>(instant);
  const year_month_day ymd(day);
  const hh_mm_ss clock(instant - day);
  return std::to_string(static_cast<int>(ymd.year())) + "-" + twoDigits(static_cast<unsigned>(ymd.month())) + "-" +
         twoDigits(static_cast<unsigned>(ymd.day())) + " " + twoDigits(clock.hours().count()) + ":" +
         twoDigits(clock.minutes().count()) + ":" + twoDigits(clock.seconds().count()) + " +0000";
}

std::string describe(const platform::Value& value) {
  struct {
    std::string operator()(bool boolean) const { return boolean ? "1" : "0"; }
    std::string operator()(std::int64_t integer) const { return integerText(integer); }
    std::string operator()(double real) const { return shortestText(real); }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(platform::Date date) const { return describe(date); }
    std::string operator()(const platform::Data& data) const { return "<" + std::to_string(data.size()) + " bytes>"; }
    std::string operator()(const platform::Array& array) const {
      std::string text = "(";
      for (const platform::Value& element : array) {
        if (text.size() > 1) text += ", ";
        text += describe(element);
      }
      return text + ")";
    }
    std::string operator()(const platform::Dictionary& dictionary) const { return describe(dictionary); }
  } visitor;
  return std::visit(visitor, value.variant());
}

std::string describe(const platform::Dictionary& dictionary) {
  std::string text = "{";
  for (const auto& [key, value] : dictionary) {
    if (text.size() > 1) text += ", ";
    text += key + " = " + describe(value);
  }
  return text + "}";
}

std::string describe(const platform::Object* object) { return object ? object->description() : "(null)"; }

std::string describe(const std::vector<std::string>& texts) {
  std::string text = "(";
  for (const std::string& element : texts) {
    if (text.size() > 1) text += ", ";
    text += element;
  }
  return text + ")";
}

}  // namespace hushmode
