// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/Json.h"
#include "apps/client/Places.h"
#include "platform/PropertyList.h"

#include <string>
#include <vector>

namespace hushmode::cli {

/// What an import does to one profile.
struct ProfileDifference {
  enum class Kind { Added, Changed, Unchanged, Removed } kind;
  platform::Dictionary before;  ///< As it is; empty for one that is added.
  platform::Dictionary given;   ///< As the import has it; empty for one that is removed.
  /// What is to be set: of an added profile everything, of a changed one the settings that mean something else.
  platform::Dictionary changes;
};

/// How `given` differs from the `present` profiles. Profiles are the same when their titles are; a setting that `given`
/// does not name stays as it is. Ordered as `given` is; behind them those that `removesOthers` removes.
std::vector<ProfileDifference> differences(const std::vector<platform::Dictionary>& present,
                                           const std::vector<platform::Dictionary>& given, bool removesOthers);

/// One line for people for each setting that changes: "media             10% (was 5%)".
std::vector<std::string> settingLines(const ProfileDifference& difference, const std::vector<KnownCalendar>& calendars);

/// As docs/json/import.schema.json has it.
Json jsonOf(const ProfileDifference& difference);

}  // namespace hushmode::cli
