#include "apps/simulation/FullHost.h"

namespace hushmode::simulation {

FullHost::FullHost(devices::SimulatedPhone& phone, Complaint complain)
    : phone_(phone),
      complain_(std::move(complain)),
      host_(phone, [this](const std::string& line) { complain_(line); }) {
  phone_.sound().setOnChange([this](bool byUser) { host_.volumeIsChanging(byUser); });
}

FullHost::~FullHost() { phone_.sound().setOnChange({}); }

void FullHost::start() {
  if (host_.isRunning()) return;
  phone_.noteProcessStarted();
  host_.start();
}

void FullHost::addProfile(const platform::Dictionary& profile) {
  complaining("the profile was not added", [&] { host_.addProfile(profile); });
}

void FullHost::editProfile(const std::shared_ptr<HMProfile>& profile, const platform::Dictionary& changes) {
  complaining("the edit was not saved", [&] { host_.updateProfile(profile->identifier(), changes); });
}

void FullHost::deleteProfile(const std::shared_ptr<HMProfile>& profile) {
  complaining("the profile was not deleted", [&] { host_.deleteProfile(profile->identifier()); });
}

void FullHost::complaining(const std::string& what, const std::function<void()>& work) {
  try {
    work();
  } catch (const host::EditError& refusal) {
    complain_(what + ": " + refusal.what());
  }
}

}  // namespace hushmode::simulation
