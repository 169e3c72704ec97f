// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarSet.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace hushmode::devices {

namespace {

using platform::Date;

// The years 1 to 9999, which RFC 5545 can write.
constexpr double kFirstMoment = -62'135'596'800.0;
constexpr double kLastMoment = 253'402'300'799.0;
constexpr std::int64_t kLongestSpan = 4 * 365 * kSecondsPerDay + kSecondsPerDay;

/// Entries begin on whole seconds: rounded outwards, a span holds the same ones.
std::int64_t roundedDown(Date date) {
  const double seconds = date.secondsSince1970();
  return seconds > kFirstMoment ? static_cast<std::int64_t>(std::floor(std::min(seconds, kLastMoment)))
                                : static_cast<std::int64_t>(kFirstMoment);
}
std::int64_t roundedUp(Date date) {
  const double seconds = date.secondsSince1970();
  return seconds < kLastMoment ? static_cast<std::int64_t>(std::ceil(std::max(seconds, kFirstMoment)))
                               : static_cast<std::int64_t>(kLastMoment);
}

}  // namespace

CalendarSet::CalendarSet(Diagnostics diagnostics)
    : diagnostics_(std::move(diagnostics)),
      windows_([this](std::int64_t from, std::int64_t to, auto& occurrences) { return expand(from, to, occurrences); },
               [this](const CalendarWindows::Occurrence& occurrence) {
                 return detailsOf(*occurrence.entry, occurrence.calendar);
               }) {}

CalendarContents& CalendarSet::contentsOf(const std::string& identifier) { return calendars_[identifier].contents; }

bool CalendarSet::describe(const std::string& identifier, const std::string& title, const std::string& accountTitle,
                           bool writable) {
  Calendar& calendar = calendars_[identifier];
  CalendarInfo& info = calendar.info;
  if (info.calendar && info.title == title && info.accountTitle == accountTitle && info.writable == writable) {
    return false;
  }
  info = {identifier, title, accountTitle, writable,
          std::make_shared<platform::EKCalendar>(identifier, title, writable, sourceTitled(accountTitle))};
  calendar.contents.forgetDetails();
  return true;
}

bool CalendarSet::removeIf(const std::function<bool(const std::string& identifier)>& condition) {
  return std::erase_if(calendars_, [&](const auto& each) { return condition(each.first); }) > 0;
}

void CalendarSet::arrange() {
  ordered_.clear();
  infos_.clear();
  for (auto& [identifier, calendar] : calendars_) {
    calendar.contents.arrange();
    ordered_.push_back(&calendar);
    infos_.push_back(calendar.info);
  }
  zones_.forgetUnused();
  windows_.forget();
}

std::shared_ptr<platform::EKSource> CalendarSet::sourceTitled(const std::string& title) {
  std::weak_ptr<platform::EKSource>& known = sources_[title];
  auto source = known.lock();
  if (!source) known = source = std::make_shared<platform::EKSource>(title);
  return source;
}

std::vector<CalendarOccurrence> CalendarSet::occurrences(Date from, Date to, const TimeZone& local,
                                                         const std::vector<bool>* wanted) const {
  const std::int64_t first = roundedDown(from);
  const std::int64_t last = std::min(roundedUp(to), first + kLongestSpan);
  std::vector<CalendarOccurrence> result;
  if (last < first) return result;
  to = std::min(to, Date(static_cast<double>(first + kLongestSpan)));
  local_ = &local;
  for (const CalendarOccurrence& occurrence : windows_.around(first, last, local.name())) {
    if (!(occurrence.start < to)) break;
    if (overlapsSpan(occurrence.start, occurrence.end, from, to) &&
        (wanted == nullptr || (*wanted)[occurrence.calendar])) {
      result.push_back(occurrence);
    }
  }
  if (std::exchange(cutsMayBeNew_, false)) {
    for (Calendar* calendar : ordered_) {
      calendar->contents.reportCuts([this](const std::string& line) { report(line); });
    }
  }
  return result;
}

std::vector<bool> CalendarSet::wanted(const std::vector<std::string>& identifiers) const {
  std::vector<bool> wanted(infos_.size());
  for (const std::string& identifier : identifiers) {
    const auto info = std::lower_bound(infos_.begin(), infos_.end(), identifier,
                                       [](const CalendarInfo& a, const std::string& b) { return a.identifier < b; });
    if (info != infos_.end() && info->identifier == identifier) {
      wanted[static_cast<std::size_t>(info - infos_.begin())] = true;
    }
  }
  return wanted;
}

