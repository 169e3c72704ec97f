// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/BusClient.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

/// Whether an error was sent by the service, and not by the bus in its place.
bool isRefusal(const GError* error) {
  if (!g_dbus_error_is_remote_error(error)) return false;
  return !std::ranges::any_of(
      std::initializer_list<int>{G_DBUS_ERROR_NO_REPLY, G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER,
                                 G_DBUS_ERROR_DISCONNECTED, G_DBUS_ERROR_LIMITS_EXCEEDED, G_DBUS_ERROR_ACCESS_DENIED},
      [&](int code) { return g_error_matches(error, G_DBUS_ERROR, code); });
}

/// For people: without the prefix that carries the error's name over the bus.
BusClient::Failure failureFrom(const Glib::Error& error) {
  GError* copy = g_error_copy(error.gobj());
  const bool refused = isRefusal(copy);
  g_dbus_error_strip_remote_error(copy);
  BusClient::Failure failure{copy->message, refused};
  g_error_free(copy);
  return failure;
}

}  // namespace

BusClient::BusClient(Glib::RefPtr<Gio::DBus::Connection> connection, std::string owner, std::chrono::milliseconds limit)
    : connection_(std::move(connection)), owner_(std::move(owner)), limit_(limit) {}

BusClient::~BusClient() {
  ended_->cancel();
  for (const guint id : subscriptions_) connection_->signal_unsubscribe(id);
}

void BusClient::call(const Object& object, const std::string& method, const Glib::VariantContainerBase& arguments,
                     const std::string& replyType, OnReply onReply, OnFailure onFailure) {
  // The connection answers even what was cancelled, so the callback tells by `ended` whether this client still lives.
  const auto finish = [connection = connection_, ended = ended_, onReply = std::move(onReply),
                       onFailure = std::move(onFailure)](const Glib::RefPtr<Gio::AsyncResult>& result) {
    Reply reply;
    try {
      reply.values = connection->call_finish(result, reply.descriptors);
    } catch (const Glib::Error& error) {
      if (onFailure && !ended->is_cancelled()) onFailure(failureFrom(error));
      return;
    }
    if (onReply && !ended->is_cancelled()) onReply(reply);
  };
  connection_->call(object.path, object.interface, method, arguments, finish, ended_, Glib::RefPtr<Gio::UnixFDList>(),
                    owner_, static_cast<int>(limit_.count()), Gio::DBus::CallFlags::NO_AUTO_START,
                    Glib::VariantType(replyType));
}

void BusClient::hear(const Object& object, const std::string& signal, const std::string& valuesType,
                     std::function<void(const std::string&, const Glib::VariantContainerBase&)> onSignal) {
  const auto check = [type = Glib::VariantType(valuesType), onSignal = std::move(onSignal)](
                         const Glib::RefPtr<Gio::DBus::Connection>&, const Glib::ustring&, const Glib::ustring& path,
                         const Glib::ustring&, const Glib::ustring&, const Glib::VariantContainerBase& values) {
    if (values.is_of_type(type)) onSignal(path, values);
  };
  subscriptions_.push_back(connection_->signal_subscribe(check, owner_, object.interface, signal, object.path));
}

void BusClient::follow(const Object& object, const OnProperties& onProperties, OnFailure onFailure) {
  hear({object.path, propertiesInterface}, "PropertiesChanged", "(sa{sv}as)",
       [this, object, onProperties](const std::string&, const Glib::VariantContainerBase& values) {
         if (textAt(values, 0) != object.interface) return;
         const auto changed = valueAt<Properties>(values, 1);
         const auto untold = valueAt<std::vector<Glib::ustring>>(values, 2);
         // A service may say that a property changed without saying to what.
         if (untold && !untold->empty()) read(object, onProperties);
         if (changed && !changed->empty()) onProperties(*changed);
       });
  read(object, onProperties, std::move(onFailure));
}

void BusClient::read(const Object& object, OnProperties onProperties, OnFailure onFailure) {
  call(
      {object.path, propertiesInterface}, "GetAll", argumentsOf(Glib::ustring(object.interface)), "(a{sv})",
      [onProperties = std::move(onProperties)](const Reply& reply) {
        onProperties(valueAt<Properties>(reply.values, 0).value_or(Properties()));
      },
      std::move(onFailure));
}

}  // namespace hushmode::devices
