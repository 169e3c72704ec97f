#pragma once

#include "devices/shared/CalendarSource.h"

#include <filesystem>

namespace hushmode::devices {

/// Calendars from a folder of iCalendar files.
class FolderCalendars final : public CalendarSource {
 public:
  /// Reads the folder.
  explicit FolderCalendars(std::filesystem::path root, CalendarFolder::Diagnostics diagnostics = {});

  /// Looks at the folder again; tells of a change, and answers whether there was one.
  bool rescan();

  const std::vector<CalendarInfo>& calendars() const override { return folder_.calendars(); }
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to,
                                              const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier,
                                                   const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const override;

 private:
  CalendarFolder folder_;
};

}  // namespace hushmode::devices
