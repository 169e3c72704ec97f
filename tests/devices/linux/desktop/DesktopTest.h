// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"

#include <chrono>
#include <functional>
#include <giomm/dbusconnection.h>
#include <glibmm/main.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace hushmode::devices {

/// Runs the main loop until `condition` holds; false when it does not within half a minute.
bool waitUntil(const std::function<bool()>& condition);

/// A new connection to the tests' session bus, as another program has one.
Glib::RefPtr<Gio::DBus::Connection> connectToSessionBus();

/// Makes a connection the owner of a name on the bus; throws when it has another.
void ownName(const Glib::RefPtr<Gio::DBus::Connection>& connection, const std::string& name);
void giveUpName(const Glib::RefPtr<Gio::DBus::Connection>& connection, const std::string& name);

/// Runs the main loop until all that was sent on `connection` so far has reached the bus, and all that the bus had sent
/// there has been handled.
void exchangeWith(const Glib::RefPtr<Gio::DBus::Connection>& connection);

/// Runs a command of the shell to its end, with the main loop standing still; throws when it fails. Its output.
std::string runCommand(const std::string& command);

/// A test among the desktop's services: a connection of our own, and what was reported.
class DesktopTest : public ::testing::Test {
 protected:
  DesktopTest();

  /// What is reported of `name` now, as "+detail" when available, "-detail" when not; empty when nothing.
  std::string reported(const std::string& name) const;

  Glib::RefPtr<Gio::DBus::Connection> bus = connectToSessionBus();
  Services services;
  std::vector<std::string> reports;  ///< All reports, in order, as "name +detail".
};

}  // namespace hushmode::devices
