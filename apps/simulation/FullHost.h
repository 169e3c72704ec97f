// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/HostDriver.h"
#include "devices/simulated/SimulatedPhone.h"
#include "host/Host.h"

namespace hushmode::simulation {

/// The real host, on a simulated phone.
class FullHost final : public HostDriver {
 public:
  FullHost(devices::SimulatedPhone& phone, Complaint complain);
  ~FullHost() override;

  void start() override;
  void kill() override { host_.kill(); }
  void stop() override { host_.stop(); }
  bool isRunning() const override { return host_.isRunning(); }
  void setOnStart(std::function<void(HMProfilesManager&)> onStart) override { host_.setOnStart(std::move(onStart)); }
  void plan(bool reload) override { host_.plan(reload); }
  void networkChanged() override { host_.networkChanged(); }
  void clockChanged() override { host_.clockChanged(); }
  void resumed() override { host_.resumed(); }
  void phoneChanged() override { host_.phoneChanged(); }
  void masterSwitchChanged(bool) override { host_.settingsChanged(); }
  void addProfile(const platform::Dictionary& profile) override;
  void editProfile(const std::shared_ptr<HMProfile>& profile, const platform::Dictionary& changes) override;
  void deleteProfile(const std::shared_ptr<HMProfile>& profile) override;
  void guard(const std::function<void()>& work) override { work(); }

  host::Host& host() { return host_; }

 private:
  /// `what`: with {0} for the reason.
  void complaining(const char* what, const std::function<void()>& work);

  devices::SimulatedPhone& phone_;
  Complaint complain_;
  host::Host host_;
};

}  // namespace hushmode::simulation
