// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/HostDriver.h"
#include "devices/simulated/SimulatedPhone.h"
#include "platform/Process.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace hushmode::simulation {

/// The least that a host does with the library, on a simulated phone, so that the library's own behaviour shows: it
/// plans at its start, at each local midnight with a reload (windows are kept per profile object), and after each
/// change of network or profile. A profile whose times cannot be read is complained of once, by title, and the others
/// are planned all the same.
class LeastHost final : public HostDriver {
 public:
  LeastHost(devices::SimulatedPhone& phone, Complaint complain);
  ~LeastHost() override;

  void start() override;
  void kill() override;
  void stop() override { kill(); }
  bool isRunning() const override { return process_ != nullptr; }
  void setOnStart(std::function<void(HMProfilesManager&)> onStart) override { onStart_ = std::move(onStart); }
  void plan(bool reload) override;
  void networkChanged() override;
  void clockChanged() override {}
  void resumed() override {}
  void phoneChanged() override {}
  void masterSwitchChanged(bool on) override;
  void addProfile(const platform::Dictionary& profile) override;
  void editProfile(const std::shared_ptr<HMProfile>& profile, const platform::Dictionary& changes) override;
  void deleteProfile(const std::shared_ptr<HMProfile>& profile) override;
  /// Afterwards the other profiles are planned.
  void guard(const std::function<void()>& work) override;

  /// Whether this host plans by itself (at start, midnight and changes of network); true at first.
  void setPlansByItself(bool plans) { plansByItself_ = plans; }

 private:
  void armMidnight();
  HMProfilesManager::Failure complaining(const char* what);
  void complainOnce(const std::string& text);
  /// Complains of profiles whose window cannot be read; true when there are any.
  bool complainOfUnreadableWindows();
  void planEachReadable(bool shouldProceedAnyCase);

  devices::SimulatedPhone& phone_;
  Complaint complain_;
  std::set<std::string> complaints_;
  std::function<void(HMProfilesManager&)> onStart_;
  bool plansByItself_ = true;
  std::unique_ptr<platform::Process> process_;
};

}  // namespace hushmode::simulation
