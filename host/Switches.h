// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/PhoneState.h"
#include "host/Reason.h"
#include "store/HMProfilesManager.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::host {

/// A profile that went on or off.
struct Switch {
  platform::Date at{0};
  std::string profile;
  std::int64_t identifier = 0;
  bool on = false;
  Reason reason;
  PhoneState before, after;
  bool withNext = false;  ///< Another profile switched at the same instant; the change is told with that one.
};

/// The phone as a watch looks at it.
struct WatchedPhone {
  std::function<platform::Date()> now;
  std::function<PhoneState()> state;
  std::function<std::optional<std::string>()> joinedNetwork;
};

/// Watches the applied profiles of a phone, and tells of each switch once its delayed effects have come to rest.
class SwitchWatch {
 public:
  /// After `restSeconds` the delayed effects of a switch are over.
  SwitchWatch(WatchedPhone phone, double restSeconds, std::function<void(const Switch&)> tell);

  /// A process started: what it applies is watched from now on.
  void watch(HMProfilesManager& manager);
  /// The process died; what was applied stays known.
  void unwatch() { manager_ = nullptr; }

  /// The process has reverted everything and ended, for the cause that is set.
  void stopped();

  /// To be called after every piece of work and every step.
  void look();
  /// Why the profile is applied, and since when it has been known to be; null when it is not.
  struct Applied {
    std::string profile;                     ///< Its title.
    Reason reason;                           ///< What it was applied for.
    std::optional<platform::Date> eventEnd;  ///< Of the event that it was applied for.
    platform::Date since{0};
  };
  const Applied* applied(std::int64_t identifier) const;
  /// The delayed effects are over: tells of the switches that have not been told yet.
  void finish();

  /// Why the next switches happen, where only whoever drives the phone can know: Stopped, SwitchedOff. None: as it
  /// looks from the phone.
  void setCause(std::optional<Reason> cause) { cause_ = std::move(cause); }

 private:
  Applied reasonToApply(HMProfile& profile);
  void note(const Applied& applied, std::int64_t identifier, bool on, Reason reason);
  Reason reasonToRevert(HMProfile& profile, const Applied& applied);
  void rest();

  WatchedPhone phone_;
  double restSeconds_;
  std::function<void(const Switch&)> tell_;
  HMProfilesManager* manager_ = nullptr;
  std::map<std::int64_t, Applied> applied_;
  std::vector<Switch> moving_;  ///< Told when the delayed effects are over.
  PhoneState last_;
  std::optional<Reason> cause_;
};

}  // namespace hushmode::host
