// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/BannerSetting.h"

#include "devices/linux/desktop/InstalledSettings.h"

#include <utility>

namespace hushmode::devices {

namespace {
constexpr const char* showBanners = "show-banners";
}

BannerSetting::BannerSetting(std::function<void()> changed)
    : settings_(installedSettings("org.gnome.desktop.notifications", {{showBanners, "b"}})) {
  if (!settings_) return;
  changes_ = settings_->signal_changed(showBanners).connect([changed = std::move(changed)](const Glib::ustring&) {
    changed();
  });
}

BannerSetting::~BannerSetting() { changes_.disconnect(); }

bool BannerSetting::isQuiet() const { return settings_ && !settings_->get_boolean(showBanners); }

bool BannerSetting::setQuiet(bool quiet) { return settings_ && settings_->set_boolean(showBanners, !quiet); }

}  // namespace hushmode::devices
