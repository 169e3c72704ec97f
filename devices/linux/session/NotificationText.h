// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <glibmm/ustring.h>
#include <string>

namespace hushmode::devices {

/// The longest text that a notification is given, in characters.
constexpr std::size_t longestNotificationText = 2000;

/// `text` as a notification can show it: without what is no UTF-8, and shortened to the longest. With `asMarkup` it is
/// written so that a server that reads markup shows it as it is.
Glib::ustring notificationText(const std::string& text, bool asMarkup);

}  // namespace hushmode::devices
