// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/FullHost.h"
#include "host/Ledger.h"
#include "tests/properties/HostDay.h"

namespace hushmode::properties {

/// One playing of a day: the phone and its host, and the model of its user.
class HostDayPlay {
 public:
  explicit HostDayPlay(const HostDay& day, std::vector<std::string>* record = nullptr);

  std::vector<std::string> play();

  // For deeds.

  simulation::Simulation& simulation() { return *simulation_; }
  devices::SimulatedPhone& phone() { return simulation_->phone(); }
  host::Host& host() { return static_cast<simulation::FullHost&>(simulation_->host()).host(); }
  UsersWishes& wishes() { return wishes_; }
  /// The profile of that place in the list, counted round; null without profiles or host.
  std::shared_ptr<HMProfile> profileAt(std::size_t place);
  /// Whether the host lives, and has settled since it was last started.
  bool isHostSure();
  /// Whether nothing is applied, and has not been for as long as a switch lasts.
  bool isAtRest();

  void addEvent(const devices::SimulatedEvent& event);
  // Of the event at that place, counted round; nothing without events.
  void moveEvent(std::size_t place, platform::Date start, platform::Date end);
  void setStatus(std::size_t place, platform::EKEventStatus status);
  void removeEvent(std::size_t place);
  void moveToZone(const std::string& name);

 private:
  void hear(const devices::RecordEntry& entry);
  void perform(const Deed& deed);
  devices::SimulatedEvent* eventAt(std::size_t place);
  /// After a time in which nothing was done: is all as it should be?
  void look(const std::string& when);
  /// Takes away all that could keep the phone quiet.
  void endEverything();
  void lookInTheEnd();

  std::unique_ptr<simulation::Simulation> simulation_;
  UsersWishes wishes_;
  std::shared_ptr<const devices::TimeZone> zone_;
  std::vector<devices::SimulatedEvent> events_;
  std::vector<std::string> faults_;
  std::vector<std::string>* record_;
  double bornAt_ = 0, switchedAt_ = -1000;  ///< In uptime.
};

}  // namespace hushmode::properties
