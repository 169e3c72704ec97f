// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/HMUtils.h"

#include "platform/Process.h"
#include "util/Numbers.h"

namespace hushmode {

namespace {
bool isAtLeast(float version) { return systemVersionNumber(platform::device().uiKit().systemVersion()) >= version; }
}  // namespace

float systemVersionNumber(std::string_view version) { return leadingFloat(version); }

bool HMUtils::isIOS9() { return isAtLeast(9.0F); }
bool HMUtils::isIOS10() { return isAtLeast(10.0F); }
bool HMUtils::isIOS11() { return isAtLeast(11.0F); }
bool HMUtils::isIOS12() { return isAtLeast(12.0F); }
bool HMUtils::isIOS13() { return isAtLeast(13.0F); }

std::shared_ptr<platform::NSDateFormatter> HMUtils::dateFormatter() {
  static constexpr char key = 0;
  return platform::Process::current().singleInstance<platform::NSDateFormatter>(
      &key, [] { return platform::device().foundation().makeDateFormatter(); }, [](platform::NSDateFormatter&) {});
}

bool HMUtils::isDarkModeEnabled() {
  constexpr int dark = 2;
  return platform::device().uiKit().userInterfaceStyle() == dark;
}

}  // namespace hushmode
