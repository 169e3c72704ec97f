// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/NotificationText.h"

#include <glibmm/markup.h>

namespace hushmode::devices {

Glib::ustring notificationText(const std::string& text, bool asMarkup) {
  // A byte of 0 would end the text on its way over the bus; no character takes more than 4 bytes.
  const std::string bytes = text.substr(0, text.find('\0')).substr(0, 4 * longestNotificationText);
  Glib::ustring shown = Glib::ustring(bytes).make_valid();
  if (shown.size() > longestNotificationText) shown = shown.substr(0, longestNotificationText - 1) + "\u2026";
  return asMarkup ? Glib::Markup::escape_text(shown) : shown;
}

}  // namespace hushmode::devices
