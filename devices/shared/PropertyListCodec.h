// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListLimits.h"
#include "platform/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// A result, or in words why there is none.
template <class T>
struct PropertyListResult {
  std::optional<T> value;
  std::string error;  ///< Empty when there is a value.

  explicit operator bool() const { return value.has_value(); }
};

/// Reads a property list, XML (UTF-8) or binary. The error names the place and what was expected there: "line 12:
/// expected a date like …, found "today"", "byte 117: …".
///
/// The keys of a dictionary keep their order; of equal keys the last one's value stays, in the place of the first.
/// Malformed or truncated lists, integers beyond the signed 64 bits, dates that are not from 1932-12-13 to 2069-01-19,
/// and what property lists for users never hold (unique identifiers, sets, nulls) are errors. Not-a-number and infinity
/// are reals like others. Independent of the locale.
PropertyListResult<platform::Value> parsePropertyList(std::string_view bytes, const PropertyListLimits& limits = {});

/// Writes `value` as XML, in a form that parsePropertyList reads back as an equal value, but for what XML cannot hold:
/// bytes of texts that are no UTF-8 encoded XML characters become U+FFFD, dates lose fractions of seconds, those out of
/// range become the nearest in it (not a number: 1970). An error when `value` exceeds the default limits, so that it
/// could not be read back. Independent of the locale.
PropertyListResult<std::string> serializeXml(const platform::Value& value);

/// The same in the binary encoding: what is written as XML and what is written as binary read back as equal values.
PropertyListResult<std::string> serializeBinary(const platform::Value& value);

}  // namespace hushmode::devices
