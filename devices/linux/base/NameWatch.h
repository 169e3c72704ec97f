// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <giomm/dbusconnection.h>
#include <string>

namespace hushmode::devices {

/// Watches who owns a name on a bus, for as long as it lives. The first answer comes from the main loop.
class NameWatch {
 public:
  /// `appeared` gets the unique name of the owner; also when one owner follows another. `vanished` is called as well
  /// when there is no owner at first. A null connection counts as a name without owner, and calls nothing.
  NameWatch(const Glib::RefPtr<Gio::DBus::Connection>& connection, const std::string& name,
            std::function<void(const std::string& owner)> appeared, std::function<void()> vanished);
  ~NameWatch();
  NameWatch(const NameWatch&) = delete;
  NameWatch& operator=(const NameWatch&) = delete;

 private:
  unsigned id_ = 0;
};

}  // namespace hushmode::devices