bool CalendarSet::expand(std::int64_t from, std::int64_t to,
                         std::vector<CalendarWindows::Occurrence>& occurrences) const {
  cutsMayBeNew_ = true;
  bool complete = true;
  std::vector<ICalOccurrence> ofCalendar;
  for (std::size_t index = 0; index < ordered_.size(); ++index) {
    ofCalendar.clear();
    complete = ordered_[index]->contents.expand(from, to, *local_, ofCalendar) && complete;
    for (const ICalOccurrence& occurrence : ofCalendar) occurrences.push_back({occurrence, index});
  }
  return complete;
}

std::shared_ptr<const platform::EKEventDetails> CalendarSet::detailsOf(ICalEntry& entry, std::size_t calendar) const {
  if (!entry.details) {
    const CalendarInfo& info = infos_[calendar];
    platform::EKEventDetails details;
    if (entry.title) details.title = entry.title.view();
    details.UUID = details.uniqueId = entry.uid.view();
    details.eventIdentifier = info.identifier + ":" + std::string(entry.uid.view());
    details.status = entry.status;
    details.allDay = entry.allDay;
    details.calendar = info.calendar;
    entry.details = std::make_shared<const platform::EKEventDetails>(std::move(details));
  }
  return entry.details;
}

CalendarOccurrence CalendarSet::made(const ICalOccurrence& occurrence, std::size_t calendar) const {
  return {Date(static_cast<double>(occurrence.start)), Date(static_cast<double>(occurrence.end)),
          detailsOf(*occurrence.entry, calendar), calendar};
}

std::optional<CalendarOccurrence> CalendarSet::withUniqueId(std::string_view uid, const TimeZone& local) const {
  for (std::size_t calendar = 0; calendar < ordered_.size(); ++calendar) {
    if (auto occurrence = firstIn(calendar, uid, local)) return occurrence;
  }
  return std::nullopt;
}

std::optional<CalendarOccurrence> CalendarSet::firstIn(std::size_t calendar, std::string_view uid,
                                                       const TimeZone& local) const {
  const ICalSeries* series = ordered_[calendar]->contents.find(uid);
  if (series == nullptr) return std::nullopt;
  const ICalSeries::Extent extent = series->extent();
  WorkBudget budget(CalendarContents::kWorkPerText);
  std::vector<ICalOccurrence> occurrences;
  // Most entries occur soon after their beginning; a rare one is looked for ever further ahead.
  std::int64_t length = 64 * kSecondsPerDay;
  for (std::int64_t from = extent.from; from <= extent.to && budget.left() > 0; from += length, length *= 4) {
    series->expand(from, from + length, local, budget, occurrences);
    if (occurrences.empty()) continue;
    const auto first = std::min_element(occurrences.begin(), occurrences.end(), [](const auto& a, const auto& b) {
      return a.start != b.start ? a.start < b.start : a.end < b.end;
    });
    return made(*first, calendar);
  }
  return std::nullopt;
}

std::optional<CalendarOccurrence> CalendarSet::withUniqueId(std::string_view uid, Date start,
                                                            const TimeZone& local) const {
  const std::int64_t from = roundedDown(start);
  for (std::size_t calendar = 0; calendar < ordered_.size(); ++calendar) {
    const ICalSeries* series = ordered_[calendar]->contents.find(uid);
    if (series == nullptr) continue;
    WorkBudget budget(CalendarContents::kWorkPerText);
    std::vector<ICalOccurrence> occurrences;
    series->expand(from, from + 1, local, budget, occurrences);
    for (const ICalOccurrence& occurrence : occurrences) {
      if (Date(static_cast<double>(occurrence.start)) == start) return made(occurrence, calendar);
    }
  }
  return std::nullopt;
}

std::optional<CalendarOccurrence> CalendarSet::withIdentifier(std::string_view identifier,
                                                              const TimeZone& local) const {
  for (std::size_t calendar = 0; calendar < ordered_.size(); ++calendar) {
    const std::string prefix = infos_[calendar].identifier + ":";
    if (!identifier.starts_with(prefix)) continue;
    if (auto occurrence = firstIn(calendar, identifier.substr(prefix.size()), local)) return occurrence;
  }
  return std::nullopt;
}

}  // namespace hushmode::devices
