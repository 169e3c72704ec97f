// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"

#include <filesystem>
#include <functional>
#include <giomm/filemonitor.h>
#include <memory>
#include <string>

namespace hushmode::devices {

/// The time zone that the system is set to, and its changes: what the variable TZ names; else what /etc/localtime links
/// to; else what /etc/timezone names; else UTC.
class LocalZone {
 public:
  using Diagnostics = std::function<void(const std::string& line)>;

  /// Where the system keeps its zone.
  struct Places {
    std::filesystem::path link = "/etc/localtime";
    std::filesystem::path name = "/etc/timezone";
  };

  /// `diagnose` gets a line where a zone is set that the system does not know. `changed` is called from the main
  /// context after each change; while the link is missing, the zone before counts.
  LocalZone(Diagnostics diagnose, std::function<void()> changed, Places places);
  LocalZone(Diagnostics diagnose, std::function<void()> changed)
      : LocalZone(std::move(diagnose), std::move(changed), Places()) {}
  ~LocalZone();
  LocalZone(const LocalZone&) = delete;
  LocalZone& operator=(const LocalZone&) = delete;

  /// Never null.
  const std::shared_ptr<const TimeZone>& zone() const { return zone_; }

 private:
  std::shared_ptr<const TimeZone> ofEnvironment() const;
  std::shared_ptr<const TimeZone> ofSystem() const;
  std::shared_ptr<const TimeZone> known(const std::string& name, const std::string& where) const;
  void linkChanged();

  Diagnostics diagnose_;
  std::function<void()> changed_;
  Places places_;
  std::shared_ptr<const TimeZone> zone_;
  Glib::RefPtr<Gio::FileMonitor> monitor_;
  sigc::connection watch_;
};

}  // namespace hushmode::devices
