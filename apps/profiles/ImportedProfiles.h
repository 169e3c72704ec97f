// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"

#include <string>
#include <vector>

namespace hushmode::cli {

/// Profiles that somebody brings along.
struct ImportedProfiles {
  /// Each with a title that no other has, and settings that a profile can hold; without the identity and the state that
  /// they had where they come from. Keys that nobody knows are kept.
  std::vector<platform::Dictionary> profiles;
  std::vector<std::string> notes;  ///< Lines for people: which keys are unknown.
};

/// Reads a property list of profiles, XML or binary, from a file or, for "-", from standard input. Throws
/// simulation::InputError with the file, the profile, the key and what was expected there.
ImportedProfiles readProfiles(const std::string& file);

}  // namespace hushmode::cli
