// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/linux/desktop/DesktopTest.h"

#include "devices/linux/base/Variants.h"

#include <cstdlib>
#include <giomm/init.h>
#include <glibmm/spawn.h>
#include <stdexcept>

namespace hushmode::devices {

namespace {

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";

std::string textOf(const ServiceState& state) { return (state.available ? "+" : "-") + state.detail; }

}  // namespace

bool waitUntil(const std::function<bool()>& condition) {
  bool expired = false;
  sigc::connection limit = Glib::signal_timeout().connect_seconds(
      [&expired] {
        expired = true;
        return false;
      },
      30);
  // What is waited for may be no event of the loop: the doing of another process.
  sigc::connection look = Glib::signal_timeout().connect([] { return true; }, 10);
  const auto context = Glib::MainContext::get_default();
  while (!condition() && !expired) context->iteration(true);
  limit.disconnect();
  look.disconnect();
  return condition();
}

Glib::RefPtr<Gio::DBus::Connection> connectToSessionBus() {
  Gio::init();
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (!address) throw std::logic_error("these tests run on a bus of their own: tests/services/run_with.py");
  using Gio::DBus::ConnectionFlags;
  return Gio::DBus::Connection::create_for_address_sync(
      address, ConnectionFlags::AUTHENTICATION_CLIENT | ConnectionFlags::MESSAGE_BUS_CONNECTION);
}

void ownName(const Glib::RefPtr<Gio::DBus::Connection>& connection, const std::string& name) {
  const auto answer = connection->call_sync(busPath, busName, "RequestName",
                                            argumentsOf(Glib::ustring(name), static_cast<guint32>(0)), busName);
  if (valueAt<guint32>(answer, 0) != 1u) throw std::runtime_error(name + " has another owner");
}

void giveUpName(const Glib::RefPtr<Gio::DBus::Connection>& connection, const std::string& name) {
  connection->call_sync(busPath, busName, "ReleaseName", argumentsOf(Glib::ustring(name)), busName);
}

void exchangeWith(const Glib::RefPtr<Gio::DBus::Connection>& connection) {
  bool answered = false;
  connection->call(
      busPath, busName, "GetId", {},
      [&](const Glib::RefPtr<Gio::AsyncResult>& result) {
        connection->call_finish(result);
        answered = true;
      },
      busName);
  if (!waitUntil([&] { return answered; })) throw std::runtime_error("the bus does not answer");
}

std::string runCommand(const std::string& command) {
  std::string output, errors;
  int status = 0;
  Glib::spawn_sync("", std::vector<std::string>{"/bin/sh", "-c", command}, Glib::SpawnFlags::DEFAULT, {}, &output,
                   &errors, &status);
  if (status != 0) throw std::runtime_error(command + ": " + errors);
  return output;
}

DesktopTest::DesktopTest() {
  services.setListener([this](const std::string& name, const ServiceState& now, const ServiceState*) {
    reports.push_back(name + " " + textOf(now));
  });
}

std::string DesktopTest::reported(const std::string& name) const {
  const auto place = services.states().find(name);
  return place == services.states().end() ? "" : textOf(place->second);
}

}  // namespace hushmode::devices
