// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/bus/BusTypes.h"

#include <giomm/dbusconnection.h>
#include <optional>
#include <stdexcept>
#include <string>

namespace hushmode::cli {

/// No daemon, or a service that does not do what is asked: exit code 3.
class ServiceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The daemon that runs for this user, as packaging/com.quorvel.Hushmode1.xml describes it. Calls wait for the answer.
class Daemon {
 public:
  /// None when it does not run; it is not started for that.
  static std::optional<Daemon> running();
  /// Throws ServiceError, with what to do, when it does not run.
  static Daemon required();

  /// The values that a method returns. Throws simulation::InputError for what the daemon refuses as wrong input, and
  /// ServiceError for everything else.
  Glib::VariantContainerBase call(const std::string& method, const Glib::VariantContainerBase& arguments = {}) const;
  template <class T>
  T ask(const std::string& method, const Glib::VariantContainerBase& arguments = {}) const {
    Glib::Variant<T> value;
    call(method, arguments).get_child(value, 0);
    return value.get();
  }
  /// All properties, in one call.
  bus::Dictionary properties() const;

 private:
  explicit Daemon(Glib::RefPtr<Gio::DBus::Connection> connection) : connection_(std::move(connection)) {}
  Glib::VariantContainerBase callInterface(const char* interface, const std::string& method,
                                           const Glib::VariantContainerBase& arguments) const;

  Glib::RefPtr<Gio::DBus::Connection> connection_;
};

}  // namespace hushmode::cli
