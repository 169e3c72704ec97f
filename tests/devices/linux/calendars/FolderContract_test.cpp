// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/WatchedCalendarFolder.h"
#include "tests/devices/linux/calendars/CalendarWorlds.h"
#include "tests/devices/linux/calendars/TemporaryFolder.h"

namespace hushmode::devices {
namespace {

/// Each entry a file, as calendar synchronisers write them.
class FolderWorld final : public LinuxCalendarsWorld {
 public:
  FolderWorld() {
    changeAndSettle([&] { calendars_.add(std::make_unique<WatchedCalendarFolder>(folder_.path(), services_)); },
                    [] { return true; });
  }

  void put(const std::string& calendar, const contracts::CalendarEntry& entry) override {
    changeAndSettle([&] { folder_.replace("Account/" + calendar + "/" + entry.uid + ".ics", calendarText(entry)); },
                    [&] { return shows(entry); });
  }
  void remove(const std::string& calendar, const std::string& uid) override {
    changeAndSettle([&] { std::filesystem::remove(folder_.path() / "Account" / calendar / (uid + ".ics")); },
                    [&] { return !store_->eventWithUniqueId(uid); });
  }

 private:
  TemporaryFolder folder_;
};

}  // namespace
}  // namespace hushmode::devices

namespace hushmode::contracts {
INSTANTIATE_TYPED_TEST_SUITE_P(InAFolder, CalendarContract, devices::FolderWorld);
}
