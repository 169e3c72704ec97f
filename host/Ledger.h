// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/PhoneState.h"
#include "platform/PropertyList.h"

#include <string_view>
#include <vector>

namespace hushmode::host {

/// What the phone looked like before Hush Mode changed it, on disk: the promise to put it back survives any death.
///
/// The ledger is open from before the first profile is applied until everything is back as it was.
struct Ledger {
  /// A property list: an array with one dictionary while open, and an empty one otherwise. Each write replaces it
  /// whole.
  static constexpr std::string_view path = "/var/mobile/Library/Hushmode/com.quorvel.hushmode.ledger.plist";

  bool open = false;
  PhoneState found;  ///< What is to be put back: as found, or as the user has set it by hand since.
  /// Volumes that profiles have set since: a phone that shows one of them after a death was left so by us, any other
  /// was set by the user.
  std::vector<float> ringtonesSet, mediasSet;
  bool doNotDisturbSet = false;  ///< Whether a profile has switched Do Not Disturb on since.
  PhoneState byHand;             ///< What the user has set since the last switch: it stands until the next.
  bool operator==(const Ledger&) const = default;

  /// The ledger on the current process's device; closed when there is none, and when it holds nothing readable.
  static Ledger load();
  /// False when it could not be written.
  bool save() const;
};

}  // namespace hushmode::host
