// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Changes to the list of profiles: near-duplicates that differ in how they find the profile, what they do to the list,
// which notification they post, and the words of their errors.

#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "util/Localization.h"
#include "util/Log.h"
#include "util/Now.h"

#include <algorithm>

namespace hushmode {

namespace {

using Profile = HMProfilesManager::Profile;

struct ErrorTexts {
  std::string_view description, reason, suggestion;
};

constexpr ErrorTexts titleTaken{"Unable to add profile.", "Profile name already exist.",
                                "Change profile name and try."};
constexpr ErrorTexts notSaved{"Unable to save profiles to disk.", {}, {}};
constexpr ErrorTexts updateNotFound{"Unable to update profile.",
                                    "Trying to update a profile that is not yet saved to disk.",
                                    "Is Profile saved to disk?"};
constexpr ErrorTexts deleteNotFound{
    "Unable to delete profile.", "Trying to delete a profile that is not yet available.", "Is Profile saved to disk?"};
constexpr ErrorTexts deleteNotSaved{"Unable to remove and save profiles to disk.", {}, {}};

StoreError errorWith(const ErrorTexts& texts) {
  StoreError error{platform::device().foundation().mainBundle()->bundleIdentifier(), 1, {}};
  error.userInfo["NSLocalizedDescriptionKey"] = localized(texts.description);
  if (!texts.reason.empty()) error.userInfo["NSLocalizedFailureReasonErrorKey"] = localized(texts.reason);
  if (!texts.suggestion.empty()) error.userInfo["NSLocalizedRecoverySuggestionErrorKey"] = localized(texts.suggestion);
  return error;
}

void succeed(const HMProfilesManager::Success& success) {
  if (success) success();
}

void fail(const HMProfilesManager::Failure& failure, const ErrorTexts& texts) {
  if (failure) failure(errorWith(texts));
}

/// The first profile of that identifier. By identifier and nothing else: `isEqual` would change what it compares.
std::vector<Profile>::iterator findByIdentifier(std::vector<Profile>& profiles, std::int64_t identifier) {
  return std::find_if(profiles.begin(), profiles.end(),
                      [&](const Profile& each) { return each->identifier() == identifier; });
}

}  // namespace

void HMProfilesManager::addProfile(const Profile& profile, const Success& success, const Failure& failure) {
  const Profile added = profile;
  const bool taken = std::any_of(profiles_.begin(), profiles_.end(), [&](const Profile& each) {
    return added->title() && each->title() && *each->title() == *added->title();
  });
  if (taken) return fail(failure, titleTaken);
  profiles_.push_back(added);
  if (saveAllProfilesToDisk(added, true, profileAddedNotification)) {
    succeed(success);
  } else {
    fail(failure, notSaved);
  }
}

void HMProfilesManager::updateProfile(const Profile& profile, const Success& success, const Failure& failure) {
  const Profile updated = profile;
  updated->setUpdatedDate(now());
  const auto place = findByIdentifier(profiles_, updated->identifier());
  if (place == profiles_.end()) return fail(failure, updateNotFound);
  *place = updated;
  if (saveAllProfilesToDisk(updated, true, profileChangedNotification)) {
    logInformation({"updateProfile:success:failure:", 342}, "Profile updated successfully.");
    succeed(success);
  } else {
    fail(failure, notSaved);
  }
}

void HMProfilesManager::deleteProfile(const Profile& profile, const Success& success, const Failure& failure) {
  const Profile deleted = profile;
  deleted->setUpdatedDate(now());  // Although it is about to leave the list.
  const auto place = findByIdentifier(profiles_, deleted->identifier());
  if (place == profiles_.end()) return fail(failure, deleteNotFound);
  profiles_.erase(place);
  if (saveAllProfilesToDisk(deleted, true, profileDeletedNotification)) {
    succeed(success);
  } else {
    fail(failure, deleteNotSaved);
  }
}

void HMProfilesManager::updateProfile(const Profile& profile, bool shouldPostNotification, const Success& success,
                                      const Failure& failure) {
  const Profile updated = profile;
  updated->setUpdatedDate(now());
  const auto place = findByIdentifier(profiles_, updated->identifier());
  if (place == profiles_.end()) return fail(failure, updateNotFound);
  *place = updated;
  if (saveAllProfilesToDisk(updated, shouldPostNotification, std::nullopt)) {
    logInformation({"updateProfile:shouldPostNotification:success:failure:", 32},
                   "HMProfilesManager+Hushmode -> Profile updated successfully.");
    succeed(success);
  } else {
    fail(failure, notSaved);
  }
}

}  // namespace hushmode
