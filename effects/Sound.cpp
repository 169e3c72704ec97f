// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The one place that changes the phone's volumes.

#include "effects/SavedState.h"
#include "effects/SystemVolume.h"
#include "effects/VolumeMarks.h"
#include "model/HMProfile.h"
#include "util/Log.h"

namespace hushmode {

namespace {

constexpr const char* method = "applySoundSettings:";

std::shared_ptr<platform::AVSystemController> systemController() {
  return platform::device().celestial().sharedAVSystemController();
}

bool isSaved(std::string_view key) { return userDefaults().valueForKey(key).has_value(); }

/// The ringtone volume as found, saved if none was saved yet; 0 when nothing was read.
float saveRingtoneVolume() {
  if (isSaved(saved::ringtone)) return 0;
  float found = 0;
  systemController()->getVolume(found, "Ringtone");
  userDefaults().setFloat(found, saved::ringtone);
  userDefaults().synchronize();
  return found;
}

void saveGeneralVolume() {
  if (isSaved(saved::volume)) return;
  const double found = systemVolumeAsRead();
  userDefaults().setFloat(static_cast<float>(found), saved::volume);
  userDefaults().synchronize();
  logInformation(method, "*********** Volume-> olderDeviceVol: %f", found);
}

void setSystemVolumeHUDEnabled(bool enabled) {
  platform::device().uiKit().sharedApplication()->setSystemVolumeHUDEnabled(enabled);
}

void setRingtoneVolume(double volume) { systemController()->setVolumeTo(static_cast<float>(volume), "Ringtone"); }

/// Saves the media volume if none is saved, sets the target, and has the volume indicator come back 2 seconds later.
void switchMediaVolume(const std::shared_ptr<HMProfile>& profile, bool apply) {
  const auto control = volumeControl();
  logInformation(method, "******* Before, [volumeController getMediaVolume]: %f", mediaVolume());
  if (!isSaved(saved::playBackVolume)) {
    const float found = mediaVolume();
    userDefaults().setFloat(found, saved::playBackVolume);
    userDefaults().synchronize();
    logInformation(method, "******* playBackVolume: %f", found);
  }
  logInformation(method, "******* [volumeController volume]: %f", control ? control->volume() : 0.0F);
  const float target =
      apply ? static_cast<float>(profile->playBackVolume()) : userDefaults().floatForKey(saved::playBackVolume);
  logInformation(method, "******* self.playBackVolume: %f", profile->playBackVolume());
  if (control) control->setMediaVolume(target);
  logInformation(method, "******* After, [volumeController getMediaVolume]: %f", mediaVolume());
  mainRunLoop().cancelPreviousPerformRequests(profile, "hideSystemVolumeHUD");
  mainRunLoop().performSelector(profile, "hideSystemVolumeHUD", 2.0, [profile] { profile->hideSystemVolumeHUD(); });
}

}  // namespace

void HMProfile::applySoundSettings(bool apply) {
  const auto profile = self();
  logInformation(method, "*********** applySoundSettings: %d", apply);
  setHm_ChangedViaHWButtons(systemController(), false);
  const float olderRingerVolume = saveRingtoneVolume();
  saveGeneralVolume();
  const double ringerTarget = apply ? ringerVolume() : userDefaults().floatForKey(saved::ringtone);
  // The general volume's target is told and never set: only the ringtone and the media volume change.
  const double deviceTarget = apply ? deviceVolume() : userDefaults().floatForKey(saved::volume);
  logInformation(method, "******* Older Ringer Volume: %f", olderRingerVolume);
  logInformation(method, "******* ringerVolume: %f", ringerTarget);
  logInformation(method, "******* deviceVolume: %f", deviceTarget);
  setHm_ChangedCounter(systemController(), hm_ChangedCounter(systemController()) + 1);
  logInformation(method, "self.isPlayAlert: %d & apply: %d && self.isSilent: %d", isPlayAlert(), apply, isSilent());

  const bool withTone = isPlayAlert() && !isSilent();
  setSystemVolumeHUDEnabled(false);
  const auto mediaStep = [profile, apply] { switchMediaVolume(profile, apply); };
  if (withTone && apply) {
    // The tone sounds at the phone's own volume, before the profile's takes over.
    playAlertToneFromIdentifier([ringerTarget, mediaStep](bool) {
      setRingtoneVolume(ringerTarget);
      mediaStep();
    });
    return;
  }
  setRingtoneVolume(ringerTarget);
  if (withTone) {
    playAlertToneFromIdentifier([mediaStep](bool) { mediaStep(); });
  } else {
    mediaStep();
  }
}

void HMProfile::hideSystemVolumeHUD() {
  mainRunLoop().dispatchAsync([] { setSystemVolumeHUDEnabled(true); });
}

}  // namespace hushmode
