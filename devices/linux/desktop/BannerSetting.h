// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <giomm/settings.h>
#include <sigc++/connection.h>

namespace hushmode::devices {

/// Do Not Disturb as GNOME and Phosh have it: the desktop-wide setting whether notifications are shown as banners. It
/// outlives the process.
class BannerSetting {
 public:
  /// `changed` is called after each change of the setting, whoever made it, inside `setQuiet` too.
  explicit BannerSetting(std::function<void()> changed);
  ~BannerSetting();
  BannerSetting(const BannerSetting&) = delete;
  BannerSetting& operator=(const BannerSetting&) = delete;

  bool isInstalled() const { return settings_ != nullptr; }
  /// No banners are shown. False when not installed.
  bool isQuiet() const;
  /// False when it cannot be set: not installed, or locked by the administrator.
  bool setQuiet(bool quiet);

 private:
  Glib::RefPtr<Gio::Settings> settings_;
  sigc::connection changes_;
};

}  // namespace hushmode::devices
