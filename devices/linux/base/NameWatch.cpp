// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/NameWatch.h"

#include <giomm/dbuswatchname.h>

namespace hushmode::devices {

NameWatch::NameWatch(const Glib::RefPtr<Gio::DBus::Connection>& connection, const std::string& name,
                     std::function<void(const std::string& owner)> appeared, std::function<void()> vanished) {
  if (!connection) return;
  id_ = Gio::DBus::watch_name(
      connection, name,
      [appeared = std::move(appeared)](const Glib::RefPtr<Gio::DBus::Connection>&, const Glib::ustring&,
                                       const Glib::ustring& owner) { appeared(owner); },
      [vanished = std::move(vanished)](const Glib::RefPtr<Gio::DBus::Connection>&, const Glib::ustring&) {
        vanished();
      });
}

NameWatch::~NameWatch() {
  if (id_ != 0) Gio::DBus::unwatch_name(id_);
}

}  // namespace hushmode::devices
