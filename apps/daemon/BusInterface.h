// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/bus/BusTypes.h"
#include "devices/linux/base/Services.h"
#include "host/Host.h"

#include <filesystem>
#include <functional>
#include <giomm/cancellable.h>
#include <giomm/dbusconnection.h>
#include <giomm/dbusinterfacevtable.h>
#include <giomm/dbusmethodinvocation.h>
#include <map>
#include <set>
#include <sigc++/connection.h>
#include <string>

namespace hushmode::daemon {

/// The daemon on the session bus: interface com.quorvel.Hushmode1, which packaging/com.quorvel.Hushmode1.xml describes.
/// There from its making on; main thread.
class BusInterface {
 public:
  static constexpr const char* busName = "com.quorvel.Hushmode";
  static constexpr const char* objectPath = "/com/quorvel/Hushmode";
  static constexpr const char* interfaceName = "com.quorvel.Hushmode1";

  /// Whoever owns the settings file sets the master switch in it; false when it could not be written.
  using SetEnabled = std::function<bool(bool enabled)>;

  /// Host, services and connection must outlive the object. Whoever listens to the host calls `refresh`.
  /// `calendarFolder` is the folder of iCalendar files that the daemon reads.
  BusInterface(Glib::RefPtr<Gio::DBus::Connection> connection, host::Host& host, const devices::Services& services,
               const std::filesystem::path& calendarFolder, SetEnabled setEnabled);
  ~BusInterface();
  BusInterface(const BusInterface&) = delete;
  BusInterface& operator=(const BusInterface&) = delete;

  /// Tells of a switch.
  void tellSwitch(const host::Switch& each);
  /// Something that the properties show may have changed: tells of those that did, from the main loop.
  void refresh();

 private:
  using Invocation = Glib::RefPtr<Gio::DBus::MethodInvocation>;
  struct Call {
    std::string method;
    Glib::VariantContainerBase arguments;
    Invocation invocation;
  };

  void called(const Glib::ustring& sender, const Glib::ustring& method, const Glib::VariantContainerBase& arguments,
              const Invocation& invocation);
  /// Asks the bus whose process `sender` is.
  void verify(const std::string& sender);
  void answer(const Call& call);
  Glib::VariantContainerBase perform(const Call& call);
  Glib::VariantBase property(const std::string& name) const;
  void tellChanges();
  void emit(const char* interface, const char* signal, const Glib::VariantContainerBase& values);

  Glib::RefPtr<Gio::DBus::Connection> connection_;
  host::Host& host_;
  const devices::Services& services_;
  std::string calendarFolder_;
  SetEnabled setEnabled_;
  Gio::DBus::InterfaceVTable table_;
  guint registration_ = 0;
  Glib::RefPtr<Gio::Cancellable> ended_ = Gio::Cancellable::create();
  std::set<std::string> trusted_;                        ///< Senders that are this user's.
  std::map<std::string, std::vector<Call>> unverified_;  ///< Calls that wait for an answer about their sender.
  std::map<std::string, Glib::VariantBase> told_;        ///< The properties as they were told last.
  bus::Dictionaries profilesTold_;
  sigc::connection idle_;
};

}  // namespace hushmode::daemon
