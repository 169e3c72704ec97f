// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/FullHost.h"

#include "apps/words/Words.h"
#include "devices/words/Text.h"

namespace hushmode::simulation {

FullHost::FullHost(devices::SimulatedPhone& phone, Complaint complain)
    : phone_(phone),
      complain_(std::move(complain)),
      host_(phone, [this](const host::Message& message) { complain_(inWords(message)); }) {
  phone_.sound().setOnChange([this](bool byUser) { host_.volumeIsChanging(byUser); });
}

FullHost::~FullHost() { phone_.sound().setOnChange({}); }

void FullHost::start() {
  if (host_.isRunning()) return;
  phone_.noteProcessStarted();
  host_.start();
}

void FullHost::addProfile(const platform::Dictionary& profile) {
  complaining(HUSHMODE_MARKED("the profile was not added: {0}"), [&] { host_.addProfile(profile); });
}

void FullHost::editProfile(const std::shared_ptr<HMProfile>& profile, const platform::Dictionary& changes) {
  complaining(HUSHMODE_MARKED("the edit was not saved: {0}"),
              [&] { host_.updateProfile(profile->identifier(), changes); });
}

void FullHost::deleteProfile(const std::shared_ptr<HMProfile>& profile) {
  complaining(HUSHMODE_MARKED("the profile was not deleted: {0}"), [&] { host_.deleteProfile(profile->identifier()); });
}

void FullHost::complaining(const char* what, const std::function<void()>& work) {
  try {
    work();
  } catch (const host::EditError& refusal) {
    complain_(tr(what, inWords(refusal.message())));
  }
}

}  // namespace hushmode::simulation
