// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "platform/Export.h"
#include "platform/Object.h"
#include "platform/PropertyList.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace hushmode {

/// Text for `%@`. Dates are written in UTC as "2024-05-14 09:00:00 +0000"; what is absent as "(null)".
HUSHMODE_API std::string describe(platform::Date date);
HUSHMODE_API std::string describe(const platform::Value& value);
HUSHMODE_API std::string describe(const platform::Dictionary& dictionary);
HUSHMODE_API std::string describe(const platform::Object* object);
HUSHMODE_API std::string describe(const std::vector<std::string>& texts);
inline std::string describe(std::string_view text) { return std::string(text); }
inline std::string describe(const std::string& text) { return text; }
inline std::string describe(const char* text) { return text; }
template <class T>
requires std::derived_from<T, platform::Object> std::string describe(const std::shared_ptr<T>& object) {
  return describe(static_cast<const platform::Object*>(object.get()));
}
/// "(a, b)" of the elements' descriptions.
template <class T>
requires std::derived_from<T, platform::Object> std::string describe(const std::vector<std::shared_ptr<T>>& objects) {
  std::string text = "(";
  for (const auto& object : objects) {
    if (text.size() > 1) text += ", ";
    text += describe(object);
  }
  return text + ")";
}

template <class T>
std::string describe(const std::optional<T>& value) {
  return value ? describe(*value) : "(null)";
}

/// One argument of `formatted`: an integer (booleans are 1 and 0), a double, or text.
using FormatArgument = std::variant<std::int64_t, double, std::string>;

template <class T>
FormatArgument formatArgument(const T& argument) {
  if constexpr (std::integral<T>) {
    return static_cast<std::int64_t>(argument);
  } else if constexpr (std::floating_point<T>) {
    return static_cast<double>(argument);
  } else {
    return describe(argument);
  }
}

HUSHMODE_API std::string formattedWith(std::string_view format, std::span<const FormatArgument> arguments);

/// `format` with its placeholders filled in order: `%@` and `%s` text, `%d` and `%ld` integers, `%f` a number with six
/// decimals, whatever the locale. A placeholder fills with any kind of argument; one without an argument, and any other
/// text, stands as it is.
template <class... Arguments>
std::string formatted(std::string_view format, const Arguments&... arguments) {
  const std::array<FormatArgument, sizeof...(Arguments)> list{formatArgument(arguments)...};
  return formattedWith(format, list);
}

}  // namespace hushmode
