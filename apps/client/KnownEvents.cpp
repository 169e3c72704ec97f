// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/KnownEvents.h"

#include "apps/client/Daemon.h"
#include "apps/client/UserTime.h"
#include "devices/linux/base/Variants.h"
#include "devices/linux/core/Folders.h"
#include "devices/shared/CachedCalendarFolder.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <tuple>

namespace hushmode::cli {

using devices::valueOf;
using platform::Date;

namespace {

platform::EKEventStatus statusOf(std::int64_t code) {
  return static_cast<platform::EKEventStatus>(code >= 0 && code <= 3 ? code : 0);
}

std::vector<KnownEvent> listedBy(const Daemon& daemon, Date from, Date to) {
  std::vector<KnownEvent> events;
  for (const auto& each : daemon.ask<bus::Dictionaries>(
           "ListEvents", devices::argumentsOf(from.secondsSince1970(), to.secondsSince1970()))) {
    const auto start = valueOf<double>(each, "start"), end = valueOf<double>(each, "end");
    if (!start || !end) continue;
    events.push_back({Date(*start), Date(*end), devices::textOf(each, "calendar").value_or(""),
                      devices::textOf(each, "uid").value_or(""), devices::textOf(each, "title"),
                      statusOf(valueOf<gint64>(each, "status").value_or(0)),
                      valueOf<bool>(each, "allDay").value_or(false)});
  }
  return events;
}

std::filesystem::path cacheFile() {
  return devices::baseDirectory("XDG_CACHE_HOME", ".cache") / "hushmode" / "calendars.cache";
}

}  // namespace

KnownEvents eventsInFolder(Date from, Date to, const devices::TimeZone& zone, const Complaint& complaint) {
  devices::CachedCalendarFolder folder({calendarFolder(), cacheFile(), folderPrefix, HUSHMODE_VERSION}, complaint,
                                       wallClock());
  KnownEvents known;
  auto contents = folder.read(from, to, zone);
  for (auto& each : contents.calendars) {
    known.calendars.push_back({each.identifier, each.title, tr("calendar folder"), each.writable});
  }
  for (auto& each : contents.occurrences) {
    known.events.push_back({each.start, each.end, contents.calendars[each.calendar].identifier, std::move(each.uid),
                            std::move(each.title), each.status, each.allDay});
  }
  return known;
}

KnownEvents knownEvents(Date from, Date to, const devices::TimeZone& zone, const Complaint& complaint) {
  const auto daemon = Daemon::running();
  if (!daemon) return eventsInFolder(from, to, zone, complaint);
  KnownEvents known{knownCalendars(), listedBy(*daemon, from, to)};
  const auto order = [](const KnownEvent& each) { return std::tie(each.start, each.end, each.calendar, each.uid); };
  std::sort(known.calendars.begin(), known.calendars.end(),
            [](const auto& a, const auto& b) { return a.identifier < b.identifier; });
  std::sort(known.events.begin(), known.events.end(),
            [&](const auto& a, const auto& b) { return order(a) < order(b); });
  return known;
}

}  // namespace hushmode::cli
