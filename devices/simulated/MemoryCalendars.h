// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarSource.h"

#include <string>

namespace hushmode::devices {

/// An event for `MemoryCalendars`. Several with one `uid` are occurrences of one entry.
struct SimulatedEvent {
  std::string uid;       ///< Names the event in the operations below.
  std::string calendar;  ///< Identifier of its calendar.
  std::optional<std::string> title;
  platform::Date start, end;
  platform::EKEventStatus status = platform::EKEventStatus::Confirmed;
  bool allDay = false;  ///< `start` and `end` are then midnights of the phone's zone; nobody checks.
};

/// Calendars and events given one by one. Every change is told at once.
class MemoryCalendars final : public CalendarSource {
 public:
  /// Adds a calendar, or changes the names of the one with that identifier. A calendar can also be made by its first
  /// event; then its title is its identifier, and its account "Local".
  void addCalendar(std::string identifier, std::string title, std::string account = "Local", bool writable = true);
  /// Removes a calendar with all its events.
  void removeCalendar(std::string_view identifier);

  /// Adds an event; its end must not be before its start.
  void add(SimulatedEvent event);
  /// The others change every occurrence of the entry, and throw std::out_of_range when there is none with that `uid`.
  void move(std::string_view uid, platform::Date start, platform::Date end);
  void setStatus(std::string_view uid, platform::EKEventStatus status);
  void cancel(std::string_view uid) { setStatus(uid, platform::EKEventStatus::Canceled); }
  void setTitle(std::string_view uid, std::optional<std::string> title);
  void remove(std::string_view uid);

  const std::vector<CalendarInfo>& calendars() const override { return calendars_; }
  std::vector<CalendarOccurrence> occurrences(platform::Date from, platform::Date to,
                                              const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withIdentifier(std::string_view eventIdentifier,
                                                   const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUUID(std::string_view uuid, const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, const TimeZone& local) const override;
  std::optional<CalendarOccurrence> withUniqueId(std::string_view uniqueId, platform::Date start,
                                                 const TimeZone& local) const override;

 private:
  struct Stored {
    SimulatedEvent event;
    std::shared_ptr<const platform::EKEventDetails> details;
  };

  std::size_t indexOf(std::string_view calendar) const;
  void place(CalendarInfo calendar);
  void renew(Stored& stored) const;
  template <class Change>
  void change(std::string_view uid, const platform::Dictionary& step, Change edit);
  CalendarOccurrence occurrence(const Stored& stored) const;
  template <class Test>
  std::optional<CalendarOccurrence> first(Test test) const;

  std::vector<CalendarInfo> calendars_;
  std::vector<Stored> events_;
};

}  // namespace hushmode::devices
