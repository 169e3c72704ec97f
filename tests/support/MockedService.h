// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/NameWatch.h"
#include "tests/support/MainLoopWait.h"

#include <csignal>
#include <cstdlib>
#include <gio/gio.h>
#include <giomm/dbusconnection.h>
#include <giomm/init.h>
#include <glibmm/variant.h>
#include <initializer_list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <utility>
#include <vector>

namespace hushmode {

/// A connection of its own to the private "session" or "system" bus of this test.
inline Glib::RefPtr<Gio::DBus::Connection> connectTo(const std::string& bus) {
  Gio::init();
  const char* address = std::getenv(bus == "system" ? "DBUS_SYSTEM_BUS_ADDRESS" : "DBUS_SESSION_BUS_ADDRESS");
  if (!address) throw std::runtime_error("this test runs among services of its own: use tests/services/run_with.py");
  using Flags = Gio::DBus::ConnectionFlags;
  auto connection = Gio::DBus::Connection::create_for_address_sync(
      address, Flags::AUTHENTICATION_CLIENT | Flags::MESSAGE_BUS_CONNECTION);
  connection->set_exit_on_close(false);
  return connection;
}

/// A variant from its text form, such as "({'State': <uint32 2>},)".
inline Glib::VariantContainerBase parsed(const std::string& text) {
  GError* error = nullptr;
  GVariant* variant = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, &error);
  if (!variant) throw Glib::Error(error);
  return Glib::VariantContainerBase(variant, false);
}

/// A stand-in for a service (python3-dbusmock), in a process of its own that can die, hang and come back.
class MockedService {
 public:
  /// `arguments` are those of dbusmock: a template, or a name, a path and an interface.
  MockedService(std::string bus, std::string name, std::vector<std::string> arguments)
      : bus_(std::move(bus)), name_(std::move(name)), arguments_(std::move(arguments)), connection_(connectTo(bus_)) {
    start();
  }
  ~MockedService() { kill(); }
  MockedService(const MockedService&) = delete;
  MockedService& operator=(const MockedService&) = delete;

  void start() {
    std::vector<std::string> command{"/usr/bin/python3", "-m", "dbusmock", "--" + bus_};
    command.insert(command.end(), arguments_.begin(), arguments_.end());
    std::vector<const char*> words;
    for (const std::string& word : command) words.push_back(word.c_str());
    words.push_back(nullptr);
    GError* error = nullptr;
    process_.reset(g_subprocess_newv(words.data(), G_SUBPROCESS_FLAGS_STDOUT_SILENCE, &error));
    if (!process_) throw Glib::Error(error);
    bool hasOwner = false;
    const devices::NameWatch watch(
        connection_, name_, [&](const std::string&) { hasOwner = true; }, [] {});
    if (!runUntil([&] { return hasOwner; })) throw std::runtime_error(name_ + " did not start");
  }
  /// It dies at once; afterwards nobody owns its name.
  void kill() {
    if (!process_) return;
    g_subprocess_force_exit(process_.get());
    g_subprocess_wait(process_.get(), nullptr, nullptr);
    process_.reset();
    bool isGone = false;
    const devices::NameWatch watch(
        connection_, name_, [](const std::string&) {}, [&] { isGone = true; });
    runUntil([&] { return isGone; });
  }
  /// It keeps its name and answers nothing, until it goes on.
  void hang() const {
    g_subprocess_send_signal(process_.get(), SIGSTOP);
    siginfo_t stopped;
    waitid(P_PID, static_cast<id_t>(std::atoi(g_subprocess_get_identifier(process_.get()))), &stopped,
           WSTOPPED | WNOWAIT);
  }
  void goOn() const { g_subprocess_send_signal(process_.get(), SIGCONT); }

  /// Calls a method of the stand-in and waits for the answer; what the mock reports happens meanwhile reaches the main
  /// loop later.
  Glib::VariantContainerBase call(const std::string& path, const std::string& interface, const std::string& method,
                                  const std::string& arguments = "()") const {
    return connection_->call_sync(path, interface, method, parsed(arguments), name_);
  }
  Glib::VariantContainerBase control(const std::string& path, const std::string& method,
                                     const std::string& arguments = "()") const {
    return call(path, "org.freedesktop.DBus.Mock", method, arguments);
  }
  /// From now on a method of an object does what the Python lines say; what it returns is "ret".
  void answer(const std::string& path, const std::string& interface, const std::string& method,
              const std::string& takes, const std::string& returns, const std::string& code) const {
    const auto quoted = [](const std::string& text) { return Glib::Variant<Glib::ustring>::create(text).print(); };
    control(path, "AddMethod",
            "(" + quoted(interface) + "," + quoted(method) + "," + quoted(takes) + "," + quoted(returns) + "," +
                quoted(code) + ")");
  }
  /// How often a method of an object was called.
  std::size_t callsOf(const std::string& path, const std::string& method) const {
    const auto calls = control(path, "GetMethodCalls", "('" + method + "',)");
    Glib::VariantContainerBase list;
    calls.get_child(list, 0);
    return list.get_n_children();
  }

 private:
  std::string bus_, name_;
  std::vector<std::string> arguments_;
  Glib::RefPtr<Gio::DBus::Connection> connection_;
  struct Unref {
    void operator()(GSubprocess* process) const { g_object_unref(process); }
  };
  std::unique_ptr<GSubprocess, Unref> process_;
};

}  // namespace hushmode
