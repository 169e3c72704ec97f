// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/DarwinNotifications.h"

#include "devices/linux/base/Variants.h"
#include "devices/words/Text.h"

#include <glibmm/main.h>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr const char* service = "notifications between programs";
constexpr const char* path = "/com/quorvel/Hushmode/Darwin";
constexpr const char* interface = "com.quorvel.Hushmode.Darwin1";
constexpr const char* posted = "Posted";

bool isName(std::string_view text) {
  return !text.empty() && text.size() <= DarwinNotifications::maximumLength &&
         g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr);
}

}  // namespace

DarwinNotifications::DarwinNotifications(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services)
    : bus_(sessionBus), services_(services) {
  if (!bus_) {
    services_.report(service, {false, tr("there is no session bus")});
    return;
  }
  const auto heard = [this](const Glib::RefPtr<Gio::DBus::Connection>&, const Glib::ustring& sender,
                            const Glib::ustring&, const Glib::ustring&, const Glib::ustring&,
                            const Glib::VariantContainerBase& values) {
    if (sender == bus_->get_unique_name()) return;  // Told already, without the way over the bus.
    const auto name = values.get_n_children() == 1 ? valueAt<Glib::ustring>(values, 0) : std::nullopt;
    if (name && isName(name->raw())) tell(Observers(*observers_), *name);
  };
  subscription_ = bus_->signal_subscribe(heard, {}, interface, posted, path);
  closed_ = bus_->signal_closed().connect([this](bool, const Glib::Error&) { reportLoss(); });
  services_.report(service, {true, tr("the session bus")});
}

DarwinNotifications::~DarwinNotifications() {
  closed_.disconnect();
  if (subscription_ != 0) bus_->signal_unsubscribe(subscription_);
}

bool DarwinNotifications::post(std::string_view name) {
  if (!isName(name)) return false;
  // With the priority of what comes from the bus: a busy bus must not keep the own names waiting.
  const auto soon = Glib::IdleSource::create();
  soon->set_priority(Glib::PRIORITY_DEFAULT);
  soon->connect([all = std::weak_ptr(observers_), observers = *observers_, name = std::string(name)] {
    if (!all.expired()) tell(observers, name);
    return false;
  });
  soon->attach();
  if (!bus_ || bus_->is_closed()) return true;
  try {
    bus_->emit_signal(path, interface, posted, {}, argumentsOf(Glib::ustring(std::string(name))));
  } catch (const Glib::Error&) {
    reportLoss();  // As is told soon anyway.
  }
  return true;
}

void DarwinNotifications::reportLoss() { services_.report(service, {false, tr("the session bus is gone")}); }

DarwinNotifications::Observation DarwinNotifications::observe(Handler handler) {
  std::erase_if(*observers_, [](const auto& each) { return each.expired(); });
  auto observation = std::make_shared<const Handler>(std::move(handler));
  observers_->push_back(observation);
  return observation;
}

void DarwinNotifications::tell(const Observers& observers, const std::string& name) {
  for (const auto& each : observers) {
    if (const auto observer = each.lock()) (*observer)(name);
  }
}

}  // namespace hushmode::devices
