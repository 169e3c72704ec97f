// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/Appearance.h"

#include "devices/words/Text.h"

#include <cstdint>
#include <giomm/settingsschemasource.h>

namespace hushmode::devices {

namespace {

const BusClient::Object portalSettings{"/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"};
constexpr const char* portalGroup = "org.freedesktop.appearance";
constexpr const char* schemaName = "org.gnome.desktop.interface";
constexpr const char* key = "color-scheme";
constexpr std::uint32_t preferDark = 1;  // 0: no preference; 2: light.

/// A schema that is not installed would end the process: it is looked up first.
Glib::RefPtr<Gio::Settings> interfaceSettings() {
  const auto source = Gio::SettingsSchemaSource::get_default();
  const auto schema = source ? source->lookup(schemaName, true) : nullptr;
  return schema && schema->has_key(key) ? Gio::Settings::create(schemaName) : nullptr;
}

/// What is inside of variants in variants: the portal wraps its values twice.
Glib::VariantBase unwrapped(Glib::VariantBase value) {
  while (value && value.is_of_type(Glib::VARIANT_TYPE_VARIANT)) {
    value = Glib::VariantBase(g_variant_get_variant(value.gobj()), false);
  }
  return value;
}

}  // namespace

Appearance::Appearance(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services,
                       std::chrono::milliseconds limit)
    : services_(services),
      settings_(interfaceSettings()),
      service_(
          sessionBus, "org.freedesktop.portal.Desktop", [this](BusClient& client) { listenTo(client); },
          [this] { take({}); }, limit) {}

void Appearance::listenTo(BusClient& client) {
  client.hear(portalSettings, "SettingChanged", "(ssv)",
              [this](const std::string&, const Glib::VariantContainerBase& values) {
                if (textAt(values, 0) != portalGroup) return;
                if (textAt(values, 1) != key) return;
                Glib::VariantBase value;
                values.get_child(value, 2);
                take(value);
              });
  client.call(
      portalSettings, "Read", argumentsOf(Glib::ustring(portalGroup), Glib::ustring(key)), "(v)",
      [this](const BusClient::Reply& reply) {
        Glib::VariantBase value;
        reply.values.get_child(value, 0);
        take(value);
      },
      [this](const BusClient::Failure& failure) {
        take({});
        // Refused: this portal does not know the setting.
        if (!failure.refused) service_.tryAgainLater();
      });
}

void Appearance::take(const Glib::VariantBase& colorScheme) {
  const auto scheme = valueOf<std::uint32_t>(unwrapped(colorScheme));
  isDarkByThePortal_ = scheme ? std::optional(*scheme == preferDark) : std::nullopt;
  report();
}

void Appearance::report() {
  if (isDarkByThePortal_) {
    services_.report("appearance", {true, tr("the desktop portal")});
  } else if (settings_) {
    services_.report("appearance", {true, "GSettings"});
  } else {
    services_.report("appearance", {false, tr("neither a desktop portal nor GSettings tells the colours")});
  }
}

std::optional<bool> Appearance::isDark() const {
  if (isDarkByThePortal_) return isDarkByThePortal_;
  if (settings_) return settings_->get_string(key) == "prefer-dark";
  return std::nullopt;
}

}  // namespace hushmode::devices
