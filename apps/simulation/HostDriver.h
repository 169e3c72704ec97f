// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"
#include "store/HMProfilesManager.h"

#include <functional>
#include <string>

namespace hushmode::simulation {

/// Says, in a line for people, what went wrong with which profile.
using Complaint = std::function<void(const std::string&)>;

/// The host of a simulation: what starts the library's process on the phone and tells it what happens.
class HostDriver {
 public:
  virtual ~HostDriver() = default;

  /// Starts the process, as the phone does after its own start or after the process died.
  virtual void start() = 0;
  /// The process dies: nothing is reverted or saved.
  virtual void kill() = 0;
  /// The process is asked to end: the real host puts everything back before, the least one dies.
  virtual void stop() = 0;
  virtual bool isRunning() const = 0;
  /// Called after each start of a process, with its manager. To be set before the first start.
  virtual void setOnStart(std::function<void(HMProfilesManager&)> onStart) = 0;

  // What happens to the phone. Nothing while not running.

  /// Plans all active profiles, with a reload of the file first if asked to.
  virtual void plan(bool reload) = 0;
  virtual void networkChanged() = 0;
  /// The clock was set, or the zone is another.
  virtual void clockChanged() = 0;
  virtual void resumed() = 0;
  /// The user changed something that profiles change, and no service tells of.
  virtual void phoneChanged() = 0;
  /// After the master switch was set in the settings file.
  virtual void masterSwitchChanged(bool on) = 0;

  // Changes to the profiles, in the form of their file. A refusal is complained of.

  virtual void addProfile(const platform::Dictionary& profile) = 0;
  /// Sets these keys of the profile.
  virtual void editProfile(const std::shared_ptr<HMProfile>& profile, const platform::Dictionary& changes) = 0;
  virtual void deleteProfile(const std::shared_ptr<HMProfile>& profile) = 0;

  /// Runs `work` and complains of whatever it throws.
  virtual void guard(const std::function<void()>& work) = 0;
};

}  // namespace hushmode::simulation
