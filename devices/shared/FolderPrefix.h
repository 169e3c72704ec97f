// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

namespace hushmode::devices {

/// What a phone puts before the identifiers of the calendars in its folder, to tell them from those of accounts.
inline constexpr const char* folderPrefix = "folder:";

}  // namespace hushmode::devices
