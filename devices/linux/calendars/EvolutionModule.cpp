// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionModule.h"

#include "devices/linux/base/BusClient.h"
#include "devices/linux/base/NameWatch.h"
#include "devices/linux/calendars/EvolutionCalendars.h"
#include "devices/linux/calendars/EvolutionModuleEntry.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <dlfcn.h>
#include <optional>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr const char* kBus = "org.freedesktop.DBus";

class EvolutionWhenThere final : public CalendarSource {
 public:
  EvolutionWhenThere(Glib::RefPtr<Gio::DBus::Connection> connection, Services& services,
                     CalendarSet::Diagnostics diagnostics);

  const std::vector<CalendarInfo>& calendars() const override { return loaded_ ? loaded_->calendars() : none_; }
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to,
                                              const TimeZone& local) const override {
    return loaded_ ? loaded_->occurrences(from, to, local) : std::vector<CalendarOccurrence>();
  }
  std::optional<CalendarOccurrence> withIdentifier(std::string_view identifier, const TimeZone& local) const override {
    return loaded_ ? loaded_->withIdentifier(identifier, local) : std::nullopt;
  }
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const override {
    return loaded_ ? loaded_->withUUID(uuid, local) : std::nullopt;
  }
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const override {
    return loaded_ ? loaded_->withUniqueId(uniqueId, local) : std::nullopt;
  }
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const override {
    return loaded_ ? loaded_->withUniqueId(uniqueId, start, local) : std::nullopt;
  }

 private:
  void askWhetherInstalled();
  void load();
  void rest(const std::string& why) {
    services_.report(kEvolutionServiceName, {false, tr("Evolution Data Server: {}", why)});
  }

  const Glib::RefPtr<Gio::DBus::Connection> connection_;
  Services& services_;
  CalendarSet::Diagnostics diagnostics_;
  const std::vector<CalendarInfo> none_;
  std::unique_ptr<CalendarSource> loaded_;
  std::optional<BusClient> bus_;
  std::optional<NameWatch> watch_;
};

EvolutionWhenThere::EvolutionWhenThere(Glib::RefPtr<Gio::DBus::Connection> connection, Services& services,
                                       CalendarSet::Diagnostics diagnostics)
    : connection_(std::move(connection)), services_(services), diagnostics_(std::move(diagnostics)) {
  if (!connection_) {
    rest(tr("there is no session bus"));
    return;
  }
  askWhetherInstalled();
  // One that is installed while we run.
  watch_.emplace(
      connection_, kEvolutionRegistryName, [this](const std::string&) { load(); }, [] {});
}

void EvolutionWhenThere::askWhetherInstalled() {
  bus_.emplace(connection_, kBus);
  bus_->call(
      {"/org/freedesktop/DBus", kBus}, "ListActivatableNames", {}, "(as)",
      [this](const BusClient::Reply& reply) {
        const auto names = valueAt<std::vector<Glib::ustring>>(reply.values, 0).value_or(std::vector<Glib::ustring>());
        if (std::find(names.begin(), names.end(), kEvolutionRegistryName) != names.end()) {
          load();
        } else if (!loaded_) {
          rest(tr("not installed"));
        }
      },
      [this](const BusClient::Failure& failure) {
        if (!loaded_) rest(failure.reason);
      });
}

void EvolutionWhenThere::load() {
  if (loaded_) return;
  // For good: types of GLib stay registered.
  void* module = ::dlopen(kEvolutionModule, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  auto* entry = module != nullptr ? reinterpret_cast<EvolutionEntry*>(::dlsym(module, kEvolutionEntry)) : nullptr;
  if (entry == nullptr) {
    const char* problem = ::dlerror();
    return rest(tr("our module for it cannot be loaded: {}", problem != nullptr ? problem : tr("no entry")));
  }
  loaded_.reset(entry(connection_, services_, diagnostics_));
  loaded_->setChangeHandler([this](const platform::Dictionary& step) { tellChanged(step); });
}

}  // namespace

std::unique_ptr<CalendarSource> makeEvolutionCalendarsFromModule(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                                                                 Services& services,
                                                                 CalendarSet::Diagnostics diagnostics) {
  return std::make_unique<EvolutionWhenThere>(connection, services, std::move(diagnostics));
}

}  // namespace hushmode::devices
