// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarWindows.h"

#include <algorithm>
#include <tuple>

namespace hushmode::devices {

namespace {

// A scheduler asks for today and soon for tomorrow, seldom for yesterday.
constexpr std::int64_t kWeeksBefore = 7 * kSecondsPerDay;
constexpr std::int64_t kWeeksAfter = 24 * kSecondsPerDay;
/// Longer queries are answered by themselves.
constexpr std::int64_t kLongestQueryInWeeks = 8 * kSecondsPerDay;

void order(std::vector<CalendarWindows::Occurrence>& occurrences) {
  std::sort(occurrences.begin(), occurrences.end(), [](const auto& a, const auto& b) {
    const auto key = [](const auto& o) { return std::tuple(o.start, o.end, o.calendar, o.entry->uid.view()); };
    return key(a) < key(b);
  });
}

}  // namespace

const std::vector<CalendarOccurrence>& CalendarWindows::around(std::int64_t from, std::int64_t to,
                                                               const std::string& zone) {
  if (zone != zone_) {
    forget();
    zone_ = zone;
  }
  if (days_.covers(from, to)) return days_.occurrences;

  days_ = {dayOf(from) * kSecondsPerDay, (dayOf(to) + 1) * kSecondsPerDay, {}};
  for (const Occurrence& occurrence : collect(days_.from, days_.to)) {
    days_.occurrences.push_back({platform::Date(static_cast<double>(occurrence.start)),
                                 platform::Date(static_cast<double>(occurrence.end)), details_(occurrence),
                                 occurrence.calendar});
  }
  return days_.occurrences;
}

void CalendarWindows::forget() {
  weeks_ = {};
  days_ = {};
  weeksAreTooMuch_ = false;
}

std::vector<CalendarWindows::Occurrence> CalendarWindows::collect(std::int64_t from, std::int64_t to) {
  std::vector<Occurrence> occurrences;
  if (fillWeeks(from, to)) {
    std::copy_if(weeks_.occurrences.begin(), weeks_.occurrences.end(), std::back_inserter(occurrences),
                 [&](const Occurrence& occurrence) { return occurrence.overlaps(from, to); });
    return occurrences;
  }
  expand_(from, to, occurrences);
  order(occurrences);
  return occurrences;
}

/// Whether the span can be answered from the remembered weeks.
bool CalendarWindows::fillWeeks(std::int64_t from, std::int64_t to) {
  if (weeks_.covers(from, to)) return true;
  if (weeksAreTooMuch_ || to - from > kLongestQueryInWeeks) return false;
  Window<Occurrence> weeks{from - kWeeksBefore, to + kWeeksAfter, {}};
  if (!expand_(weeks.from, weeks.to, weeks.occurrences)) {
    weeksAreTooMuch_ = true;
    return false;
  }
  order(weeks.occurrences);
  weeks_ = std::move(weeks);
  return true;
}

}  // namespace hushmode::devices
