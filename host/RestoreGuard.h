// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/GuardedDevice.h"
#include "host/Ledger.h"
#include "store/HMProfilesManager.h"

#include <functional>
#include <set>
#include <string>

namespace hushmode::host {

/// Sees to it that nothing stays changed: keeps the ledger, tells the user's changes from our own, and puts back what
/// the library's own reverting leaves behind.
///
/// All that the library does happens between `begin` and `end`, so whatever changes on the phone between an `end` and
/// the next `begin` was done by others. The user's hand wins: what it changes while a profile is applied stands until
/// the next switch, and is what the end leads back to. The ringtone volume is the exception: the library asks whether
/// to keep it, and unless the answer is yes the end leads back to what it was before.
class RestoreGuard {
 public:
  using Profile = HMProfilesManager::Profile;
  using Say = std::function<void(const Message& message)>;

  RestoreGuard(GuardedDevice& device, Say say) : device_(device), say_(std::move(say)) {}

  /// A process has started: takes over what an earlier one left open. `applied`: the profiles that count as applied.
  void takeOver(const std::vector<Profile>& applied);
  /// The ledger that `takeOver` would go on with, now that the phone looks like this: what the user has changed since
  /// the earlier process died is theirs. Closed when nothing is to be put back. Changes nothing.
  static Ledger leftOpen(const std::vector<Profile>& applied, const PhoneState& now);

  void begin(const std::vector<Profile>& applied);
  /// The library is about to save these profiles: the first applied one among them opens the ledger.
  void willSave(const platform::Array& profiles);
  /// Holds the user's hand and the union of the applied profiles against what the library just did.
  void end(const std::vector<Profile>& applied);

  /// The delayed steps of the last switch are over. With nothing applied puts everything back and closes the ledger;
  /// with something applied makes sure that the next revert leads back to what was found. False when something could
  /// not be put back yet: its service is away.
  bool settle(const std::vector<Profile>& applied);

  /// Whether the volumes are as an applied profile asks, or else as the user has set them since; and whether the phone
  /// does not vibrate where the profile does not ask for it.
  bool isAsAskedBy(const HMProfile& profile) const;

  bool isOpen() const { return ledger_.open; }
  /// What is to be put back; nothing while the ledger is closed.
  const PhoneState& found() const { return ledger_.found; }
  /// What profiles change, as it is now; the icon included.
  PhoneState phone() const;
  /// A service came back: what it shows now is nobody's change.
  void forgetSeen() { seen_ = {}; }
  /// The next change of the library is wanted even where it goes over the user's hand: an edit of the profile.
  void releaseHand() { ledger_.byHand = {}; }

 private:
  using Identifiers = std::multiset<std::int64_t>;

  void open(const PhoneState& found);
  void save();
  void noteChangesByOthers(const PhoneState& now, bool anyApplied);
  void noteLateServices(const PhoneState& now);
  void noteKeptVolume();
  void holdTheHand(const PhoneState& now);
  void dropDetours(const std::vector<Profile>& applied);
  void assertUnion(const std::vector<Profile>& applied);
  void keepSavedVolumes() const;
  bool putBack();
  void forgetSavedState() const;

  GuardedDevice& device_;
  Say say_;
  Ledger ledger_, saved_;
  bool saveFailed_ = false, waits_ = false;
  PhoneState seen_;             ///< At the last `end`.
  PhoneState begun_;            ///< At the last `begin`.
  std::optional<float> asked_;  ///< The ringtone volume that the library's question is about.
  std::optional<float> keyAtBegin_;
  Identifiers appliedAtBegin_;
};

}  // namespace hushmode::host
