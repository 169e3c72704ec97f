// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Export.h"

#include <string>
#include <string_view>

namespace hushmode {

/// The localised text for an English one: from the default string table of the preference bundle, or, when that bundle
/// cannot be opened, of the host's main bundle. A missing translation yields the English text.
HUSHMODE_API std::string localized(std::string_view english);

}  // namespace hushmode
