// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::cli {

/// One change to the list of profiles.
struct ProfileEdit {
  enum class Kind { Add, Update, Remove } kind;
  std::string title;                 ///< The profile's, for people.
  std::int64_t identifier = 0;       ///< Of the profile to update or remove.
  platform::Dictionary values = {};  ///< To add, or to set.
};

/// The user's profiles, in the form of their file (docs/profiles-file.md): in the daemon while it runs, since there is
/// one writer, and in the file under the daemon's lock while it does not.
///
/// Every change throws simulation::InputError for what no profile can hold, and ServiceError for what could not be
/// saved; then nothing is changed.
class ProfileStore {
 public:
  /// The daemon, if it runs; else the file. Throws ServiceError when another program holds the lock.
  static std::unique_ptr<ProfileStore> open();
  virtual ~ProfileStore() = default;

  virtual std::vector<platform::Dictionary> list() = 0;
  /// Answers the identifier of the new profile.
  virtual std::int64_t add(const platform::Dictionary& profile) = 0;
  /// Sets these keys.
  virtual void update(std::int64_t identifier, const platform::Dictionary& changes) = 0;
  virtual void remove(std::int64_t identifier) = 0;
  /// Makes these changes, in order. In the file they are one change, which keeps keys that nobody knows. The daemon
  /// takes no such keys, and the changes one by one: the error says which ones were made before.
  virtual void apply(const std::vector<ProfileEdit>& edits) = 0;
  virtual bool isEnabled() = 0;
  /// The master switch.
  virtual void setEnabled(bool enabled) = 0;
  /// Whether changes take effect at once.
  virtual bool isLive() const = 0;
};

/// Says how to start the daemon, where it does not run.
void tellUnlessLive(const ProfileStore& store, std::ostream& out);

/// The title of a profile; "(no title)" in the user's language when it has none.
std::string titleOf(const platform::Dictionary& profile);
std::int64_t identifierOf(const platform::Dictionary& profile);

/// The part of a profile that may be set from outside: without its identity and state, and without unknown keys.
platform::Dictionary knownSettings(const platform::Dictionary& profile);

/// The profile of that title, or of that identifier when no title fits. Throws simulation::InputError with the nearest
/// title.
platform::Dictionary profileNamed(const std::vector<platform::Dictionary>& profiles, const std::string& name);

}  // namespace hushmode::cli
