// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Hush Mode's own calendars, one for each profile that needs it: folders of iCalendar files beside the user's, through
/// which "quiet from now on" and quiet hours are events like all others.
namespace hushmode::cli {

struct OwnEvent {
  std::string uid, title;
  std::int64_t owner = 0;               ///< The identifier of the profile that it was made for.
  std::string profile;                  ///< That profile's title, at that time.
  std::optional<platform::Date> until;  ///< Of a span.
  std::optional<std::string> hours;     ///< Of quiet hours: "22:00-06:00".
  std::string days;                     ///< Of quiet hours: "daily", or "mon,tue".
};

/// The calendar of one profile.
class OwnCalendar {
 public:
  OwnCalendar(std::int64_t profile, std::string title) : profile_(profile), title_(std::move(title)) {}

  /// As profiles name it.
  std::string identifier() const;

  // Each adds one event, in the place of one of the same kind, and waits until a running daemon has noticed it: false
  // when it has not after some seconds. Throws ServiceError when it cannot be written.

  /// One span.
  bool addQuiet(platform::Date from, platform::Date to) const;
  /// Quiet hours in local time, each day or on the days given by RFC 5545's names ("MO"); over midnight when they end
  /// before they begin.
  bool addHours(int startMinute, int endMinute, const std::vector<std::string>& days) const;
  // Each throws ServiceError for what cannot be removed.

  /// Removes the quiet hours; false when there are none.
  bool removeHours() const;
  /// The profile has got this title: so has its calendar, if there is one. Throws ServiceError.
  void retitle() const;
  /// Removes the calendar, if there is one.
  void remove() const;

  /// Removes such a span, and waits until a running daemon has noticed that: false when it has not after some seconds.
  static bool removeQuiet(const OwnEvent& span);

  /// The events of all profiles, ordered by the profile's title.
  static std::vector<OwnEvent> list();
  /// Whether a calendar is one of these.
  static bool isOwn(std::string_view identifier);

 private:
  using Properties = std::vector<std::string>;
  std::filesystem::path folder() const;
  /// Writes the file of one event, an entry of which may stand for a single occurrence, and answers the event's
  /// identifier: a new one each time, by which it can be told from what was there before.
  std::string write(const std::string& kind, const std::vector<Properties>& entries) const;

  std::int64_t profile_;
  std::string title_;
};

}  // namespace hushmode::cli
