// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/Daemon.h"

#include "apps/simulation/JsonReader.h"
#include "devices/linux/base/Variants.h"
#include "devices/words/Text.h"

#include <csignal>
#include <giomm/dbuserror.h>
#include <giomm/init.h>
#include <glibmm/init.h>

namespace hushmode::cli {

namespace {

constexpr const char* busName = "com.quorvel.Hushmode";
constexpr const char* objectPath = "/com/quorvel/Hushmode";
constexpr const char* interfaceName = "com.quorvel.Hushmode1";
constexpr const char* errorPrefix = "com.quorvel.Hushmode1.Error.";
constexpr int answerMilliseconds = 10000;

/// The error's name on the bus; empty for one that came up here. (giomm's own way to ask loses memory.)
std::string remoteName(const Glib::Error& error) {
  char* name = g_dbus_error_get_remote_error(error.gobj());
  const std::string copy = name ? name : "";
  g_free(name);
  return copy;
}

/// GLib's sockets let the whole process ignore SIGPIPE, but who reads our output may go away.
class KeptPipeSignal {
 public:
  KeptPipeSignal() : handler_(std::signal(SIGPIPE, SIG_DFL)) {}
  ~KeptPipeSignal() { std::signal(SIGPIPE, handler_); }
  KeptPipeSignal(const KeptPipeSignal&) = delete;
  KeptPipeSignal& operator=(const KeptPipeSignal&) = delete;

 private:
  void (*handler_)(int);
};

}  // namespace

std::optional<Daemon> Daemon::running() {
  const KeptPipeSignal kept;
  try {
    Glib::set_init_to_users_preferred_locale(false);  // That is set already, as far as the system has it.
    Gio::init();
    auto connection = Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION);
    const auto answer =
        connection->call_sync("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                              devices::argumentsOf(Glib::ustring(busName)), "org.freedesktop.DBus", answerMilliseconds);
    if (!devices::valueAt<bool>(answer, 0).value_or(false)) return std::nullopt;
    return Daemon(std::move(connection));
  } catch (const Glib::Error&) {
    return std::nullopt;  // No session bus, so no daemon on it.
  }
}

Daemon Daemon::required() {
  if (auto daemon = running()) return *daemon;
  throw ServiceError(tr("the daemon does not run; start it with: systemctl --user start hushmoded"));
}

Glib::VariantContainerBase Daemon::call(const std::string& method, const Glib::VariantContainerBase& arguments) const {
  return callInterface(interfaceName, method, arguments);
}

bus::Dictionary Daemon::properties() const {
  const auto answer =
      callInterface("org.freedesktop.DBus.Properties", "GetAll", devices::argumentsOf(Glib::ustring(interfaceName)));
  return devices::valueAt<bus::Dictionary>(answer, 0).value_or(bus::Dictionary());
}

Glib::VariantContainerBase Daemon::callInterface(const char* interface, const std::string& method,
                                                 const Glib::VariantContainerBase& arguments) const {
  try {
    return connection_->call_sync(objectPath, interface, method, arguments, busName, answerMilliseconds);
  } catch (const Glib::Error& error) {
    const std::string name = remoteName(error);
    Glib::Error stripped(error);
    g_dbus_error_strip_remote_error(stripped.gobj());
    const std::string text = stripped.what();
    if (name.starts_with(errorPrefix) && name != std::string(errorPrefix) + "NotSaved" &&
        name != std::string(errorPrefix) + "AccessDenied") {
      throw simulation::InputError(text);
    }
    throw ServiceError(tr("the daemon did not do it: {}", text));
  }
}

}  // namespace hushmode::cli
