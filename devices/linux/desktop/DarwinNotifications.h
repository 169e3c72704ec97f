// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"

#include <functional>
#include <giomm/dbusconnection.h>
#include <memory>
#include <sigc++/connection.h>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// System-wide notifications, a name and nothing else, between all programs of the session that are part of Hush Mode.
/// On the session bus a name is the signal "Posted" (one text) of the interface "com.quorvel.Hushmode.Darwin1", from
/// the object "/com/quorvel/Hushmode/Darwin". Without a bus they stay in this process.
///
/// For the thread of the main loop. Reports as "notifications between programs".
class DarwinNotifications {
 public:
  static constexpr std::size_t maximumLength = 255;  ///< Of a name, in bytes.

  DarwinNotifications(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services);
  ~DarwinNotifications();
  DarwinNotifications(const DarwinNotifications&) = delete;
  DarwinNotifications& operator=(const DarwinNotifications&) = delete;

  /// Tells the name to the observers of all processes, those of this one included, in the order of the posts. False
  /// when it is no name: empty, too long, or not UTF-8. Such names are neither sent nor taken from others.
  bool post(std::string_view name);

  using Handler = std::function<void(std::string_view name)>;
  using Observation = std::shared_ptr<const Handler>;
  /// Called from the main loop for each name posted from now on, until the observation ends.
  [[nodiscard]] Observation observe(Handler handler);

 private:
  using Observers = std::vector<std::weak_ptr<const Handler>>;
  static void tell(const Observers& observers, const std::string& name);
  void reportLoss();

  Glib::RefPtr<Gio::DBus::Connection> bus_;
  Services& services_;
  std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
  unsigned subscription_ = 0;
  sigc::connection closed_;
};

}  // namespace hushmode::devices
