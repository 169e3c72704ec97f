// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/LocalZone.h"

#include "devices/words/Text.h"

#include <cstdlib>
#include <fstream>
#include <giomm/error.h>
#include <giomm/file.h>
#include <string_view>
#include <utility>

namespace hushmode::devices {

namespace {

/// "Europe/Berlin" of a path into the zone database, whatever the way to it; empty for other paths.
std::string nameInDatabase(const std::string& path) {
  constexpr std::string_view kDatabase = "/zoneinfo/";
  const std::size_t place = path.rfind(kDatabase);
  if (place == std::string::npos) return {};
  std::string name = path.substr(place + kDatabase.size());
  // The database may come a second time, with or without leap seconds.
  for (const std::string_view part : {"posix/", "right/"}) {
    if (name.starts_with(part)) name.erase(0, part.size());
  }
  return name;
}

}  // namespace

LocalZone::LocalZone(Diagnostics diagnose, std::function<void()> changed, Places places)
    : diagnose_(std::move(diagnose)), changed_(std::move(changed)), places_(std::move(places)), zone_(ofEnvironment()) {
  if (zone_) return;  // The variable of a running process stays as it is.
  zone_ = ofSystem();
  if (!zone_) zone_ = TimeZone::utc();
  try {
    monitor_ = Gio::File::create_for_path(places_.link.string())->monitor_file(Gio::FileMonitorFlags::WATCH_MOVES);
    watch_ = monitor_->signal_changed().connect([this](auto&&...) { linkChanged(); });
  } catch (const Glib::Error& failure) {
    if (diagnose_) diagnose_(tr("changes of the time zone are not noticed: {}", failure.what()));
  }
}

LocalZone::~LocalZone() { watch_.disconnect(); }

void LocalZone::linkChanged() {
  auto zone = ofSystem();
  if (!zone || zone->name() == zone_->name()) return;
  zone_ = std::move(zone);
  if (changed_) changed_();
}

std::shared_ptr<const TimeZone> LocalZone::known(const std::string& name, const std::string& where) const {
  auto zone = TimeZone::named(name);
  if (!zone && diagnose_) diagnose_(tr("the system knows no time zone \"{0}\", which {1} names", name, where));
  return zone;
}

std::shared_ptr<const TimeZone> LocalZone::ofEnvironment() const {
  const char* variable = std::getenv("TZ");
  if (!variable) return nullptr;
  std::string name = variable;
  if (name.starts_with(':')) name.erase(0, 1);
  if (name.empty()) return TimeZone::utc();
  const std::string inDatabase = nameInDatabase(name);
  return known(inDatabase.empty() ? name : inDatabase, tr("the variable TZ"));
}

std::shared_ptr<const TimeZone> LocalZone::ofSystem() const {
  std::error_code error;
  const auto target = std::filesystem::read_symlink(places_.link, error);
  if (!error) {
    const std::string name = nameInDatabase(target.string());
    return known(name.empty() ? target.string() : name, places_.link.string());
  }
  std::string name;
  if (!(std::ifstream(places_.name) >> name)) return nullptr;
  return known(name, places_.name.string());
}

}  // namespace hushmode::devices
