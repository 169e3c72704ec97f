// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <cstdint>
#include <string_view>

namespace hushmode::devices {

/// An XML element whose text has a form of its own.
struct PropertyListScalar {
  std::string_view element;
  const char* expectation;  ///< For messages, to be translated: "a whole number of 64 bits".
  bool (*accepts)(std::string_view text);
};

/// The scalar with that element name; null when there is none.
const PropertyListScalar* propertyListScalarNamed(std::string_view element);

/// libplist counts dates in 32-bit seconds from this one, 2001-01-01 00:00 UTC, in seconds since 1970.
inline constexpr std::int64_t kPropertyListEpoch = 978'307'200;
/// The first and the last second that it can hold: 1932-12-13 20:45:52 and 2069-01-19 03:14:07 UTC.
inline constexpr std::int64_t kFirstPropertyListSecond = kPropertyListEpoch - 2'147'483'648;
inline constexpr std::int64_t kLastPropertyListSecond = kPropertyListEpoch + 2'147'483'647;

}  // namespace hushmode::devices
