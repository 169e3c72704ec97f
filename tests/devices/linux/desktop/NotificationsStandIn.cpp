// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/linux/desktop/NotificationsStandIn.h"

#include "devices/linux/base/Variants.h"
#include "tests/devices/linux/desktop/DesktopTest.h"

#include <giomm/dbusintrospection.h>

namespace hushmode::devices {

using Glib::Variant;
using Glib::VariantBase;
using Glib::VariantContainerBase;

namespace {

constexpr const char* name = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

// The properties are an ordinary interface here, so that this service can answer them wrongly, or not at all.
constexpr const char* description = R"(<node>
  <interface name="org.freedesktop.DBus.Properties">
    <method name="GetAll"><arg type="s"/><arg type="a{sv}" direction="out"/></method>
  </interface>
  <interface name="org.freedesktop.Notifications">
    <method name="Inhibit"><arg type="s"/><arg type="s"/><arg type="a{sv}"/>
      <arg type="COOKIE" direction="out"/></method>
    <method name="UnInhibit"><arg type="u"/></method>
  </interface>
</node>)";

/// What the bus library lets this service answer; the nonsense has to be announced, too.
std::string descriptionOf(NotificationsStandIn::Behaviour behaviour) {
  std::string text = description;
  const bool nonsense = behaviour == NotificationsStandIn::Behaviour::NonsenseCookie;
  return text.replace(text.find("COOKIE"), 6, nonsense ? "s" : "u");
}

VariantContainerBase tupleOf(const VariantBase& value) { return VariantContainerBase::create_tuple(value); }

template <class T>
T argument(const VariantContainerBase& arguments, std::size_t index) {
  Variant<T> value;
  arguments.get_child(value, index);
  return value.get();
}

}  // namespace

NotificationsStandIn::NotificationsStandIn(bool hasInhibitions, Behaviour behaviour)
    : connection_(connectToSessionBus()),
      table_([this](const auto&, const auto&, const auto&, const auto&, const Glib::ustring& method,
                    const VariantContainerBase& arguments,
                    const Invocation& invocation) { serve(method, arguments, invocation); }),
      hasInhibitions_(hasInhibitions),
      behaviour_(behaviour) {
  const auto node = Gio::DBus::NodeInfo::create_for_xml(descriptionOf(behaviour));
  for (const char* interface : {properties, name}) {
    objects_.push_back(connection_->register_object(path, node->lookup_interface(interface), table_));
  }
  ownName(connection_, name);
}

NotificationsStandIn::~NotificationsStandIn() {
  // A call that has arrived already would go to what is gone by then.
  for (const guint object : objects_) connection_->unregister_object(object);
  connection_->close_sync();
}

void NotificationsStandIn::receiveAll() { exchangeWith(connection_); }

void NotificationsStandIn::serve(const std::string& method, const VariantContainerBase& arguments,
                                 const Invocation& invocation) {
  if (method == "GetAll") return serveProperty(invocation);
  calls_.push_back(method + " " +
                   (method == "Inhibit" ? argument<Glib::ustring>(arguments, 0).raw()
                                        : std::to_string(argument<guint32>(arguments, 0))));
  switch (behaviour_) {
    case Behaviour::NeverAnswers:
    case Behaviour::StopsRequests:
      unanswered_.push_back(invocation);
      return;
    case Behaviour::Refuses:
      invocation->return_dbus_error("org.freedesktop.DBus.Error.AccessDenied", "not today");
      return;
    case Behaviour::NonsenseCookie:
      invocation->return_value(tupleOf(Variant<Glib::ustring>::create("seven")));
      return;
    case Behaviour::NonsenseProperty:
    case Behaviour::Good:
      break;
  }
  const bool before = isInhibited();
  VariantContainerBase answer;
  if (method == "Inhibit") {
    hold(++lastCookie_, invocation->get_sender());
    answer = tupleOf(Variant<guint32>::create(lastCookie_));
  } else if (cookies_.erase(argument<guint32>(arguments, 0)) == 0) {
    invocation->return_dbus_error("org.freedesktop.DBus.Error.InvalidArgs", "no such inhibition");
    return;
  }
  if (before != isInhibited()) tellChange();
  invocation->return_value(answer);
}

void NotificationsStandIn::hold(std::uint32_t cookie, const Glib::ustring& holder) {
  cookies_.insert(cookie);
  holders_.push_back(std::make_unique<NameWatch>(
      connection_, holder, [](const std::string&) {},
      [this, cookie] {
        if (cookies_.erase(cookie) != 0 && !isInhibited()) tellChange();
      }));
}

void NotificationsStandIn::serveProperty(const Invocation& invocation) {
  ++probes_;
  if (behaviour_ == Behaviour::NeverAnswers) {
    unanswered_.push_back(invocation);
  } else if (!hasInhibitions_) {
    invocation->return_value(tupleOf(Variant<Properties>::create({})));
  } else if (behaviour_ == Behaviour::NonsenseProperty) {
    invocation->return_value(
        tupleOf(Variant<Properties>::create({{"Inhibited", Variant<Glib::ustring>::create("perhaps")}})));
  } else {
    invocation->return_value(
        tupleOf(Variant<Properties>::create({{"Inhibited", Variant<bool>::create(isInhibited())}})));
  }
}

void NotificationsStandIn::setOtherInhibition(bool held) {
  otherInhibition_ = held;
  tellChange();
}

void NotificationsStandIn::clearInhibitions() {
  otherInhibition_ = false;
  cookies_.clear();
  tellChange();
}

void NotificationsStandIn::tellChange() {
  if (!tells_) return;
  sendChange(VariantContainerBase::create_tuple(
      {Variant<Glib::ustring>::create(name),
       Variant<Properties>::create({{"Inhibited", Variant<bool>::create(isInhibited())}}),
       Variant<std::vector<Glib::ustring>>::create({})}));
}

void NotificationsStandIn::sendChange(const VariantContainerBase& arguments) {
  connection_->emit_signal(path, properties, "PropertiesChanged", {}, arguments);
}

}  // namespace hushmode::devices
