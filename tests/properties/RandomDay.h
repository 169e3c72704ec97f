// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/SimulatedPhone.h"
#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "tests/properties/Chance.h"
#include "tests/properties/RecordRules.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::properties {

/// A day or two of a phone whose settings, calendars, networks, user, faults and host do what a seed makes them do.
/// After every step it is looked at whether all is as it must be; the record is checked by RecordRules all along.
class RandomDay {
 public:
  explicit RandomDay(std::uint64_t seed);
  ~RandomDay();
  RandomDay(const RandomDay&) = delete;
  RandomDay& operator=(const RandomDay&) = delete;

  /// Plays all steps, mends what is broken, and lets everything that is still to come happen.
  void play();

  const std::vector<std::string>& violations() const { return rules_.violations(); }
  /// What was done, in order, with its local time: enough to play the day again by hand.
  const std::vector<std::string>& steps() const { return steps_; }
  std::size_t recorded() const { return recorded_; }

  /// Shown every entry of the record. To be set before `play`.
  void setOnEntry(std::function<void(const devices::RecordEntry&)> onEntry) { onEntry_ = std::move(onEntry); }

 private:
  using Profile = std::shared_ptr<HMProfile>;

  void prepare();
  platform::Dictionary randomProfile();
  std::optional<std::string> randomTime(bool start);
  devices::SimulatedEvent randomEvent();
  void placeEvent(devices::SimulatedEvent& event);
  /// A moment on the grid of the day, or a little beside it.
  platform::Date randomMoment();
  platform::Date clockOfDay(double seconds, int day = 0);

  void startHost();
  void killHost();
  void advance(double seconds);
  void midnightWatch();
  /// Lets the host, when there is one, do something with the library.
  void host(const std::function<void(HMProfilesManager&)>& work);
  /// Runs `work`; of errors only the documented one may leave it, and only when a profile has such a time.
  void guarded(const std::function<void()>& work);

  void step();
  std::string calendarStep();
  std::string networkStep();
  std::string profileStep();
  std::string userStep();
  std::string phoneStep();
  std::string faultStep();
  std::string hostStep();
  std::string pokeStep();
  void look();
  void lookAtFile(HMProfilesManager& manager);
  void lookAtTable(HMProfilesManager& manager);
  void finish();

  Chance chance_;
  RecordRules rules_;
  std::unique_ptr<devices::SimulatedPhone> phone_;
  std::unique_ptr<platform::Process> process_;
  std::function<void(const devices::RecordEntry&)> onEntry_;
  std::vector<std::string> steps_, uids_;
  std::vector<std::function<void()>> mendings_;
  std::int64_t nextIdentifier_ = 1;
  int nextEvent_ = 1;
  std::size_t recorded_ = 0;
  bool unreadableTime_ = false;  ///< Some profile has had a time that cannot be read.
  bool listMayDifferFromFile_ = false;
  bool toneMayGoOn_ = false;  ///< The tone could not be stopped once.
  /// Wake timers are delivered without any delay. Then no window may end before it starts: such a window, planned at
  /// the very instant of its start, asks for a wake-up at that instant again, and again.
  bool toTheInstant_ = false;
  platform::Date today_{0};
};

}  // namespace hushmode::properties
