// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"
#include "devices/linux/base/Services.h"

#include <giomm/settings.h>
#include <optional>

namespace hushmode::devices {

/// Whether the user wants dark colours: the desktop portal's setting color-scheme of org.freedesktop.appearance on the
/// session bus, else GSettings' of org.gnome.desktop.interface. As the service "appearance".
class Appearance {
 public:
  explicit Appearance(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services,
                      std::chrono::milliseconds limit = BusClient::answerLimit);

  /// None where neither tells; no preference is not dark.
  std::optional<bool> isDark() const;

 private:
  void listenTo(BusClient& client);
  void take(const Glib::VariantBase& colorScheme);
  void report();

  Services& services_;
  Glib::RefPtr<Gio::Settings> settings_;  ///< Null where the schema is not installed.
  std::optional<bool> isDarkByThePortal_;
  RemoteService service_;  ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
