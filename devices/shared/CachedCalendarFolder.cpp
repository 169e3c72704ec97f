// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CachedCalendarFolder.h"

#include "devices/shared/CalendarUpdate.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace hushmode::devices {

using platform::Date;

namespace {

// People ask for today, and tomorrow they ask for that day: what is remembered lasts for a month.
constexpr std::int64_t kDaysBefore = 1, kDaysAfter = 35;
/// More than that is quicker read from the calendars than from a cache.
constexpr std::size_t kMostOccurrences = 1'000'000;

std::int64_t modifiedAt(const char* path) {
  struct stat status {};
  return ::stat(path, &status) == 0 ? status.st_mtim.tv_sec : 0;
}

}  // namespace

CachedCalendarFolder::CachedCalendarFolder(Options options, CalendarFolder::Diagnostics diagnostics, Date now)
    : options_(std::move(options)),
      diagnostics_(std::move(diagnostics)),
      nowSeconds_(static_cast<std::int64_t>(std::floor(now.secondsSince1970()))) {}

/// All that an answer depends on besides the files. The database of time zones is known by the age of its folder.
std::string CachedCalendarFolder::keyFor(const TimeZone& local) const {
  const char* zones = std::getenv("TZDIR");
  const std::string folder = zones != nullptr ? zones : "/usr/share/zoneinfo";
  return options_.program + '\n' + options_.root.native() + '\n' + options_.identifierPrefix + '\n' + local.name() +
         '\n' + folder + '\n' + std::to_string(modifiedAt(folder.c_str()));
}

CachedCalendarFolder::Contents CachedCalendarFolder::read(Date from, Date to, const TimeZone& local) {
  const auto first = static_cast<std::int64_t>(std::floor(from.secondsSince1970()));
  const auto last = static_cast<std::int64_t>(std::ceil(to.secondsSince1970()));
  const auto report = [this](const std::string& line) {
    if (diagnostics_) diagnostics_(line);
  };
  const auto places = calendarPlaces(options_.root, report);
  const std::string key = keyFor(local);
  filesRead_ = 0;

  std::optional<CalendarCache> old = CalendarCache::load(options_.cache, key);
  if (old && !(old->from <= first && last <= old->to)) old.reset();
  if (old && isUpToDate(*old, places)) return contentsOf(*old, places, {}, from, to);

  CalendarCache made;
  made.from = old ? old->from : first - kDaysBefore * kSecondsPerDay;
  made.to = old ? old->to : std::max(last, first + kDaysAfter * kSecondsPerDay);
  const CalendarCache none;
  std::vector<Occurrence> inPart;
  for (std::size_t index = 0; index < places.size(); ++index) {
    const std::string identifier = options_.identifierPrefix + places[index].identifier;
    const auto* known = old ? remembered(*old, identifier) : nullptr;
    CalendarUpdate update(places[index], old ? *old : none, known);
    if (known) {
      update.readChanged();
    } else {
      update.readAll();
    }
    bool complete = update.expand(made.from, made.to, local);
    if (!complete && !update.hasReadAll()) {
      update.readAll();
      complete = update.expand(made.from, made.to, local);
    }
    if (!complete) {
      update.expandInPart(first, last, local);
      for (const ICalOccurrence& each : update.occurrences()) {
        const ICalEntry& entry = *each.entry;
        inPart.push_back({Date(static_cast<double>(each.start)), Date(static_cast<double>(each.end)), index,
                          std::string(entry.uid.view()),
                          entry.title ? std::optional<std::string>(entry.title.view()) : std::nullopt, entry.status,
                          entry.allDay});
      }
    }
    update.addTo(made, identifier, complete, nowSeconds_);
    filesRead_ += update.filesRead();
  }
  // A cache that cannot be written costs time at the next call, nothing else.
  if (made.occurrences.size() <= kMostOccurrences) static_cast<void>(made.save(options_.cache, key));
  return contentsOf(made, places, std::move(inPart), from, to);
}

/// The calendar as it was remembered; null when it is new, or was too much to remember.
const CalendarCache::Calendar* CachedCalendarFolder::remembered(const CalendarCache& cache,
                                                                const std::string& identifier) {
  const auto place = std::find_if(cache.calendars.begin(), cache.calendars.end(),
                                  [&](const auto& each) { return cache.view(each.identifier) == identifier; });
  return place != cache.calendars.end() && place->complete ? &*place : nullptr;
}

bool CachedCalendarFolder::isUpToDate(const CalendarCache& cache, const std::vector<CalendarPlace>& places) const {
  if (cache.calendars.size() != places.size()) return false;
  for (std::size_t index = 0; index < places.size(); ++index) {
    const auto& known = cache.calendars[index];
    const auto& files = places[index].files;
    if (cache.view(known.identifier) != options_.identifierPrefix + places[index].identifier || !known.complete ||
        known.files != files.size()) {
      return false;
    }
    const auto* file = cache.files.data() + known.firstFile;
    for (const auto& each : files) {
      if (!file->settled || file->signature != each.signature || cache.view(file->path) != each.path) {
        return false;
      }
      ++file;
    }
  }
  return true;
}

CachedCalendarFolder::Contents CachedCalendarFolder::contentsOf(const CalendarCache& cache,
                                                                const std::vector<CalendarPlace>& places,
                                                                std::vector<Occurrence> others, Date from,
                                                                Date to) const {
  Contents contents{{}, std::move(others)};
  std::erase_if(contents.occurrences, [&](const auto& each) { return !overlapsSpan(each.start, each.end, from, to); });
  for (std::size_t index = 0; index < places.size(); ++index) {
    const auto& known = cache.calendars[index];
    std::string_view name;
    for (std::uint32_t place = 0; place < known.files; ++place) {
      const auto& file = cache.files[known.firstFile + place];
      if (name.empty()) name = cache.view(file.calendarName);
      if (file.problems.length > 0) report(cache.view(file.problems));
    }
    const CalendarPlace& place = places[index];
    contents.calendars.push_back({std::string(cache.view(known.identifier)),
                                  !place.displayName.empty() ? place.displayName
                                  : !name.empty()            ? std::string(name)
                                                             : place.ownName,
                                  place.accountTitle, place.writable});
    for (std::uint32_t item = 0; item < known.occurrences; ++item) {
      const auto& each = cache.occurrences[known.firstOccurrence + item];
      const Date start(static_cast<double>(each.start)), end(static_cast<double>(each.end));
      if (!overlapsSpan(start, end, from, to)) continue;
      contents.occurrences.push_back({start, end, index, std::string(cache.view(each.uid)),
                                      each.hasTitle ? std::optional<std::string>(cache.view(each.title)) : std::nullopt,
                                      static_cast<platform::EKEventStatus>(each.status), each.allDay != 0});
    }
  }
  std::sort(contents.occurrences.begin(), contents.occurrences.end(), [](const auto& a, const auto& b) {
    return std::tie(a.start, a.end, a.calendar, a.uid) < std::tie(b.start, b.end, b.calendar, b.uid);
  });
  return contents;
}

void CachedCalendarFolder::report(std::string_view lines) const {
  if (!diagnostics_) return;
  for (std::size_t end = lines.find('\n'); end != std::string_view::npos; end = lines.find('\n')) {
    diagnostics_(std::string(lines.substr(0, end)));
    lines.remove_prefix(end + 1);
  }
}

}  // namespace hushmode::devices
