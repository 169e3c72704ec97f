// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The phone's two vibrate switches, and the short vibration as feedback.

#include "effects/SavedState.h"
#include "model/HMProfile.h"
#include "util/Log.h"
#include "util/Numbers.h"

namespace hushmode {

using platform::Array;
using platform::Dictionary;

namespace {

constexpr const char* method = "vibrate:";
constexpr std::string_view homeScreenDomain = "com.apple.springboard";

void logAsterisks() { logInformation(method, "************************************************"); }

void vibrationFeedback() {
  constexpr std::uint32_t vibrationOnly = 4095;
  static const Dictionary pattern{{"VibePattern", Array{true, 300.0}}, {"Intensity", 1.0}};
  platform::device().audioToolbox().AudioServicesPlaySystemSoundWithVibration(vibrationOnly, pattern);
}

void writeSwitches(Dictionary& domain, bool ring, bool silent) {
  domain.set("ring-vibrate", ring);
  domain.set("silent-vibrate", silent);
  userDefaults().setPersistentDomain(domain, homeScreenDomain);
  platform::CoreFoundation& coreFoundation = platform::device().coreFoundation();
  coreFoundation.postDarwinNotification("com.apple.springboard.ring-vibrate.changed");
  coreFoundation.postDarwinNotification("com.apple.springboard.silent-vibrate.changed");
}

struct Switches {
  bool ring, silent;
};

/// Sets both switches to `status`; with `revertAfter` back to `old` 0.3 seconds later, in the domain as it was read, so
/// that whatever else changed there meanwhile is overwritten.
void changeSwitches(Dictionary domain, bool status, bool revertAfter, Switches old) {
  logAsterisks();
  logInformation(method, "changeVibrateStatus() is called");
  logAsterisks();
  writeSwitches(domain, status, status);
  if (!revertAfter) return;
  logAsterisks();
  logInformation(method, "shouldRevertStatus, hence oldHMRingVibrateState: %d & oldHMSilentVibrateState: %d", old.ring,
                 old.silent);
  logAsterisks();
  mainRunLoop().dispatchAfter(0.3, [domain = std::move(domain), status, old]() mutable {
    if (status) vibrationFeedback();
    writeSwitches(domain, old.ring, old.silent);
  });
}

bool savedOr(std::string_view key, bool otherwise) {
  const auto value = userDefaults().valueForKey(key);
  return value ? booleanMeaning(&*value) : otherwise;
}

}  // namespace

void HMProfile::vibrate(bool on) {
  Dictionary domain = userDefaults().persistentDomainForName(homeScreenDomain).value_or(Dictionary());
  const Switches found{booleanMeaning(domain.find("ring-vibrate")), booleanMeaning(domain.find("silent-vibrate"))};
  // Read before they are overwritten below: the write-back goes to what an earlier call found.
  const Switches old{savedOr(saved::ringVibrate, found.ring), savedOr(saved::silentVibrate, found.silent)};
  logAsterisks();
  logInformation(method, "oldRingVibrateState: %d", found.ring);  // The present state, in spite of the label.
  logAsterisks();
  if (!found.ring) return changeSwitches(std::move(domain), on, false, old);
  if (isVibrate() || on) vibrationFeedback();
  userDefaults().setBool(found.ring, saved::ringVibrate);
  userDefaults().setBool(found.silent, saved::silentVibrate);
  userDefaults().synchronize();
  // Switching on needs nothing: vibrating on ring is on already.
  if (!on) changeSwitches(std::move(domain), false, isVibrate(), old);
}

}  // namespace hushmode
