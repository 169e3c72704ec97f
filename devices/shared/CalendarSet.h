// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarContents.h"
#include "devices/shared/CalendarInfo.h"
#include "devices/shared/CalendarWindows.h"
#include "devices/shared/ICalZones.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// Calendars made of iCalendar texts, and what occurs in them.
///
/// Whoever keeps the set puts texts in and takes them out again, and then calls `arrange`; until that, nothing may be
/// asked. No call throws or hangs because of what the texts hold. For one thread.
class CalendarSet {
 public:
  /// Takes a line for people.
  using Diagnostics = std::function<void(const std::string& line)>;

  explicit CalendarSet(Diagnostics diagnostics = {});
  CalendarSet(const CalendarSet&) = delete;
  CalendarSet& operator=(const CalendarSet&) = delete;

  /// The texts of the calendar with that identifier, which is made if need be; then `describe` must follow.
  CalendarContents& contentsOf(const std::string& identifier);
  /// Sets what a calendar is called. Answers whether that is a change.
  bool describe(const std::string& identifier, const std::string& title, const std::string& accountTitle,
                bool writable);
  /// Removes the calendars whose identifier fulfils the condition; answers whether there was one.
  bool removeIf(const std::function<bool(const std::string& identifier)>& condition);
  /// To be called after a change. What was computed before is forgotten.
  void arrange();

  /// The time zones that the texts bring along.
  ICalZones& zones() { return zones_; }
  void report(const std::string& line) const {
    if (diagnostics_) diagnostics_(line);
  }

  /// The calendars, ordered by identifier.
  const std::vector<CalendarInfo>& calendars() const { return infos_; }

  /// See `CalendarFolder::occurrences`. `wanted` has a flag for each calendar; null for all.
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to, const TimeZone& local,
                                              const std::vector<bool>* wanted = nullptr) const;
  std::vector<bool> wanted(const std::vector<std::string>& identifiers) const;

  /// See `CalendarFolder::withUUID` and its like.
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uid, const TimeZone& local) const;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uid, platform::Date start,
                                                 const TimeZone& local) const;
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier, const TimeZone& local) const;

 private:
  struct Calendar {
    CalendarInfo info;
    CalendarContents contents;
  };

  std::shared_ptr<platform::EKSource> sourceTitled(const std::string& title);
  bool expand(std::int64_t from, std::int64_t to, std::vector<CalendarWindows::Occurrence>& occurrences) const;
  std::shared_ptr<const platform::EKEventDetails> detailsOf(ICalEntry& entry, std::size_t calendar) const;
  CalendarOccurrence made(const ICalOccurrence& occurrence, std::size_t calendar) const;
  std::optional<CalendarOccurrence> firstIn(std::size_t calendar, std::string_view uid, const TimeZone& local) const;

  Diagnostics diagnostics_;
  ICalZones zones_;
  std::map<std::string, Calendar> calendars_;
  std::vector<Calendar*> ordered_;  ///< In the order of `infos_`.
  std::vector<CalendarInfo> infos_;
  std::map<std::string, std::weak_ptr<platform::EKSource>> sources_;
  mutable const TimeZone* local_ = nullptr;  ///< Of the query that is being answered.
  mutable bool cutsMayBeNew_ = false;
  mutable CalendarWindows windows_;
};

}  // namespace hushmode::devices
