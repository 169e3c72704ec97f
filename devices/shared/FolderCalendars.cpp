#include "devices/shared/FolderCalendars.h"

namespace hushmode::devices {

using platform::Date;

FolderCalendars::FolderCalendars(std::filesystem::path root, CalendarFolder::Diagnostics diagnostics)
    : folder_(std::move(root), std::move(diagnostics)) {
  folder_.rescan();
}

bool FolderCalendars::rescan() {
  const bool changed = folder_.rescan();
  if (changed) tellChanged({{"step", "calendars read again"}});
  return changed;
}

std::vector<CalendarOccurrence> FolderCalendars::occurrences(Date from, Date to, const TimeZone& local) const {
  // The folder leaves out what starts at the very end of the span.
  auto found = folder_.occurrences(from, to.addingSeconds(1), local);
  std::erase_if(found, [&](const CalendarOccurrence& each) { return each.start > to; });
  return found;
}

std::optional<CalendarOccurrence> FolderCalendars::withIdentifier(std::string_view eventIdentifier,
                                                                  const TimeZone& local) const {
  return folder_.withIdentifier(eventIdentifier, local);
}

std::optional<CalendarOccurrence> FolderCalendars::withUUID(std::string_view uuid, const TimeZone& local) const {
  return folder_.withUUID(uuid, local);
}

std::optional<CalendarOccurrence> FolderCalendars::withUniqueId(std::string_view uniqueId,
                                                                const TimeZone& local) const {
  return folder_.withUniqueId(uniqueId, local);
}

std::optional<CalendarOccurrence> FolderCalendars::withUniqueId(std::string_view uniqueId, Date start,
                                                                const TimeZone& local) const {
  return folder_.withUniqueId(uniqueId, start, local);
}

}  // namespace hushmode::devices
