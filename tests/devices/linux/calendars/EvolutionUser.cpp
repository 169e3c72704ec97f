// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/linux/calendars/EvolutionUser.h"

#include "tests/devices/linux/calendars/MainLoop.h"

#include <giomm/init.h>
#include <glibmm/keyfile.h>
#include <glibmm/variant.h>
#include <stdexcept>
#include <tuple>

namespace hushmode::devices {

namespace {

using Glib::ustring;
using Glib::Variant;
using Glib::VariantContainerBase;
using Interfaces = std::map<ustring, std::map<ustring, Glib::VariantBase>>;

const std::string kInterfaces = "org.gnome.evolution.dataserver.";
const std::string kObjects = "/org/gnome/evolution/dataserver/";

template <class... T>
VariantContainerBase arguments(const T&... values) {
  return VariantContainerBase::create_tuple({Variant<T>::create(values)...});
}

template <class T>
T valueOf(const VariantContainerBase& tuple, gsize index = 0) {
  Variant<T> value;
  tuple.get_child(value, index);
  return value.get();
}

std::vector<ustring> listOf(const std::vector<std::string>& texts) { return {texts.begin(), texts.end()}; }

}  // namespace

EvolutionUser::EvolutionUser() {
  Gio::init();
  const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address == nullptr) throw std::runtime_error("there is no session bus");
  connection_ = Gio::DBus::Connection::create_for_address_sync(
      address, Gio::DBus::ConnectionFlags::AUTHENTICATION_CLIENT | Gio::DBus::ConnectionFlags::MESSAGE_BUS_CONNECTION);
}

VariantContainerBase EvolutionUser::call(const Place& place, const std::string& interface, const std::string& method,
                                         const VariantContainerBase& arguments) const {
  return connection_->call_sync(place.path, interface, method, arguments, place.busName, 30'000);
}

void EvolutionUser::addCalendar(const std::string& uid, const std::string& title) {
  const std::map<ustring, ustring> sources{{uid, "[Data Source]\nDisplayName=" + title +
                                                     "\nEnabled=true\nParent=local-stub\n\n"
                                                     "[Calendar]\nBackendName=local\n"}};
  call({registryName, kObjects + "SourceManager"}, kInterfaces + "SourceManager", "CreateSources", arguments(sources));
}

EvolutionUser::Place EvolutionUser::sourceOf(const std::string& uid) const {
  const auto answer = call({registryName, kObjects + "SourceManager"}, "org.freedesktop.DBus.ObjectManager",
                           "GetManagedObjects", VariantContainerBase());
  for (const auto& [path, interfaces] : valueOf<std::map<Glib::DBusObjectPathString, Interfaces>>(answer)) {
    const auto source = interfaces.find(kInterfaces + "Source");
    if (source == interfaces.end()) continue;
    const auto& value = source->second.at("UID");
    if (Glib::VariantBase::cast_dynamic<Variant<ustring>>(value).get().raw() == uid) return {registryName, path};
  }
  throw std::runtime_error("there is no source " + uid);
}

void EvolutionUser::removeCalendar(const std::string& uid) {
  call(sourceOf(uid), kInterfaces + "Source.Removable", "Remove", VariantContainerBase());
}

void EvolutionUser::set(const std::string& uid, const std::string& key, const std::string& value) {
  const Place place = sourceOf(uid);
  const auto data = valueOf<Glib::VariantBase>(call(place, "org.freedesktop.DBus.Properties", "Get",
                                                    arguments(ustring(kInterfaces + "Source"), ustring("Data"))));
  const auto file = Glib::KeyFile::create();
  file->load_from_data(Glib::VariantBase::cast_dynamic<Variant<ustring>>(data).get());
  file->set_string("Data Source", key, value);
  call(place, kInterfaces + "Source.Writable", "Write", arguments(file->to_data()));
}

/// A factory that was just started may not know all sources yet.
EvolutionUser::Place EvolutionUser::open(const std::string& calendar) const {
  constexpr int kTries = 50;
  for (int failures = 0;; ++failures) {
    try {
      return openNow(calendar);
    } catch (const Glib::Error&) {
      if (failures == kTries) throw;
      runMainLoopFor(std::chrono::milliseconds(20));
    }
  }
}

EvolutionUser::Place EvolutionUser::openNow(const std::string& calendar) const {
  const auto answer = call({factoryName, kObjects + "CalendarFactory"}, kInterfaces + "CalendarFactory", "OpenCalendar",
                           arguments(ustring(calendar)));
  const Place place{valueOf<ustring>(answer, 1), valueOf<ustring>(answer, 0)};
  call(place, kInterfaces + "Calendar", "Open", VariantContainerBase());
  return place;
}

void EvolutionUser::create(const std::string& calendar, const std::vector<std::string>& components) {
  call(open(calendar), kInterfaces + "Calendar", "CreateObjects", arguments(listOf(components), guint32{0}));
}

void EvolutionUser::modify(const std::string& calendar, const std::string& component, const std::string& what) {
  call(open(calendar), kInterfaces + "Calendar", "ModifyObjects",
       arguments(listOf({component}), ustring(what), guint32{0}));
}

void EvolutionUser::remove(const std::string& calendar, const std::string& uid) {
  const std::vector<std::tuple<ustring, ustring>> objects{{uid, ""}};
  call(open(calendar), kInterfaces + "Calendar", "RemoveObjects", arguments(objects, ustring("all"), guint32{0}));
}

void EvolutionUser::receive(const std::string& calendar, const std::string& text) {
  call(open(calendar), kInterfaces + "Calendar", "ReceiveObjects", arguments(ustring(text), guint32{0}));
}

pid_t EvolutionUser::processOf(const std::string& name) const {
  try {
    const auto answer = call({"org.freedesktop.DBus", "/org/freedesktop/DBus"}, "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID", arguments(ustring(name)));
    return static_cast<pid_t>(valueOf<guint32>(answer));
  } catch (const Glib::Error&) {
    return 0;
  }
}

pid_t EvolutionUser::processOfCalendar(const std::string& uid) { return processOf(open(uid).busName); }

}  // namespace hushmode::devices
