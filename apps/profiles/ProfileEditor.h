// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/Places.h"
#include "platform/PropertyList.h"

#include <string>
#include <vector>

namespace hushmode::cli {

/// A profile as text, a setting a line: "ringtone: 5%". Lines that begin with # say what there is to know.
std::string editorText(const platform::Dictionary& profile, const std::vector<KnownCalendar>& calendars);

/// What such a text changes in the profile. Throws simulation::InputError with the line.
platform::Dictionary changesInText(const std::string& text, const platform::Dictionary& profile,
                                   const std::vector<KnownCalendar>& calendars);

/// Opens the profile in the user's editor ($VISUAL, $EDITOR, else "editor") and answers what they changed; nothing when
/// they left it as it was. A text with a mistake is told, and kept in a file that the message names.
platform::Dictionary editedInEditor(const platform::Dictionary& profile, const std::vector<KnownCalendar>& calendars);

}  // namespace hushmode::cli
