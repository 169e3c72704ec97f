// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "platform/EventKit.h"

#include <cstddef>
#include <memory>
#include <string>

namespace hushmode::devices {

/// A calendar, as its source has it at present.
struct CalendarInfo {
  std::string identifier;  ///< Unique among all sources of the phone, and the same after a restart.
  std::string title;
  std::string accountTitle;
  bool writable = false;
  std::shared_ptr<platform::EKCalendar> calendar;  ///< The same as an object; a new one whenever one of these changes.
};

/// One occurrence of a calendar entry.
struct CalendarOccurrence {
  platform::Date start, end;  ///< `start` <= `end`.
  std::shared_ptr<const platform::EKEventDetails> details;
  std::size_t calendar = 0;  ///< Index into the list of calendars of whoever answers.
};

}  // namespace hushmode::devices
