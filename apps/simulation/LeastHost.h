#pragma once

#include "devices/simulated/SimulatedPhone.h"
#include "platform/Process.h"
#include "store/HMProfilesManager.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace hushmode::simulation {

/// Says, in a line for people, what went wrong with which profile.
using Complaint = std::function<void(const std::string&)>;

/// The least that a host does with the library, on a simulated phone: it plans at its start, at each local midnight
/// with a reload (windows are kept per profile object), and after each change of network. A profile whose times cannot
/// be read is complained of once, by title, and the others are planned all the same.
class LeastHost {
 public:
  LeastHost(devices::SimulatedPhone& phone, Complaint complain);
  ~LeastHost();
  LeastHost(const LeastHost&) = delete;
  LeastHost& operator=(const LeastHost&) = delete;

  /// Starts the process, as the phone does after its own start or after the process died.
  void start();
  /// The process dies: nothing is reverted or saved.
  void kill();
  bool isRunning() const { return process_ != nullptr; }

  /// Plans all active profiles, with a reload of the file first if asked to. Nothing while not running.
  void plan(bool reload);
  void networkChanged();
  /// After the master switch was set in the settings file.
  void masterSwitchChanged(bool on);

  /// Runs `work` and complains of whatever it throws; afterwards the other profiles are planned.
  void guard(const std::function<void()>& work);

  /// Called after each start of a process, with its manager.
  void setOnStart(std::function<void(HMProfilesManager&)> onStart) { onStart_ = std::move(onStart); }
  /// Whether this host plans by itself (at start, midnight and changes of network); true at first.
  void setPlansByItself(bool plans) { plansByItself_ = plans; }

 private:
  void armMidnight();
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
