// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/Places.h"
#include "apps/profiles/ProfileRules.h"

#include <string>
#include <vector>

/// Commands to type that mend a profile.
namespace hushmode::cli {

/// The profile as commands name it: its title, quoted for a shell where it must be; its identifier when the title
/// cannot be typed or is another's, too.
std::string profileWord(const ProfileRules& rules);

/// "hushmode profile edit NAME", and `options`, which are ready for a shell.
std::string editCommand(const ProfileRules& rules, const std::string& options);

/// For a window that ends before it starts: its hours as quiet hours, which go over midnight; for one that ends when it
/// starts: the whole day.
std::string hoursOverMidnight(const ProfileRules& rules);

/// For a window whose times are not written as "8:00 AM": what they were most likely meant to say, else an example.
std::string windowAsMeant(const ProfileRules& rules);

/// `--calendars "Work, Home"`: by title where one calendar alone has it.
std::string calendarsOption(const std::vector<std::string>& identifiers, const std::vector<KnownCalendar>& calendars);

}  // namespace hushmode::cli
