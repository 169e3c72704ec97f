// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/CalendarContract.h"

#include <algorithm>

namespace hushmode::contracts {
namespace {

class MemoryCalendarsWorld final : public CalendarsWorld {
 public:
  platform::EventKit& eventKit() override { return phone_.eventKit(); }
  platform::NotificationCenter& notifications() override { return phone_.notifications(); }
  void put(const std::string& calendar, const CalendarEntry& entry) override {
    if (phone_.calendars().withUniqueId(entry.uid, zone())) phone_.calendars().remove(entry.uid);
    for (int day = 0; day < entry.days; ++day) {
      platform::Date start = later(entry.start, day), end = later(entry.end, day);
      for (const CalendarEntry::Moved& moved : entry.moved) {
        if (date(moved.from) != start) continue;
        start = date(moved.start);
        end = date(moved.end);
      }
      phone_.calendars().add({entry.uid, calendar, entry.title, start, end, entry.status, entry.isAllDay()});
    }
    phone_.time().runFor(0);
  }
  void remove(const std::string&, const std::string& uid) override {
    phone_.calendars().remove(uid);
    phone_.time().runFor(0);
  }

 private:
  platform::Date later(const std::string& text, int days) {
    return phone_.foundation().gregorianCalendar().dateByAddingDays(date(text), days);
  }

  devices::SimulatedPhone phone_{platform::Date(1774828800), zone_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, CalendarContract, MemoryCalendarsWorld);

}  // namespace
}  // namespace hushmode::contracts
