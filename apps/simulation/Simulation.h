#pragma once

#include "apps/simulation/LeastHost.h"
#include "apps/simulation/Scenario.h"
#include "apps/simulation/Switches.h"
#include "devices/shared/FolderCalendars.h"
#include "devices/simulated/SimulatedPhone.h"

#include <functional>
#include <memory>
#include <string>

namespace hushmode::simulation {

/// Who wants to hear what of a simulation. Empty callbacks want nothing.
struct Audience {
  std::function<void(const devices::RecordEntry&)> entry;  ///< Each entry of the record.
  std::function<void(const Switch&)> switched;             ///< Each switch, once its effects are over.
  std::function<void(const std::string&)> complaint;       ///< What went wrong, in a line.
  std::function<void(platform::Date)> progress;            ///< The time reached, now and then.
  bool decisions = false;                                  ///< Whether log lines are wanted in the record.
};

/// A scenario at work on a simulated phone.
class Simulation {
 public:
  Simulation(Scenario scenario, Audience audience);
  ~Simulation();

  /// Plays the whole scenario.
  void run();

  devices::SimulatedPhone& phone() { return *phone_; }
  LeastHost& host() { return *host_; }
  SwitchWatch& switches() { return *switches_; }

  // What steps do beyond the phone itself:

  /// The host process dies and starts again.
  void kill();
  void start();
  /// Sets the master switch in the settings file, and tells the host.
  void setEnabled(bool enabled);
  /// The host changes the first profile of that title through the store: sets these keys of its dictionary. Complains
  /// when there is none.
  void editProfile(const std::string& title, const platform::Dictionary& changes);
  void addProfile(const platform::Dictionary& profile);
  void deleteProfile(const std::string& title);
  /// The user presses the volume buttons; the host marks the change as the user's.
  void pressVolume(float volume);

 private:
  void runUntil(platform::Date date);
  std::shared_ptr<HMProfile> profileTitled(const std::string& title);
  void complain(const std::string& text);
  HMProfilesManager::Failure complaining(const std::string& what);

  Scenario scenario_;
  Audience audience_;
  std::unique_ptr<devices::FolderCalendars> folder_;
  std::unique_ptr<devices::SimulatedPhone> phone_;
  std::unique_ptr<SwitchWatch> switches_;
  std::unique_ptr<LeastHost> host_;
};

}  // namespace hushmode::simulation
