// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

namespace hushmode {

/// Takes the language, the clock and the calendar of the process's environment (LC_ALL, LC_MESSAGES, LC_TIME, LANG,
/// LANGUAGE). Once, at the start of a program. Numbers keep their point: files and times are written with one.
///
/// HUSHMODE_LOCALE names another folder of translations than the installed one, for programs that are not installed.
void useLanguageOfEnvironment();

}  // namespace hushmode
