// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/LeastHost.h"

#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"
#include "effects/VolumeMarks.h"
#include "model/TimeOfDay.h"

#include <stdexcept>

namespace hushmode::simulation {

namespace {

/// What is wrong with the profile's times; empty when they can be read.
std::string windowFault(HMProfile& profile) {
  if (profile.isAllDay()) return {};
  try {
    for (const auto& time : {profile.startTime(), profile.endTime()}) {
      if (time) splitTimeOfDay(*time);
    }
  } catch (const std::out_of_range& fault) {
    return fault.what();
  }
  return {};
}

std::shared_ptr<HMProfilesManager> manager() { return HMProfilesManager::sharedManager(); }

}  // namespace

LeastHost::LeastHost(devices::SimulatedPhone& phone, Complaint complain)
    : phone_(phone), complain_(std::move(complain)) {
  // Below system 11 the library reads the mark the other way round; nobody marks its own changes here.
  phone_.sound().setOnChange([this](bool byUser) {
    if (byUser && process_) setHm_ChangedViaHWButtons(phone_.sound().sharedAVSystemController(), true);
  });
}

LeastHost::~LeastHost() { phone_.sound().setOnChange({}); }

void LeastHost::start() {
  if (process_) return;
  process_ = std::make_unique<platform::Process>(phone_);
  phone_.noteProcessStarted();
  if (onStart_) onStart_(*manager());
  if (!plansByItself_) return;
  armMidnight();
  plan(false);
}

void LeastHost::kill() { process_.reset(); }

void LeastHost::armMidnight() {
  const platform::Date midnight = beginningOfLocalDay(phone_.time().now(), *phone_.foundation().timeZone(), 1);
  phone_.time().wakeAt(midnight, 0, [this] {
    armMidnight();
    plan(true);
  });
}

void LeastHost::complainOnce(const std::string& text) {
  if (complaints_.insert(text).second) complain_(text);
}

bool LeastHost::complainOfUnreadableWindows() {
  bool any = false;
  for (const auto& profile : manager()->profiles()) {
    const std::string fault = windowFault(*profile);
    if (fault.empty()) continue;
    any = true;
    complainOnce(tr("profile \"{0}\": {1}", profile->title().value_or(tr("(no title)")), fault));
  }
  return any;
}

void LeastHost::planEachReadable(bool shouldProceedAnyCase) {
  if (!HMProfilesManager::isHushmodeEnabled()) return;
  for (const auto& profile : manager()->activeProfiles()) {
    if (windowFault(*profile).empty()) manager()->scheduleEvents(profile, shouldProceedAnyCase);
  }
}

void LeastHost::plan(bool reload) {
  if (!process_) return;
  guard([&] {
    if (reload && HMProfilesManager::isHushmodeEnabled()) manager()->loadProfiles();
    manager()->activeProfiles();  // Loads the file when the list is empty, so that its faults are known.
    if (complainOfUnreadableWindows() || reload) {
      planEachReadable(reload);
    } else {
      manager()->schedulePowerEventsForProfiles();
    }
  });
}

void LeastHost::networkChanged() {
  if (!process_ || !plansByItself_) return;
  guard([&] { manager()->scheduleProfilesOnWiFiChange(); });
}

void LeastHost::masterSwitchChanged(bool on) {
  if (!process_) return;
  guard([&] { manager()->handleHushmodeEnabledOrDisabled(); });
  if (on && plansByItself_) plan(false);
}

void LeastHost::addProfile(const platform::Dictionary& profile) {
  guard([&] {
    manager()->addProfile(HMProfile::initWithDictionary(profile), nullptr,
                          complaining(HUSHMODE_MARKED("the profile was not added: {0}")));
  });
  plan(false);
}

void LeastHost::editProfile(const std::shared_ptr<HMProfile>& profile, const platform::Dictionary& changes) {
  guard([&] {
    platform::Dictionary edited = profile->dictionaryRepresentation();
    for (const auto& [key, value] : changes) edited.set(key, value);
    manager()->updateProfile(HMProfile::initWithDictionary(edited), nullptr,
                             complaining(HUSHMODE_MARKED("the edit was not saved: {0}")));
  });
  plan(false);
}

void LeastHost::deleteProfile(const std::shared_ptr<HMProfile>& profile) {
  guard([&] {
    manager()->deleteProfile(profile, nullptr, complaining(HUSHMODE_MARKED("the profile was not deleted: {0}")));
  });
  plan(false);
}

HMProfilesManager::Failure LeastHost::complaining(const char* what) {
  return [this, what](const StoreError& error) {
    const auto description = error.userInfo.find("NSLocalizedDescriptionKey");
    complain_(tr(what, description == error.userInfo.end() ? tr("no reason given") : description->second));
  };
}

void LeastHost::guard(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& fault) {
    // The library lets one fault out: a time of day that it cannot read.
    if (!process_ || !complainOfUnreadableWindows()) {
      complainOnce(tr("the host's work ended with an error: {0}", fault.what()));
      return;
    }
    planEachReadable(false);
  }
}

}  // namespace hushmode::simulation
