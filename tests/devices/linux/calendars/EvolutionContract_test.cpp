// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionCalendars.h"
#include "tests/devices/linux/calendars/CalendarWorlds.h"
#include "tests/devices/linux/calendars/EvolutionUser.h"

#include <set>

namespace hushmode::devices {
namespace {

/// Calendars in Evolution Data Server, of which other programs may have some already.
class EvolutionWorld final : public LinuxCalendarsWorld {
 public:
  EvolutionWorld() {
    changeAndSettle(
        [&] {
          calendars_.add(
              makeEvolutionCalendars(Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), services_));
        },
        [&] { return services_.isAvailable(kEvolutionServiceName); });
  }
  ~EvolutionWorld() override {
    for (const std::string& uid : made_) user_.removeCalendar(uid);
  }

  void put(const std::string& calendar, const contracts::CalendarEntry& entry) override {
    const std::string uid = uidOf(calendar);
    if (made_.insert(uid).second) {
      changeAndSettle([&] { user_.addCalendar(uid, calendar); }, [&] { return hasCalendar(calendar); });
    }
    std::vector<std::string> components = componentTexts(entry);
    const bool isNew = !store_->eventWithUniqueId(entry.uid);
    changeAndSettle(
        [&] {
          if (isNew) {
            user_.create(uid, {components.front()});
          } else {
            user_.modify(uid, components.front());
          }
          for (std::size_t moved = 1; moved < components.size(); ++moved) user_.modify(uid, components[moved], "this");
        },
        [&] { return shows(entry); });
  }
  void remove(const std::string& calendar, const std::string& uid) override {
    changeAndSettle([&] { user_.remove(uidOf(calendar), uid); }, [&] { return !store_->eventWithUniqueId(uid); });
  }

 private:
  /// A calendar that is removed keeps its events for one that is made with the same UID.
  std::string uidOf(const std::string& calendar) const { return calendar + std::to_string(number_); }

  EvolutionUser user_;
  std::set<std::string> made_;
  static inline int worlds = 0;
  const int number_ = ++worlds;
};

}  // namespace
}  // namespace hushmode::devices

namespace hushmode::contracts {
INSTANTIATE_TYPED_TEST_SUITE_P(InEvolutionDataServer, CalendarContract, devices::EvolutionWorld);
}
