// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/BusClient.h"

#include <giomm/dbusinterfacevtable.h>
#include <giomm/dbusmethodinvocation.h>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// A panel that shows status icons, on a connection of its own: it takes items, reads their properties, and follows
/// their status.
class WatcherStandIn {
 public:
  enum class Behaviour { Good, Refuses, NeverAnswers };

  explicit WatcherStandIn(Behaviour behaviour = Behaviour::Good);
  /// Leaves the bus, as a process that dies.
  ~WatcherStandIn();

  void setBehaviour(Behaviour behaviour) { behaviour_ = behaviour; }
  /// The names under which items were registered, in order.
  const std::vector<std::string>& registrations() const { return registrations_; }
  /// The properties of the item that was registered last; asked for anew.
  Properties itemProperties();
  /// What is shown of it: its status as it was at first, and as it was told since. Empty without an item.
  const std::string& shownStatus() const { return shownStatus_; }
  /// Clicks on it; false when the item answers with an error.
  bool click(const std::string& method);

 private:
  void registered(const std::string& item);

  Glib::RefPtr<Gio::DBus::Connection> connection_;
  Gio::DBus::InterfaceVTable table_;
  unsigned object_ = 0;
  Behaviour behaviour_;
  std::vector<std::string> registrations_;
  std::vector<Glib::RefPtr<Gio::DBus::MethodInvocation>> unanswered_;
  std::unique_ptr<BusClient> item_;
  std::unique_ptr<class NameWatch> itemWatch_;
  std::string shownStatus_;
};

}  // namespace hushmode::devices
