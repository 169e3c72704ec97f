// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The icon in the status bar, through a library that is loaded on demand. A library that cannot be loaded is told,
// and there is no icon then.

#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"

namespace hushmode {

void HMProfilesManager::loadLibStatusbar() {
  if (platform::find<platform::LSStatusBarItem>()) return;
  constexpr int resolveNow = 2;
  if (platform::device().coreFoundation().dlopen("/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib",
                                                 resolveNow)) {
    logInformation("loadLibStatusbar", "******* 2. 'libstatusbar.dylib' loaded succesfully ********");
  } else {
    logError("loadLibStatusbar", "******* 2. Error while loading 'libstatusbar.dylib'********");
  }
}

void HMProfilesManager::showORHideIconsOnSpringBoard(bool show) {
  if (statusBarItem()) statusBarItem()->setVisible(show);
}

void HMProfile::showORHideIconsOnSpringBoard(bool show) {
  HMProfilesManager::sharedManager()->showORHideIconsOnSpringBoard(show);
}

void HMProfile::updateShowStatuBarState() {
  if (isApplied()) showORHideIconsOnSpringBoard(isShowOnStatusBar());
}

}  // namespace hushmode
