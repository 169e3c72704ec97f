// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Changes to the profiles while the host runs: what is applied is brought in line at once.

#include "host/Host.h"
#include "util/Now.h"
#include "util/Numbers.h"

#include <algorithm>

namespace hushmode::host {

using platform::Dictionary;

namespace {

std::shared_ptr<HMProfilesManager> manager() { return HMProfilesManager::sharedManager(); }

std::string textOf(const StoreError& error) {
  const auto part = [&](const char* key) {
    const auto place = error.userInfo.find(key);
    return place == error.userInfo.end() ? std::string() : place->second;
  };
  const std::string reason = part("NSLocalizedFailureReasonErrorKey");
  return part("NSLocalizedDescriptionKey") + (reason.empty() ? "" : " " + reason);
}

HMProfilesManager::Failure keeping(std::optional<std::string>& refusal) {
  return [&refusal](const StoreError& error) { refusal = textOf(error); };
}

void requireFreeTitle(const HMProfile& profile) {
  if (!profile.title() || profile.title()->empty()) {
    throw EditError(EditError::Kind::InvalidArgument, Message("a profile needs a title"));
  }
  for (const auto& each : manager()->profiles()) {
    if (each->identifier() != profile.identifier() && each->title() == profile.title()) {
      throw EditError(EditError::Kind::TitleTaken, Message("another profile is called \"{0}\"", *profile.title()));
    }
  }
}

void requireReadableTimes(const HMProfile& profile) {
  if (const auto fault = unreadableTime(profile)) {
    throw EditError(EditError::Kind::InvalidArgument, Message("{0}; write times as \"8:00 AM\"", *fault));
  }
}

auto placeOf(std::int64_t identifier) {
  auto& profiles = manager()->profiles();
  const auto place = std::find_if(profiles.begin(), profiles.end(),
                                  [&](const auto& each) { return each->identifier() == identifier; });
  if (place == profiles.end()) {
    throw EditError(EditError::Kind::UnknownProfile, Message("no profile has the identifier {0}", identifier));
  }
  return place;
}

}  // namespace

template <class Work>
void Host::edit(Work work) {
  if (!process_) throw std::logic_error("the host is not running");
  begin();
  try {
    planned_ = true;
    work();
  } catch (const std::exception&) {
    end();
    throw;
  }
  end();
}

std::int64_t Host::addProfile(const Dictionary& profile) {
  std::int64_t identifier = 0;
  edit([&] {
    Dictionary given = profile;
    given.remove("identifier");
    given.remove("applied");
    const Profile added = HMProfile::initWithDictionary(given);
    // The identifier is the second of the creation, and two may be created in one.
    const auto taken = [&] {
      return std::any_of(manager()->profiles().begin(), manager()->profiles().end(),
                         [&](const Profile& each) { return each->identifier() == added->identifier(); });
    };
    while (taken()) added->setIdentifier(added->identifier() + 1);
    requireFreeTitle(*added);
    requireReadableTimes(*added);
    std::optional<std::string> refusal;
    manager()->addProfile(added, nullptr, keeping(refusal));
    if (refusal) {
      std::erase(manager()->profiles(), added);
      throw EditError(EditError::Kind::NotSaved, Message::verbatim(*refusal));
    }
    identifier = added->identifier();
    if (enabled_ && added->isEnabled()) planOne(added, true);
  });
  return identifier;
}

void Host::updateProfile(std::int64_t identifier, const Dictionary& changes) {
  edit([&] {
    const Profile current = *placeOf(identifier);
    Dictionary edited = current->dictionaryRepresentation();
    for (const auto& [key, value] : changes) edited.set(key, value);
    edited.set("identifier", identifier);
    edited.set("applied", current->isApplied());
    Profile next = HMProfile::initWithDictionary(edited);
    requireFreeTitle(*next);
    requireReadableTimes(*next);

    restore_->releaseHand();
    const Day day = dayOf(next);
    if (current->isApplied() && !(enabled_ && expectation(day.conditions, day.happenings, now()).on)) {
      current->revert(true);
      edited.set("applied", false);
      next = HMProfile::initWithDictionary(edited);
    }
    std::optional<std::string> refusal;
    manager()->updateProfile(next, nullptr, keeping(refusal));
    if (refusal) {
      *placeOf(identifier) = current;
      throw EditError(EditError::Kind::NotSaved, Message::verbatim(*refusal));
    }
    clearStaleMarks();
    // Still on: the new settings take over from the old without a detour.
    if (next->isApplied()) next->refreshSoundSettingsIfRequired();
    if (enabled_ && next->isEnabled()) planOne(next, false);
  });
}

void Host::deleteProfile(std::int64_t identifier) {
  edit([&] {
    const Profile deleted = *placeOf(identifier);
    if (deleted->isApplied()) deleted->revert(true);
    const auto place = placeOf(identifier) - manager()->profiles().begin();
    std::optional<std::string> refusal;
    manager()->deleteProfile(deleted, nullptr, keeping(refusal));
    if (refusal) {
      manager()->profiles().insert(manager()->profiles().begin() + place, deleted);
      throw EditError(EditError::Kind::NotSaved, Message::verbatim(*refusal));
    }
    deleted->stopTimer();
    deleted->stopTimers();
    while (const auto event = manager()->getCurrentScheduledEventFromProfile(deleted)) {
      manager()->removeEventFromScheduledList(deleted, event);
    }
  });
}

}  // namespace hushmode::host
