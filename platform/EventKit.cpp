// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/EventKit.h"

#include <cstdio>

namespace hushmode::platform {

namespace {
std::string clockTime(Date date) {
  const auto seconds = static_cast<long long>(date.secondsSince1970());
  const auto ofDay = static_cast<int>(((seconds % 86400) + 86400) % 86400);
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", ofDay / 3600, ofDay / 60 % 60, ofDay % 60);
  return text;
}
}  // namespace

EKCalendar::EKCalendar(std::string identifier, std::string title, bool allowsContentModifications,
                       std::shared_ptr<EKSource> source)
    : identifier_(std::move(identifier)),
      title_(std::move(title)),
      allowsContentModifications_(allowsContentModifications),
      source_(std::move(source)) {}

std::string EKCalendar::description() const { return "<EKCalendar " + identifier_ + ">"; }

EKEvent::EKEvent(std::shared_ptr<const EKEventDetails> details, Date start, Date end)
    : details_(std::move(details)), start_(start), end_(end) {}

std::string EKEvent::description() const {
  return "<EKEvent \"" + title().value_or("(null)") + "\" " + clockTime(start_) + "-" + clockTime(end_) + " UTC>";
}

EKEventPredicate EKEventStore::predicateForEventsWithStartDate(
    Date start, Date end, const std::vector<std::shared_ptr<EKCalendar>>& calendars) const {
  return {start, end, calendars};
}

}  // namespace hushmode::platform
