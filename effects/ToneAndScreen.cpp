// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The alert tone at a switch, and the light of the screen. What a missing class should do is simply not done; the
// tone's completion runs all the same, so that the sound sequence always ends.

#include "effects/SavedState.h"
#include "model/HMProfile.h"
#include "platform/SpringBoard.h"
#include "platform/ToneLibrary.h"
#include "util/HMUtils.h"

namespace hushmode {

using platform::SBBacklightController;
using platform::TLAlert;

namespace {

bool deviceIsLocked() {
  auto* springBoardClass = platform::find<platform::SpringBoard>();
  const auto springBoard = springBoardClass ? springBoardClass->sharedApplication() : nullptr;
  return springBoard && springBoard->isLocked();
}

/// Starts the tone in the first way that this system knows; the alert, if one could be made.
std::shared_ptr<TLAlert> startTone(const TLAlert::Identifier& tone) {
  auto* alertClass = platform::find<TLAlert>();
  if (!alertClass) return nullptr;
  const int type = HMUtils::isIOS10() ? 1 : 0;
  const auto alert = alertClass->respondsTo("initWithType:toneIdentifier:vibrationIdentifier:")
                         ? alertClass->initWithType(type, tone, std::nullopt)
                         : nullptr;
  if (alert && alert->respondsTo("startPlayingRepeatedly")) {
    alert->startPlayingRepeatedly();
  } else if (alertClass->respondsTo("playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:")) {
    alertClass->playToneAndVibrationForType(type, tone, std::nullopt);
  } else if (alertClass->respondsTo("_playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:"
                                    "shouldOverrideMasterSwitches:")) {
    alertClass->_playToneAndVibrationForType(type, tone, std::nullopt, false);
  }
  return alert;
}

void fadeOut(const std::shared_ptr<SBBacklightController>& backlight) {
  if (backlight->respondsTo("_setBacklightFactorToZeroForProx")) {
    backlight->_setBacklightFactorToZeroForProx();
  } else if (backlight->respondsTo("_startFadeOutAnimationFromLockSource:")) {
    backlight->_startFadeOutAnimationFromLockSource(1);
  }
}

constexpr double secondsOfLight = 5.0;

}  // namespace

void HMProfile::playAlertToneFromIdentifier(std::function<void(bool)> completion) {
  const auto alert = startTone(alertToneIdentifier());
  mainRunLoop().dispatchAfter(1.0, [alert, completion = std::move(completion)] {
    if (alert && alert->respondsTo("stop")) alert->stop();
    if (!completion) return;
    mainRunLoop().dispatchAfter(deviceIsLocked() ? 0.0 : 0.8, [completion] { completion(true); });
  });
}

void HMProfile::wakeUpScreenIfRequired() {
  if (!isWakeUpScreen() || isSilent()) return;
  auto* backlightClass = platform::find<SBBacklightController>();
  const auto backlight = backlightClass ? backlightClass->sharedInstance() : nullptr;
  if (HMUtils::isIOS10()) {
    const bool wasOn = backlight && backlight->screenIsOn();
    if (backlight && backlight->respondsTo("turnOnScreenFullyWithBacklightSource:")) {
      backlight->turnOnScreenFullyWithBacklightSource(1);
    } else if (backlight) {
      backlight->setBacklightFactor(1.0, 1);
    }
    if (wasOn) return;
    mainRunLoop().dispatchAfter(secondsOfLight, [backlight] {
      if (backlight) fadeOut(backlight);
    });
  } else {
    // Below 10 the screen dims afterwards even if it was on before. Meant.
    if (backlight) backlight->_undimFromSource(1);
    mainRunLoop().dispatchAfter(secondsOfLight, [backlight] {
      if (backlight) backlight->_lockScreenDimTimerFired();
    });
  }
}

}  // namespace hushmode
