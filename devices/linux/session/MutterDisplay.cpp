// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/MutterDisplay.h"

#include <cstdint>
#include <utility>

namespace hushmode::devices {

namespace {

const BusClient::Object displayConfig{"/org/gnome/Mutter/DisplayConfig", "org.gnome.Mutter.DisplayConfig"};
constexpr const char* property = "PowerSaveMode";

}  // namespace

MutterDisplay::MutterDisplay(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, std::function<void()> changed,
                             std::chrono::milliseconds limit)
    : changed_(std::move(changed)),
      service_(
          sessionBus, displayConfig.interface, [this](BusClient& client) { listenTo(client); },
          [this] { take(std::nullopt); }, limit) {}

void MutterDisplay::listenTo(BusClient& client) {
  client.follow(
      displayConfig,
      [this](const Properties& properties) {
        const auto power = valueOf<std::int32_t>(properties, property);
        if (!power && isRead_) return;
        // -1: nothing is connected that could be switched.
        take(power && *power >= On && *power <= Off ? power : std::nullopt);
      },
      [this](const BusClient::Failure&) {
        take(std::nullopt);
        service_.tryAgainLater();
      });
}

void MutterDisplay::take(std::optional<int> power) {
  if (isRead_ && power == power_) return;
  isRead_ = true;
  power_ = power;
  if (changed_) changed_();
}

void MutterDisplay::setPower(int power) {
  if (!power_ || *power_ == power || !service_.client()) return;
  power_ = power;
  const auto value = Glib::Variant<Glib::VariantBase>::create(Glib::Variant<std::int32_t>::create(power));
  const auto arguments =
      Glib::VariantContainerBase::create_tuple({Glib::Variant<Glib::ustring>::create(displayConfig.interface),
                                                Glib::Variant<Glib::ustring>::create(property), value});
  service_.client()->call({displayConfig.path, "org.freedesktop.DBus.Properties"}, "Set", arguments, "()", {},
                          [this](const BusClient::Failure&) {
                            // Nothing is known of what it shows now.
                            take(std::nullopt);
                            service_.tryAgainLater();
                          });
}

}  // namespace hushmode::devices
