// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// For a phone that stayed as a profile had set it, since the process that was to put it back died and no other
// followed.

#include "host/Host.h"
#include "host/Ledger.h"
#include "util/Numbers.h"

#include <algorithm>
#include <stdexcept>

namespace hushmode::host {

namespace {

/// As the next process will read it.
bool isAnyMarkedApplied(const platform::PropertyListFiles& files) {
  const auto content = files.arrayWithContentsOfFile(HMProfilesManager::profilesPath);
  return content && std::any_of(content->begin(), content->end(), [](const platform::Value& each) {
           const auto* profile = each.as<platform::Dictionary>();
           return profile && booleanMeaning(profile->find("applied"));
         });
}

}  // namespace

Rescue Host::rescue() {
  if (process_) throw std::logic_error("the host is running");
  startProcess();
  Rescue rescue;
  rescue.before = readPhoneState();
  perform([this] { restore_->takeOver(appliedProfiles()); });
  rescue.wanted = restore_->found();
  putBackAll();
  rescue.after = readPhoneState();
  rescue.isSaved = !Ledger::load().open && !isAnyMarkedApplied(device_.foundation().files());
  kill();
  return rescue;
}

Rescue Host::wouldRescue() {
  if (process_) throw std::logic_error("the host is running");
  startProcess();
  Rescue rescue;
  rescue.before = rescue.after = readPhoneState();
  rescue.wanted = RestoreGuard::leftOpen(appliedProfiles(), rescue.before).found;
  kill();
  return rescue;
}

}  // namespace hushmode::host
