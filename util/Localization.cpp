// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/Localization.h"

#include "platform/Process.h"

namespace hushmode {

std::string localized(std::string_view english) {
  platform::Foundation& foundation = platform::device().foundation();
  if (const auto bundle = foundation.bundleWithPath("/Library/PreferenceBundles/HushmodePreferences.bundle")) {
    return bundle->localizedStringForKey(english, std::nullopt);
  }
  return foundation.mainBundle()->localizedStringForKey(english, "");
}

}  // namespace hushmode
