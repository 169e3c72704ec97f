// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/StatusNotifierItem.h"

#include "devices/linux/base/Variants.h"

#include <giomm/dbusintrospection.h>
#include <giomm/dbusmethodinvocation.h>
#include <unistd.h>
#include <utility>

namespace hushmode::devices {

using Glib::ustring;
using Glib::Variant;

namespace {

constexpr const char* path = "/StatusNotifierItem";
constexpr const char* interface = "org.kde.StatusNotifierItem";
constexpr const char* title = "Hush Mode";
constexpr const char* icon = "hushmode-symbolic";

// What panels ask for, and no menu: "ItemIsMenu" false and no property "Menu" say so.
constexpr const char* description = R"(<node><interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/>
  <property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/>
  <property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/>
  <property name="IconName" type="s" access="read"/>
  <property name="IconThemePath" type="s" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/>
  <method name="ContextMenu"><arg type="i"/><arg type="i"/></method>
  <method name="Activate"><arg type="i"/><arg type="i"/></method>
  <method name="SecondaryActivate"><arg type="i"/><arg type="i"/></method>
  <method name="Scroll"><arg type="i"/><arg type="s"/></method>
  <signal name="NewStatus"><arg type="s"/></signal>
</interface></node>)";

std::string nextBusName() {
  static int count = 0;
  return "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-" + std::to_string(++count);
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(Glib::RefPtr<Gio::DBus::Connection> sessionBus,
                                       const std::filesystem::path& iconFolder)
    : bus_(std::move(sessionBus)),
      iconFolder_(iconFolder),
      busName_(nextBusName()),
      table_([](const auto&, const auto&, const auto&, const auto&, const auto&, const auto&,
                const Glib::RefPtr<Gio::DBus::MethodInvocation>& click) { click->return_value({}); },
             [this](Glib::VariantBase& value, const auto&, const auto&, const auto&, const auto&, const ustring& name) {
               value = property(name);
             }) {
  object_ = bus_->register_object(path, Gio::DBus::NodeInfo::create_for_xml(description)->lookup_interface(interface),
                                  table_);
  ownership_ = g_bus_own_name_on_connection(bus_->gobj(), busName_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                                            nullptr, nullptr, nullptr);
}

StatusNotifierItem::~StatusNotifierItem() {
  g_bus_unown_name(ownership_);
  bus_->unregister_object(object_);
}

void StatusNotifierItem::setVisible(bool visible) {
  if (std::exchange(visible_, visible) == visible) return;
  try {
    bus_->emit_signal(path, interface, "NewStatus", {}, argumentsOf(ustring(status())));
  } catch (const Glib::Error&) {
    // The bus is gone, and with it every panel.
  }
}

Glib::VariantBase StatusNotifierItem::property(const std::string& name) const {
  if (name == "Category") return Variant<ustring>::create("SystemServices");
  if (name == "Id") return Variant<ustring>::create("hushmode");
  if (name == "Title") return Variant<ustring>::create(title);
  if (name == "Status") return Variant<ustring>::create(status());
  if (name == "WindowId") return Variant<gint32>::create(0);
  if (name == "IconName") return Variant<ustring>::create(icon);
  if (name == "IconThemePath") return Variant<ustring>::create(iconFolder_);
  return Variant<bool>::create(false);  // ItemIsMenu
}

}  // namespace hushmode::devices
