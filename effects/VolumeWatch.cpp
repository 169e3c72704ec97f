// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A ringtone volume that the user changes while a profile is applied can be kept: once per application the user is
// asked.

#include "effects/SavedState.h"
#include "effects/VolumeMarks.h"
#include "store/HMProfilesManager.h"
#include "util/Format.h"
#include "util/HMUtils.h"
#include "util/Log.h"
#include "util/Numbers.h"

#include <algorithm>

namespace hushmode {

using platform::Notification;
using platform::Value;
using Profile = HMProfilesManager::Profile;

namespace {

constexpr int volumeQuestionTag = 431213;
enum Answer { YesPlease = 0, NoThanks = 1 };

std::shared_ptr<platform::AVSystemController> systemController() {
  return platform::device().celestial().sharedAVSystemController();
}

/// Whether a change is our own. From system 11 on that is so unless the buttons' mark is set; below 11 the mark means
/// the opposite. Meant.
bool isOwnChange() {
  const bool marked = hm_ChangedViaHWButtons(systemController());
  return HMUtils::isIOS11() ? !marked : marked;
}

const Value* userInfoValue(const Notification& notification, std::string_view key) {
  const auto place = notification.userInfo.find(key);
  return place == notification.userInfo.end() ? nullptr : std::get_if<Value>(&place->second);
}

Profile firstApplied(HMProfilesManager& manager) {
  const auto active = manager.activeProfiles();
  const auto place = std::find_if(active.begin(), active.end(), [](const Profile& each) { return each->isApplied(); });
  return place == active.end() ? nullptr : *place;
}

std::string hostText(std::string_view english) {
  return platform::device().foundation().mainBundle()->localizedStringForKey(english, "");
}

std::shared_ptr<platform::UIAlertView> makeQuestion(const std::weak_ptr<platform::Object>& delegate,
                                                    const Profile& profile) {
  platform::UIAlertDescription question;
  question.message =
      formatted(hostText("You changed ringtone volume of your device while '%@' is active. Do you want to "
                         "preserve this volume after the profile inactive?"),
                profile->title());
  question.title = hostText("Information");
  question.otherButtonTitles = {hostText("Yes, please"), hostText("No, thanks")};
  question.clickedButtonAtIndex = [delegate](const std::shared_ptr<platform::UIAlertView>& alert, int index) {
    if (const auto manager = std::static_pointer_cast<HMProfilesManager>(delegate.lock())) {
      manager->alertView(alert, index);
    }
  };
  return platform::device().uiKit().makeAlertView(std::move(question));
}

}  // namespace

void HMProfilesManager::volumeChanged(const Notification& notification) {
  if (isOwnChange()) {
    setHm_ChangedCounter(systemController(), hm_ChangedCounter(systemController()) - 1);
    return;
  }
  const Value* category = userInfoValue(notification, "AVSystemController_AudioCategoryNotificationParameter");
  const std::string* name = category ? category->as<std::string>() : nullptr;
  if (!name || *name != "Ringtone") return;
  const float newVolume =
      floatMeaning(userInfoValue(notification, "AVSystemController_AudioVolumeNotificationParameter"));
  logInformation("volumeChanged:", "newVolume: %f", newVolume);
  const Profile profile = firstApplied(*this);
  if (!profile) return;
  profile->setNewRingtoneVolume(newVolume);
  if (profile->isVolumeAlertShown()) {
    if (profile->shouldPreserveVolumeChange()) updateVolumeInUserDefaults(profile->newRingtoneVolume());
    return;
  }
  const auto question = makeQuestion(weak_from_this(), profile);  // Held: an answer inside the call would clear it.
  setVolumePreserveAlertView(question);
  question->setTag(volumeQuestionTag);
  question->show();
  profile->setVolumeAlertShown(true);
}

void HMProfilesManager::updateVolumeInUserDefaults(double volume) {
  logInformation("updateVolumeInUserDefaults:", "User updated volume hence storing new volume : %f in user defaults.",
                 volume);
  userDefaults().setFloat(static_cast<float>(volume), saved::ringtone);
  userDefaults().synchronize();
}

void HMProfilesManager::alertView(const std::shared_ptr<platform::UIAlertView>& alert, int clickedButtonAtIndex) {
  if (!alert || alert->tag() != volumeQuestionTag) return;
  // The profile applied at the moment of the answer, which need not be the one that was asked about.
  if (const Profile profile = firstApplied(*this)) {
    profile->setPreserveVolumeChange(clickedButtonAtIndex == YesPlease);
    if (clickedButtonAtIndex == YesPlease) updateVolumeInUserDefaults(profile->newRingtoneVolume());
  }
  setVolumePreserveAlertView(nullptr);
}

}  // namespace hushmode
