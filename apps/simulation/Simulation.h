// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/HostDriver.h"
#include "apps/simulation/Scenario.h"
#include "devices/shared/FolderCalendars.h"
#include "devices/simulated/SimulatedPhone.h"
#include "host/Switches.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace hushmode::simulation {

using host::PhoneState;
using host::Switch;
using host::SwitchWatch;

/// Who wants to hear what of a simulation. Empty callbacks want nothing.
struct Audience {
  std::function<void(const devices::RecordEntry&)> entry;  ///< Each entry of the record.
  std::function<void(const Switch&)> switched;             ///< Each switch, once its effects are over.
  std::function<void(const std::string&)> complaint;       ///< What went wrong, in a line.
  std::function<void(platform::Date)> progress;            ///< The time reached, now and then.
  bool decisions = false;                                  ///< Whether log lines are wanted in the record.
};

/// What profiles change on the phone, as it is now.
PhoneState stateOf(devices::SimulatedPhone& phone);

/// Who drives the library: the real host, or the least that shows its own behaviour.
enum class Hosting { Full, Least };

/// A scenario at work on a simulated phone.
class Simulation {
 public:
  Simulation(Scenario scenario, Audience audience, Hosting hosting);
  ~Simulation();

  /// Plays the whole scenario.
  void run();

  /// The host is to die in the midst of its work, once, when it has caused this many entries of the record, and to be
  /// started again `restartSeconds` later. To be set before `run`.
  void setDeath(std::size_t entry, double restartSeconds) { death_ = Death{entry, restartSeconds}; }
  /// Whether it came to that.
  bool hasDied() const { return died_; }

  devices::SimulatedPhone& phone() { return *phone_; }
  HostDriver& host() { return *host_; }
  SwitchWatch& switches() { return *switches_; }

  // What steps do beyond the phone itself:

  /// The host process dies and starts again.
  void kill();
  void start();
  /// The host process is asked to end.
  void stop();
  /// Sets the master switch in the settings file, and tells the host.
  void setEnabled(bool enabled);
  /// The host changes the first profile of that title through the store: sets these keys of its dictionary. Complains
  /// when there is none.
  void editProfile(const std::string& title, const platform::Dictionary& changes);
  void addProfile(const platform::Dictionary& profile);
  void deleteProfile(const std::string& title);
  /// The user presses the volume buttons; the host marks the change as the user's.
  void pressVolume(std::string_view category, float volume);

 private:
  struct Death {
    std::size_t entry;
    double restartSeconds;
  };
  void hear(const devices::RecordEntry& entry);
  /// Runs `work`, in which the host may die.
  void mortally(const std::function<void()>& work);
  void runUntil(platform::Date date);
  std::shared_ptr<HMProfile> profileTitled(const std::string& title);
  void complain(const std::string& text);

  Scenario scenario_;
  Audience audience_;
  std::optional<Death> death_;
  bool died_ = false;
  std::size_t entries_ = 0;
  std::optional<platform::Date> restartAt_;
  std::unique_ptr<devices::FolderCalendars> folder_;
  std::unique_ptr<devices::SimulatedPhone> phone_;
  std::unique_ptr<SwitchWatch> switches_;
  std::unique_ptr<HostDriver> host_;
};

}  // namespace hushmode::simulation
