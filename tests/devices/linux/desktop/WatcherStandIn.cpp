// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/linux/desktop/WatcherStandIn.h"

#include "devices/linux/base/NameWatch.h"
#include "tests/devices/linux/desktop/DesktopTest.h"

#include <giomm/dbusintrospection.h>
#include <optional>

namespace hushmode::devices {

namespace {

constexpr const char* name = "org.kde.StatusNotifierWatcher";
const BusClient::Object item{"/StatusNotifierItem", "org.kde.StatusNotifierItem"};

constexpr const char* description = R"(<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s"/></method>
</interface></node>)";

}  // namespace

WatcherStandIn::WatcherStandIn(Behaviour behaviour)
    : connection_(connectToSessionBus()),
      table_([this](const auto&, const auto&, const auto&, const auto&, const auto&,
                    const Glib::VariantContainerBase& arguments,
                    const Glib::RefPtr<Gio::DBus::MethodInvocation>& invocation) {
        const std::string service = valueAt<Glib::ustring>(arguments, 0).value();
        registrations_.push_back(service);
        if (behaviour_ == Behaviour::NeverAnswers) {
          unanswered_.push_back(invocation);
        } else if (behaviour_ == Behaviour::Refuses) {
          invocation->return_dbus_error("org.freedesktop.DBus.Error.Failed", "no room");
        } else {
          invocation->return_value({});
          registered(service);
        }
      }),
      behaviour_(behaviour) {
  object_ = connection_->register_object(
      "/StatusNotifierWatcher", Gio::DBus::NodeInfo::create_for_xml(description)->lookup_interface(name), table_);
  ownName(connection_, name);
}

WatcherStandIn::~WatcherStandIn() {
  connection_->unregister_object(object_);
  connection_->close_sync();
}

void WatcherStandIn::registered(const std::string& service) {
  itemWatch_ = std::make_unique<NameWatch>(
      connection_, service,
      [this](const std::string& owner) {
        item_ = std::make_unique<BusClient>(connection_, owner);
        item_->hear(item, "NewStatus", "(s)", [this](const std::string&, const Glib::VariantContainerBase& values) {
          shownStatus_ = valueAt<Glib::ustring>(values, 0).value();
        });
        item_->read(item, [this](const Properties& properties) {
          if (shownStatus_.empty()) shownStatus_ = valueOf<Glib::ustring>(properties, "Status").value_or("none");
        });
      },
      [this] {
        item_.reset();
        shownStatus_.clear();
      });
}

Properties WatcherStandIn::itemProperties() {
  std::optional<Properties> read;
  if (!waitUntil([&] { return item_ != nullptr; })) return {};
  item_->read(item, [&](const Properties& properties) { read = properties; });
  waitUntil([&] { return read.has_value(); });
  return read.value_or(Properties());
}

bool WatcherStandIn::click(const std::string& method) {
  std::optional<bool> accepted;
  const auto arguments =
      method == "Scroll" ? argumentsOf(gint32(1), Glib::ustring("vertical")) : argumentsOf(gint32(10), gint32(20));
  item_->call(
      item, method, arguments, "()", [&](const BusClient::Reply&) { accepted = true; },
      [&](const BusClient::Failure&) { accepted = false; });
  return waitUntil([&] { return accepted.has_value(); }) && *accepted;
}

}  // namespace hushmode::devices
