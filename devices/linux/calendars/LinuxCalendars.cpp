// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/LinuxCalendars.h"

#include "devices/linux/calendars/FreedMemory.h"

#include <glibmm/main.h>
#include <string>
#include <utility>

namespace hushmode::devices {

using platform::EKEventStore;

LinuxCalendars::LinuxCalendars(platform::NotificationCenter& notifications, EventStores::LocalZone zone)
    : notifications_(notifications), stores_(calendars_, std::move(zone)) {
  calendars_.setChangeHandler([this](const platform::Dictionary&) { changed(); });
}

LinuxCalendars::~LinuxCalendars() {
  posting_.disconnect();
  tidying_.disconnect();
}

void LinuxCalendars::add(std::unique_ptr<CalendarSource> source) {
  calendars_.add(std::move(source));
  tidySoon();
}

void LinuxCalendars::changed() {
  const auto& stores = stores_.sourceChanged();
  pending_.insert(pending_.end(), stores.begin(), stores.end());
  tidySoon();
  if (posting_.connected() || pending_.empty()) return;
  posting_ = Glib::signal_idle().connect(
      [this] {
        postPending();
        return false;
      },
      Glib::PRIORITY_DEFAULT);
}

void LinuxCalendars::postPending() {
  posting_ = {};  // What observers change is told at the next turn of the loop.
  platform::NotificationCenter& notifications = notifications_;
  for (const auto& store : std::exchange(pending_, {})) {
    if (const auto sender = store.lock()) {
      notifications.post({std::string(EKEventStore::changedNotification), sender, {}});
    }
  }
}

/// Once everything else is done that the change has set off.
void LinuxCalendars::tidySoon() {
  if (tidying_.connected()) return;
  tidying_ = Glib::signal_idle().connect(
      [] {
        giveBackFreedMemory();
        return false;
      },
      Glib::PRIORITY_LOW);
}

}  // namespace hushmode::devices
