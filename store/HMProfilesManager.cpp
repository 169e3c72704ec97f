// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "store/HMProfilesManager.h"

#include "platform/Celestial.h"
#include "platform/Process.h"
#include "util/Log.h"
#include "util/Numbers.h"

namespace hushmode {

using platform::Array;
using platform::Dictionary;
using platform::Value;

HMProfilesManager::HMProfilesManager(Private) {}

HMProfilesManager::~HMProfilesManager() {
  if (!platform::Process::hasCurrent()) return;  // Its process has ended, and with it all observations.
  platform::device().foundation().defaultNotificationCenter().removeObserver(this);
}

std::shared_ptr<HMProfilesManager> HMProfilesManager::sharedManager() {
  static constexpr char key = 0;
  return platform::Process::current().singleInstance<HMProfilesManager>(
      &key, [] { return std::make_shared<HMProfilesManager>(Private()); },
      [](HMProfilesManager& manager) { manager.initialize(); });
}

void HMProfilesManager::initialize() {
  loadLibStatusbar();
  if (auto* itemClass = platform::find<platform::LSStatusBarItem>()) {
    setStatusBarItem(itemClass->initWithIdentifier("com.quorvel.hushmode", 2));
  }
  if (statusBarItem()) {
    statusBarItem()->setImageName("Profile");
    statusBarItem()->setVisible(false);
  }
  setScheduledEventsDict({});
  loadProfiles();
  platform::device().foundation().defaultNotificationCenter().addObserver(
      this, platform::AVSystemController::systemVolumeDidChangeNotification, nullptr,
      [this](const platform::Notification& notification) { volumeChanged(notification); });
}

bool HMProfilesManager::isHushmodeEnabled() {
  const auto settings = platform::device().foundation().files().dictionaryWithContentsOfFile(settingsPath);
  return settings && booleanMeaning(settings->find("com.quorvel.hushmode.enabled"));
}

void HMProfilesManager::createAndSaveDefaultProfile() {
  platform::PropertyListFiles& files = platform::device().foundation().files();
  if (files.fileExists(profilesPath)) return;
  files.writeArrayToFileAtomically({HMProfile::defaultProfile()->dictionaryRepresentation()}, profilesPath);
}

void HMProfilesManager::loadProfiles() {
  profiles_.clear();
  const auto elements = platform::device().foundation().files().arrayWithContentsOfFile(profilesPath);
  if (!elements) return;
  profiles_.reserve(elements->size());
  for (const Value& element : *elements) {
    // An element that is no dictionary cannot be a profile; it is passed over.
    if (const auto* dictionary = element.as<Dictionary>()) {
      profiles_.push_back(HMProfile::initWithDictionary(*dictionary));
    }
  }
}

void HMProfilesManager::reloadProfiles() { loadProfiles(); }

bool HMProfilesManager::saveAllProfilesToDisk(const Profile& profile, bool postNotification,
                                              std::optional<std::string_view> notificationName) {
  static constexpr const char* method = "saveAllProfilesToDisk:postNotification:notificationName:";
  const Profile concerned = profile;  // Observers may drop the list's reference.
  Array dictionaries;
  dictionaries.reserve(profiles_.size());
  for (const Profile& each : profiles_) dictionaries.emplace_back(each->dictionaryRepresentation());
  platform::Foundation& foundation = platform::device().foundation();
  const bool written = foundation.files().writeArrayToFileAtomically(dictionaries, profilesPath);
  // Said also when the write failed; the result is what tells.
  logInformation({method, 286}, "Profiles saved successfully to the disk.");
  if (written && postNotification && notificationName) {
    const std::string name(*notificationName);
    logInformation({method, 289}, "Posting notification: %@", name);
    foundation.defaultNotificationCenter().post({name, nullptr, {{"profile", concerned}}});
    platform::device().coreFoundation().postDarwinNotification(name);
  }
  return written;
}

}  // namespace hushmode
