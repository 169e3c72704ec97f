// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Foundation.h"

#include <memory>
#include <string_view>

namespace hushmode {

/// The version number that decides which way an effect takes: the leading decimal number of the system's version text,
/// in single precision ("13.1.2" is 13.1, "12.9999999" is 13).
HUSHMODE_API float systemVersionNumber(std::string_view version);

/// Small helpers shared by all rooms. Class methods only; the formatter may be obtained from any thread.
class HUSHMODE_API HMUtils {
 public:
  HMUtils() = delete;

  /// "At least" tests, not "equal to": on version 13 all five are true. The version is read anew on every call.
  static bool isIOS9();
  static bool isIOS10();
  static bool isIOS11();
  static bool isIOS12();
  static bool isIOS13();

  /// The one shared formatter, made on first use with its defaults; callers set what they need, from one thread at a
  /// time.
  static std::shared_ptr<platform::NSDateFormatter> dateFormatter();

  /// Whether the main screen's style is dark; false on systems without such a notion.
  static bool isDarkModeEnabled();
};

}  // namespace hushmode
