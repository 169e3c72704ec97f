// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <giomm/dbusconnection.h>
#include <giomm/dbusinterfacevtable.h>
#include <string>

namespace hushmode::devices {

/// The icon as panels see it: the interface org.kde.StatusNotifierItem on the session bus, under a bus name of its own.
/// Status "Active" shows it, "Passive" hides it. Nothing happens on a click.
class StatusNotifierItem {
 public:
  /// Exports it, visible. Panels look for icons in `iconFolder` too.
  StatusNotifierItem(Glib::RefPtr<Gio::DBus::Connection> sessionBus, const std::filesystem::path& iconFolder);
  /// Takes it away.
  ~StatusNotifierItem();
  StatusNotifierItem(const StatusNotifierItem&) = delete;
  StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;

  const std::string& busName() const { return busName_; }
  bool isVisible() const { return visible_; }
  void setVisible(bool visible);

 private:
  Glib::VariantBase property(const std::string& name) const;
  const char* status() const { return visible_ ? "Active" : "Passive"; }

  Glib::RefPtr<Gio::DBus::Connection> bus_;
  std::string iconFolder_, busName_;
  bool visible_ = true;
  Gio::DBus::InterfaceVTable table_;  // The connection does not keep it.
  unsigned object_ = 0, ownership_ = 0;
};

}  // namespace hushmode::devices
