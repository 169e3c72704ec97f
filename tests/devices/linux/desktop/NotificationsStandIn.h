// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/NameWatch.h"

#include <cstdint>
#include <functional>
#include <giomm/dbusconnection.h>
#include <giomm/dbusinterfacevtable.h>
#include <giomm/dbusmethodinvocation.h>
#include <glibmm/variant.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace hushmode::devices {

/// A notification service in the place of Plasma's, on a connection of its own. It serves from the main loop, owns the
/// name as long as it lives, and can be made to misbehave.
class NotificationsStandIn {
 public:
  enum class Behaviour {
    Good,
    Refuses,           ///< Requests are answered with errors; the property is answered.
    NeverAnswers,      ///< Neither requests nor the property.
    StopsRequests,     ///< Requests are not answered; the property is.
    NonsenseProperty,  ///< A text in the place of the boolean.
    NonsenseCookie     ///< A text in the place of the number. Only from the beginning.
  };

  /// Without inhibitions it is a service such as GNOME's.
  explicit NotificationsStandIn(bool hasInhibitions = true, Behaviour behaviour = Behaviour::Good);
  /// Leaves the bus, as a process that dies.
  ~NotificationsStandIn();

  void setBehaviour(Behaviour behaviour) { behaviour_ = behaviour; }
  /// Whether changes of the property are told.
  void setTells(bool tells) { tells_ = tells; }
  /// Another program inhibits, or gives that back.
  void setOtherInhibition(bool held);
  /// The user ends all inhibitions.
  void clearInhibitions();
  bool isInhibited() const { return otherInhibition_ || !cookies_.empty(); }
  /// Calls of Inhibit and UnInhibit so far, such as "Inhibit hushmode" and "UnInhibit 1".
  const std::vector<std::string>& calls() const { return calls_; }
  /// Runs the main loop until all has been served that the bus has sent here so far.
  void receiveAll();
  std::size_t probes() const { return probes_; }
  /// Sends a notice of changed properties with these arguments.
  void sendChange(const Glib::VariantContainerBase& arguments);

 private:
  using Invocation = Glib::RefPtr<Gio::DBus::MethodInvocation>;
  void serve(const std::string& method, const Glib::VariantContainerBase& arguments, const Invocation& invocation);
  void serveProperty(const Invocation& invocation);
  void tellChange();
  /// An inhibition ends with the connection of its holder.
  void hold(std::uint32_t cookie, const Glib::ustring& holder);

  Glib::RefPtr<Gio::DBus::Connection> connection_;
  Gio::DBus::InterfaceVTable table_;  // The connection does not keep it.
  std::vector<unsigned> objects_;
  bool hasInhibitions_;
  Behaviour behaviour_;
  bool tells_ = true;
  bool otherInhibition_ = false;
  std::set<std::uint32_t> cookies_;
  std::vector<std::unique_ptr<NameWatch>> holders_;
  std::uint32_t lastCookie_ = 0;
  std::vector<std::string> calls_;
  std::size_t probes_ = 0;
  std::vector<Invocation> unanswered_;
};

}  // namespace hushmode::devices
