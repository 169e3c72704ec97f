// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/daemon/BusInterface.h"

#include "apps/daemon/PhoneLists.h"
#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "devices/words/Text.h"
#include "host/ProfileCheck.h"

#include <giomm/dbusintrospection.h>
#include <glibmm/main.h>
#include <unistd.h>

namespace hushmode::daemon {

extern const char* const interfaceXml;

namespace {

using devices::argumentsOf;
using devices::valueAt;
using devices::variantOf;

constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* propertyNames[] = {"Version",  "Enabled",  "Applied",       "Armed",
                                         "Services", "Degraded", "CalendarFolder"};
constexpr guint32 interfaceVersion = 3;
/// More calls than that wait for the bus to say who a sender is: somebody floods us.
constexpr std::size_t mostWaiting = 100;

std::string errorName(host::EditError::Kind kind) {
  const auto name = [&] {
    switch (kind) {
      case host::EditError::Kind::InvalidArgument:
        return "InvalidArgument";
      case host::EditError::Kind::UnknownProfile:
        return "UnknownProfile";
      case host::EditError::Kind::TitleTaken:
        return "TitleTaken";
      case host::EditError::Kind::NotSaved:
        return "NotSaved";
    }
    return "NotSaved";
  };
  return std::string(BusInterface::interfaceName) + ".Error." + name();
}

template <class List>
bus::Dictionaries busForms(const List& list) {
  bus::Dictionaries forms;
  for (const auto& each : list) forms.push_back(bus::busForm(each));
  return forms;
}

template <class T>
T argument(const Glib::VariantContainerBase& arguments, gsize index) {
  const auto value = valueAt<T>(arguments, index);
  // The bus library has checked the arguments against the interface before.
  if (!value)
    throw host::EditError(host::EditError::Kind::InvalidArgument, host::Message("an argument is not of its type"));
  return *value;
}

bool equal(const Glib::VariantBase& a, const Glib::VariantBase& b) { return a && b && a.equal(b); }

}  // namespace

BusInterface::BusInterface(Glib::RefPtr<Gio::DBus::Connection> connection, host::Host& host,
                           const devices::Services& services, const std::filesystem::path& calendarFolder,
                           SetEnabled setEnabled)
    : connection_(std::move(connection)),
      host_(host),
      services_(services),
      calendarFolder_(std::filesystem::absolute(calendarFolder).string()),
      setEnabled_(std::move(setEnabled)),
      table_([this](const Glib::RefPtr<Gio::DBus::Connection>&, const Glib::ustring& sender, const Glib::ustring&,
                    const Glib::ustring&, const Glib::ustring& method, const Glib::VariantContainerBase& arguments,
                    const Invocation& invocation) { called(sender, method, arguments, invocation); },
             [this](Glib::VariantBase& value, const Glib::RefPtr<Gio::DBus::Connection>&, const Glib::ustring&,
                    const Glib::ustring&, const Glib::ustring&,
                    const Glib::ustring& name) { value = property(name.raw()); }) {
  const auto node = Gio::DBus::NodeInfo::create_for_xml(interfaceXml);
  registration_ = connection_->register_object(objectPath, node->lookup_interface(interfaceName), table_);
}

BusInterface::~BusInterface() {
  ended_->cancel();
  idle_.disconnect();
  connection_->unregister_object(registration_);
}

void BusInterface::tellSwitch(const host::Switch& each) {
  emit(interfaceName, "Switched", argumentsOf(bus::busForm(each)));
  refresh();
}

void BusInterface::called(const Glib::ustring& sender, const Glib::ustring& method,
                          const Glib::VariantContainerBase& arguments, const Invocation& invocation) {
  const Call call{method.raw(), arguments, invocation};
  if (trusted_.contains(sender.raw())) return answer(call);
  auto& waiting = unverified_[sender.raw()];
  waiting.push_back(call);
  if (waiting.size() > mostWaiting) {
    for (const Call& each : waiting) {
      g_dbus_method_invocation_return_dbus_error(each.invocation->gobj_copy(),
                                                 "com.quorvel.Hushmode1.Error.AccessDenied",
                                                 tr("too many calls at once").c_str());
    }
    waiting.clear();
  } else if (waiting.size() == 1) {
    verify(sender.raw());
  }
}

void BusInterface::verify(const std::string& sender) {
  connection_->call(
      "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetConnectionUnixUser", argumentsOf(Glib::ustring(sender)),
      [this, sender, ended = ended_](const Glib::RefPtr<Gio::AsyncResult>& result) {
        std::optional<guint32> user;
        try {
          user = valueAt<guint32>(connection_->call_finish(result), 0);
        } catch (const Glib::Error&) {
          // Cancelled, or the sender has left the bus: nobody waits for an answer.
        }
        if (ended->is_cancelled()) return;
        const auto waiting = std::move(unverified_[sender]);
        unverified_.erase(sender);
        if (user == getuid()) trusted_.insert(sender);
        for (const Call& call : waiting) {
          if (user == getuid()) {
            answer(call);
          } else {
            g_dbus_method_invocation_return_dbus_error(call.invocation->gobj_copy(),
                                                       "com.quorvel.Hushmode1.Error.AccessDenied",
                                                       tr("only the phone's own user may ask").c_str());
          }
        }
      },
      ended_, "org.freedesktop.DBus");
}

void BusInterface::answer(const Call& call) {
  try {
    call.invocation->return_value(perform(call));
  } catch (const host::EditError& refusal) {
    g_dbus_method_invocation_return_dbus_error(call.invocation->gobj_copy(), errorName(refusal.kind()).c_str(),
                                               inWords(refusal.message()).c_str());
  }
  refresh();
}

Glib::VariantContainerBase BusInterface::perform(const Call& call) {
  const std::string& method = call.method;
  if (method == "ListProfiles") return argumentsOf(busForms(host_.profiles()));
  if (method == "ListCalendars") return argumentsOf(listedCalendars());
  if (method == "ListNetworks") return argumentsOf(listedNetworks(host_));
  if (method == "ListEvents") {
    return argumentsOf(listedEvents(argument<double>(call.arguments, 0), argument<double>(call.arguments, 1)));
  }
  if (method == "RecentSwitches") {
    const auto limit = argument<guint32>(call.arguments, 0);
    bus::Dictionaries forms = busForms(host_.recentSwitches());
    if (limit > 0 && forms.size() > limit) forms.erase(forms.begin(), forms.end() - limit);
    return argumentsOf(forms);
  }
  if (method == "AddProfile") {
    const auto profile = bus::profileFrom(argument<bus::Dictionary>(call.arguments, 0));
    host::checkProfile(profile);
    return argumentsOf(static_cast<gint64>(host_.addProfile(profile)));
  }
  if (method == "UpdateProfile") {
    const auto changes = bus::profileFrom(argument<bus::Dictionary>(call.arguments, 1));
    host::checkProfile(changes);
    host_.updateProfile(argument<gint64>(call.arguments, 0), changes);
  } else if (method == "DeleteProfile") {
    host_.deleteProfile(argument<gint64>(call.arguments, 0));
  } else if (method == "SetEnabled") {
    if (!setEnabled_(argument<bool>(call.arguments, 0))) {
      throw host::EditError(host::EditError::Kind::NotSaved, host::Message("the settings file could not be written"));
    }
    host_.settingsChanged();
  } else if (method == "Plan") {
    host_.plan(true);
  }
  return {};
}

Glib::VariantBase BusInterface::property(const std::string& name) const {
  if (name == "Version") return Glib::Variant<guint32>::create(interfaceVersion);
  if (name == "Enabled") return Glib::Variant<bool>::create(host_.isEnabled());
  if (name == "Applied") return Glib::Variant<bus::Dictionaries>::create(busForms(host_.applied()));
  if (name == "Armed") return Glib::Variant<bus::Dictionaries>::create(busForms(host_.armed()));
  if (name == "CalendarFolder") return variantOf(calendarFolder_);
  bus::ServiceStates states;
  std::vector<Glib::ustring> degraded;
  for (const auto& [service, state] : services_.states()) {
    states.emplace(service, std::tuple(state.available, Glib::ustring(state.detail)));
    if (!state.available) degraded.emplace_back(service);
  }
  if (name == "Services") return Glib::Variant<bus::ServiceStates>::create(states);
  return Glib::Variant<std::vector<Glib::ustring>>::create(degraded);
}

void BusInterface::refresh() {
  if (idle_.connected()) return;
  idle_ = Glib::signal_idle().connect([this] {
    tellChanges();
    return false;
  });
}

void BusInterface::tellChanges() {
  if (!host_.isRunning()) return;
  bus::Dictionary changed;
  for (const char* name : propertyNames) {
    const auto value = property(name);
    auto& told = told_[name];
    if (equal(told, value)) continue;
    told = value;
    changed.emplace(name, value);
  }
  if (!changed.empty()) {
    emit(propertiesInterface, "PropertiesChanged",
         argumentsOf(Glib::ustring(interfaceName), changed, std::vector<Glib::ustring>()));
  }
  auto profiles = busForms(host_.profiles());
  if (!equal(Glib::Variant<bus::Dictionaries>::create(profiles),
             Glib::Variant<bus::Dictionaries>::create(profilesTold_))) {
    profilesTold_ = std::move(profiles);
    emit(interfaceName, "ProfilesChanged", {});
  }
}

void BusInterface::emit(const char* interface, const char* signal, const Glib::VariantContainerBase& values) {
  try {
    connection_->emit_signal(objectPath, interface, signal, {}, values);
  } catch (const Glib::Error&) {
    // The bus is gone, and with it whoever listened; the daemon ends when it notices that.
  }
}

}  // namespace hushmode::daemon
