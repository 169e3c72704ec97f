// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace hushmode::devices {

/// The IANA zone ("Europe/Berlin") for the name that Windows gives a zone ("W. Europe Standard Time"), as Outlook and
/// Exchange write it in TZID; empty for other names.
std::string_view zoneOfWindowsName(std::string_view windowsName);

}  // namespace hushmode::devices
