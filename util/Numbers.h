// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Export.h"
#include "platform/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hushmode {

/// The integer that `text` begins with: leading white space is skipped, leading digits are taken, 0 where there are
/// none (so also for a sign). Saturates at the largest 64-bit value.
HUSHMODE_API std::int64_t leadingInteger(std::string_view text);

/// The decimal number that `text` begins with ("13.1.2" is 13.1), whatever the locale; 0 where there is none.
HUSHMODE_API float leadingFloat(std::string_view text);

/// What a property-list value means as a boolean, an integer, a volume or a text. A value of another type converts by
/// its own meaning (the text "yes" is true, the integer 2 is true, the text "12 pm" is 12); what has no such meaning,
/// and an absent value (null), is false, 0, or no text.
HUSHMODE_API bool booleanMeaning(const platform::Value* value);
HUSHMODE_API std::int64_t integerMeaning(const platform::Value* value);
HUSHMODE_API float floatMeaning(const platform::Value* value);
HUSHMODE_API std::optional<std::string> textMeaning(const platform::Value* value);

}  // namespace hushmode
