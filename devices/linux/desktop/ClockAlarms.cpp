// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/ClockAlarms.h"

#include "devices/linux/base/Variants.h"
#include "devices/linux/desktop/InstalledSettings.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <utility>

namespace hushmode::devices {

using Glib::VariantBase;
using platform::Alarm;
using platform::AlarmManager;

namespace {

constexpr const char* service = "alarms";
const ServiceState installed{true, "GNOME Clocks"};
constexpr const char* alarmsKey = "alarms";

std::string textOf(const VariantBase& entry, const char* key) {
  const char* text = nullptr;
  return g_variant_lookup(const_cast<GVariant*>(entry.gobj()), key, "&s", &text) ? text : "";
}

/// Whether two entries are of one alarm. It keeps its identifier whatever else of it is edited.
bool isSame(const VariantBase& one, const VariantBase& other) {
  const std::string id = textOf(one, "id");
  return id.empty() ? one.equal(other) : id == textOf(other, "id");
}

bool contains(const std::vector<VariantBase>& entries, const VariantBase& entry) {
  return std::any_of(entries.begin(), entries.end(), [&](const VariantBase& each) { return isSame(each, entry); });
}

VariantBase arrayOf(const std::vector<VariantBase>& entries) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("aa{sv}"));
  for (const VariantBase& each : entries) {
    g_variant_builder_add_value(&builder, const_cast<GVariant*>(each.gobj()));
  }
  return VariantBase(g_variant_ref_sink(g_variant_builder_end(&builder)));
}

}  // namespace

class ClockAlarms::ClockAlarm final : public Alarm {
 public:
  explicit ClockAlarm(VariantBase entry) : entry_(std::move(entry)), title_(textOf(entry_, "name")) {}
  std::string description() const override { return "<Alarm \"" + title_ + "\">"; }
  std::string title() const override { return title_; }
  std::string rawTitle() const override { return title_; }
  std::string uiTitle() const override { return title_; }
  const VariantBase& entry() const { return entry_; }

 private:
  VariantBase entry_;
  std::string title_;
};

class ClockAlarms::Manager final : public AlarmManager {
 public:
  explicit Manager(ClockAlarms& alarms) : alarms_(alarms) {}
  void loadAlarms() override { alarms_.load(); }
  std::vector<std::shared_ptr<Alarm>> alarms() const override { return alarms_.loaded_; }
  void removeAlarm(const std::shared_ptr<Alarm>& alarm) override { alarms_.remove(alarm); }

 private:
  ClockAlarms& alarms_;
};

class ClockAlarms::ManagerClass final : public AlarmManager::Class {
 public:
  explicit ManagerClass(ClockAlarms& alarms) : manager_(std::make_shared<Manager>(alarms)) {}
  std::shared_ptr<AlarmManager> sharedManager() override { return manager_; }

 private:
  std::shared_ptr<Manager> manager_;
};

ClockAlarms::ClockAlarms(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services)
    : services_(services),
      settings_(installedSettings("org.gnome.clocks", {{alarmsKey, "aa{sv}"}})),
      managerClass_(std::make_unique<ManagerClass>(*this)),
      clocks_(
          sessionBus, "org.gnome.clocks", [this](const std::string&) { mayWrite_ = false; },
          [this] {
            mayWrite_ = true;
            writeRemovals();
          }) {
  services_.report(service, settings_ ? installed : ServiceState{false, tr("GNOME Clocks is not installed")});
}

ClockAlarms::~ClockAlarms() = default;

platform::Class* ClockAlarms::classNamed(std::string_view name) const {
  return settings_ && name == AlarmManager::className ? managerClass_.get() : nullptr;
}

ClockAlarms::Entries ClockAlarms::stored() const {
  Glib::VariantContainerBase array;
  settings_->get_value(alarmsKey, array);
  Entries entries;
  for (gsize index = 0; index < array.get_n_children(); ++index) {
    VariantBase entry;
    array.get_child(entry, index);
    entries.push_back(std::move(entry));
  }
  return entries;
}

void ClockAlarms::load() {
  loaded_.clear();
  for (const VariantBase& entry : stored()) {
    if (loaded_.size() == maximumCount) break;
    if (!contains(removed_, entry)) loaded_.push_back(std::make_shared<ClockAlarm>(entry));
  }
}

void ClockAlarms::remove(const std::shared_ptr<Alarm>& alarm) {
  const auto own = std::dynamic_pointer_cast<ClockAlarm>(alarm);
  const auto place = std::find(loaded_.begin(), loaded_.end(), alarm);
  if (!own || place == loaded_.end()) return;
  loaded_.erase(place);
  removed_.push_back(own->entry());
  if (mayWrite_) writeRemovals();
}

/// Takes the removed alarms out of what is stored now; all others stay as they are, to the last unknown detail.
void ClockAlarms::writeRemovals() {
  if (!settings_ || removed_.empty()) return;
  Entries entries = stored();
  for (const VariantBase& removed : std::exchange(removed_, {})) {
    const auto place =
        std::find_if(entries.begin(), entries.end(), [&](const VariantBase& each) { return isSame(removed, each); });
    if (place != entries.end()) entries.erase(place);
  }
  const bool accepted = settings_->set_value(alarmsKey, arrayOf(entries));
  services_.report(service, accepted ? installed : ServiceState{false, tr("the alarms of GNOME Clocks are locked")});
}

}  // namespace hushmode::devices
