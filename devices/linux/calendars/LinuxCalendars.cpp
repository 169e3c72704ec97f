#include "devices/linux/calendars/LinuxCalendars.h"

#include <glibmm/main.h>
#include <string>
#include <utility>

namespace hushmode::devices {

using platform::EKEventStore;

LinuxCalendars::LinuxCalendars(platform::NotificationCenter& notifications, EventStores::LocalZone zone)
    : notifications_(notifications), stores_(calendars_, std::move(zone)) {
  calendars_.setChangeHandler([this](const platform::Dictionary&) { changed(); });
}

LinuxCalendars::~LinuxCalendars() { posting_.disconnect(); }

void LinuxCalendars::changed() {
  const auto& stores = stores_.sourceChanged();
  pending_.insert(pending_.end(), stores.begin(), stores.end());
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

}  // namespace hushmode::devices
