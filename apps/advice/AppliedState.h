// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/advice/Explanation.h"
#include "apps/client/Daemon.h"
#include "platform/Date.h"
#include "platform/PropertyList.h"

#include <optional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// What the daemon has done with a profile.
struct AppliedState {
  bool applied = false;
  std::string reason;                     ///< For what it is applied; empty when it is not.
  std::optional<platform::Date> since;    ///< When it is applied.
  std::vector<std::string> appliedLater;  ///< Titles of the profiles applied after it, whose volumes hold.
  std::vector<std::string> resting;       ///< Names of the services that it needs and that do not work.

  /// The last switch of the profile since the daemon started.
  struct LastSwitch {
    platform::Date at{0};
    bool on = false;
    std::string reason;
  };
  std::optional<LastSwitch> last;
};

AppliedState appliedState(const Daemon& daemon, const platform::Dictionary& profile);

/// Sentences for people: what the daemon has done until this moment, and where that differs from the explanation, why
/// it can. `explanation` is of now.
std::vector<std::string> sentences(const AppliedState& state, const Explanation& explanation,
                                   const devices::TimeZone& zone);

}  // namespace hushmode::cli
