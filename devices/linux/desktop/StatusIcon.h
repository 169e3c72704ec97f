// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"
#include "devices/linux/base/Services.h"
#include "devices/linux/desktop/StatusNotifierItem.h"
#include "platform/StatusBar.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace hushmode::devices {

/// The phone's status bar, with room for one icon: Hush Mode's. It appears in panels that follow the StatusNotifierItem
/// protocol, as soon as one is there; where there is none (Phosh), there is no icon, and nothing else is amiss. Reports
/// as "status icon".
class StatusIcon {
 public:
  /// `iconFolder` holds the icon theme "hicolor" with the icon "hushmode-symbolic".
  StatusIcon(Glib::RefPtr<Gio::DBus::Connection> sessionBus, std::filesystem::path iconFolder, Services& services,
             std::chrono::milliseconds timeLimit = BusClient::answerLimit);
  ~StatusIcon();
  StatusIcon(const StatusIcon&) = delete;
  StatusIcon& operator=(const StatusIcon&) = delete;

  /// "LSStatusBarItem" where there is a session bus; null otherwise, and for other names. An item is visible at first.
  /// It shows Hush Mode's icon whatever image it is given, goes when it is released, and gives way to one that is made
  /// later.
  platform::Class* classNamed(std::string_view name) const;

 private:
  class Item;
  class ItemClass;

  std::shared_ptr<platform::LSStatusBarItem> makeItem();
  void announce();

  Glib::RefPtr<Gio::DBus::Connection> bus_;
  std::filesystem::path iconFolder_;
  Services& services_;
  std::unique_ptr<platform::Class> itemClass_;
  std::shared_ptr<StatusNotifierItem> shown_;
  RemoteService watcher_;
};

}  // namespace hushmode::devices
