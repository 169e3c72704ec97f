// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"

#include <string_view>
#include <vector>

/// What a profile may hold when people or programs set it: stricter than the file, which means something by anything.
namespace hushmode::host {

enum class ProfileKeyKind { Flag, Volume, Integer, Text, Time, Texts };

/// A key of a profile that may be set from outside.
struct ProfileKey {
  std::string_view name;
  ProfileKeyKind kind;
  std::int64_t least = 0, most = 0;  ///< Of integers.
};

/// All of them, in the order of the file.
const std::vector<ProfileKey>& profileKeys();

/// Limits for what comes from outside.
inline constexpr std::size_t longestText = 1000;  ///< In bytes.
inline constexpr std::size_t longestList = 1000;

/// Throws EditError (InvalidArgument), with the key, what was expected and an example, for an unknown key, a value of
/// another type, out of range or too long, a title that no profile may have (host/ProfileTitle.h), and a time that is
/// not like "8:00 AM".
void checkProfile(const platform::Dictionary& profile);

}  // namespace hushmode::host
