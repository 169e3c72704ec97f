#include "devices/shared/CalendarFolder.h"

#include "devices/shared/CalendarContents.h"
#include "devices/shared/CalendarWindows.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
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

bool overlaps(const CalendarOccurrence& occurrence, Date from, Date to) {
  return occurrence.start < to &&
         (occurrence.end > from || (occurrence.start == occurrence.end && occurrence.start >= from));
}

}  // namespace

class CalendarFolder::State {
 public:
  State(std::filesystem::path root, Diagnostics diagnostics)
      : root_(std::move(root)), diagnostics_(std::move(diagnostics)) {}

  bool rescan();
  const std::vector<CalendarInfo>& calendars() const { return infos_; }
  std::vector<CalendarOccurrence> occurrences(Date from, Date to, const TimeZone& local,
                                              const std::vector<bool>* wanted);
  std::vector<bool> wanted(const std::vector<std::string>& identifiers) const;

  std::optional<CalendarOccurrence> firstOf(std::string_view uid, const TimeZone& local);
  std::optional<CalendarOccurrence> firstIn(std::size_t calendar, std::string_view uid, const TimeZone& local);
  std::optional<CalendarOccurrence> startingAt(std::string_view uid, Date start, const TimeZone& local);
  std::optional<CalendarOccurrence> withIdentifier(std::string_view identifier, const TimeZone& local);

 private:
  struct Calendar {
    CalendarInfo info;
    CalendarContents contents;
  };

  bool updateCalendar(const CalendarPlace& place, Calendar& calendar);
  bool updateInfo(const CalendarPlace& place, Calendar& calendar);
  std::shared_ptr<platform::EKSource> sourceTitled(const std::string& title);
  void report(const std::string& line) const {
    if (diagnostics_) diagnostics_(line);
  }
  bool expand(std::int64_t from, std::int64_t to, std::vector<CalendarWindows::Occurrence>& occurrences);
  std::shared_ptr<const platform::EKEventDetails> detailsOf(ICalEntry& entry, std::size_t calendar) const;
  CalendarOccurrence made(const ICalOccurrence& occurrence, std::size_t calendar) const;

  std::filesystem::path root_;
  Diagnostics diagnostics_;
  ICalZones zones_;
  std::vector<std::unique_ptr<Calendar>> calendars_;
  std::vector<CalendarInfo> infos_;
  std::map<std::string, std::weak_ptr<platform::EKSource>> sources_;
  std::set<std::string> placeProblems_;  ///< Of the last scan, so as not to repeat them.
  const TimeZone* local_ = nullptr;      ///< Of the query that is being answered.
  bool cutsMayBeNew_ = false;
  CalendarWindows windows_{
      [this](std::int64_t from, std::int64_t to, auto& occurrences) { return expand(from, to, occurrences); },
      [this](const CalendarWindows::Occurrence& occurrence) {
        return detailsOf(*occurrence.entry, occurrence.calendar);
      }};
};

bool CalendarFolder::State::rescan() {
  std::set<std::string> problems;
  const std::vector<CalendarPlace> places = calendarPlaces(root_, [&](const std::string& line) {
    if (problems.insert(line).second && !placeProblems_.contains(line)) report(line);
  });
  placeProblems_ = std::move(problems);

  bool changed = places.size() != calendars_.size();
  std::vector<std::unique_ptr<Calendar>> updated;
  updated.reserve(places.size());
  auto known = calendars_.begin();
  for (const CalendarPlace& place : places) {
    while (known != calendars_.end() && (*known)->info.identifier < place.identifier) ++known;
    const bool same = known != calendars_.end() && (*known)->info.identifier == place.identifier;
    updated.push_back(same ? std::move(*known++) : std::make_unique<Calendar>());
    changed = updateCalendar(place, *updated.back()) || changed;
  }
  calendars_ = std::move(updated);
  if (!changed) return false;

  infos_.clear();
  for (const auto& calendar : calendars_) infos_.push_back(calendar->info);
  zones_.forgetUnused();
  windows_.forget();
  return true;
}

bool CalendarFolder::State::updateCalendar(const CalendarPlace& place, Calendar& calendar) {
  const bool contentsChanged =
      calendar.contents.update(place.files, zones_, [this](const std::string& line) { report(line); });
  return updateInfo(place, calendar) || contentsChanged;
}

bool CalendarFolder::State::updateInfo(const CalendarPlace& place, Calendar& calendar) {
  const std::string& nameInFile = calendar.contents.name();
  const std::string& title = !place.displayName.empty() ? place.displayName
                             : !nameInFile.empty()      ? nameInFile
                                                        : place.ownName;
  CalendarInfo& info = calendar.info;
  if (info.calendar && info.title == title && info.accountTitle == place.accountTitle &&
      info.writable == place.writable) {
    return false;
  }
  info = {place.identifier, title, place.accountTitle, place.writable,
          std::make_shared<platform::EKCalendar>(place.identifier, title, place.writable,
                                                 sourceTitled(place.accountTitle))};
  calendar.contents.forgetDetails();
  return true;
}

std::shared_ptr<platform::EKSource> CalendarFolder::State::sourceTitled(const std::string& title) {
  std::weak_ptr<platform::EKSource>& known = sources_[title];
  auto source = known.lock();
  if (!source) known = source = std::make_shared<platform::EKSource>(title);
  return source;
}

std::vector<CalendarOccurrence> CalendarFolder::State::occurrences(Date from, Date to, const TimeZone& local,
                                                                   const std::vector<bool>* wanted) {
  const std::int64_t first = roundedDown(from);
  const std::int64_t last = std::min(roundedUp(to), first + kLongestSpan);
  std::vector<CalendarOccurrence> result;
  if (last < first) return result;
  to = std::min(to, Date(static_cast<double>(first + kLongestSpan)));
  local_ = &local;
  for (const CalendarOccurrence& occurrence : windows_.around(first, last, local.name())) {
    if (!(occurrence.start < to)) break;
    if (overlaps(occurrence, from, to) && (wanted == nullptr || (*wanted)[occurrence.calendar])) {
      result.push_back(occurrence);
    }
  }
  if (std::exchange(cutsMayBeNew_, false)) {
    for (const auto& calendar : calendars_) {
      calendar->contents.reportCuts([this](const std::string& line) { report(line); });
    }
  }
  return result;
}

std::vector<bool> CalendarFolder::State::wanted(const std::vector<std::string>& identifiers) const {
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

bool CalendarFolder::State::expand(std::int64_t from, std::int64_t to,
                                   std::vector<CalendarWindows::Occurrence>& occurrences) {
  cutsMayBeNew_ = true;
  bool complete = true;
  std::vector<ICalOccurrence> ofCalendar;
  for (std::size_t index = 0; index < calendars_.size(); ++index) {
    ofCalendar.clear();
    complete = calendars_[index]->contents.expand(from, to, *local_, ofCalendar) && complete;
    for (const ICalOccurrence& occurrence : ofCalendar) occurrences.push_back({occurrence, index});
  }
  return complete;
}

std::shared_ptr<const platform::EKEventDetails> CalendarFolder::State::detailsOf(ICalEntry& entry,
                                                                                 std::size_t calendar) const {
  if (!entry.details) {
    const CalendarInfo& info = infos_[calendar];
    platform::EKEventDetails details;
    details.title = entry.title;
    details.UUID = details.uniqueId = entry.uid;
    details.eventIdentifier = info.identifier + ":" + entry.uid;
    details.status = entry.status;
    details.allDay = entry.allDay;
    details.calendar = info.calendar;
    entry.details = std::make_shared<const platform::EKEventDetails>(std::move(details));
  }
  return entry.details;
}

CalendarOccurrence CalendarFolder::State::made(const ICalOccurrence& occurrence, std::size_t calendar) const {
  return {Date(static_cast<double>(occurrence.start)), Date(static_cast<double>(occurrence.end)),
          detailsOf(*occurrence.entry, calendar), calendar};
}

std::optional<CalendarOccurrence> CalendarFolder::State::firstOf(std::string_view uid, const TimeZone& local) {
  for (std::size_t calendar = 0; calendar < calendars_.size(); ++calendar) {
    if (auto occurrence = firstIn(calendar, uid, local)) return occurrence;
  }
  return std::nullopt;
}

std::optional<CalendarOccurrence> CalendarFolder::State::firstIn(std::size_t calendar, std::string_view uid,
                                                                 const TimeZone& local) {
  const ICalSeries* series = calendars_[calendar]->contents.find(uid);
  if (series == nullptr) return std::nullopt;
  const ICalSeries::Extent extent = series->extent();
  WorkBudget budget(CalendarContents::kWorkPerFile);
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

std::optional<CalendarOccurrence> CalendarFolder::State::startingAt(std::string_view uid, Date start,
                                                                    const TimeZone& local) {
  const std::int64_t from = roundedDown(start);
  for (std::size_t calendar = 0; calendar < calendars_.size(); ++calendar) {
    const ICalSeries* series = calendars_[calendar]->contents.find(uid);
    if (series == nullptr) continue;
    WorkBudget budget(CalendarContents::kWorkPerFile);
    std::vector<ICalOccurrence> occurrences;
    series->expand(from, from + 1, local, budget, occurrences);
    for (const ICalOccurrence& occurrence : occurrences) {
      if (Date(static_cast<double>(occurrence.start)) == start) return made(occurrence, calendar);
    }
  }
  return std::nullopt;
}

std::optional<CalendarOccurrence> CalendarFolder::State::withIdentifier(std::string_view identifier,
                                                                        const TimeZone& local) {
  for (std::size_t calendar = 0; calendar < calendars_.size(); ++calendar) {
    const std::string prefix = infos_[calendar].identifier + ":";
    if (!identifier.starts_with(prefix)) continue;
    if (auto occurrence = firstIn(calendar, identifier.substr(prefix.size()), local)) return occurrence;
  }
  return std::nullopt;
}

CalendarFolder::CalendarFolder(std::filesystem::path root, Diagnostics diagnostics)
    : state_(std::make_unique<State>(std::move(root), std::move(diagnostics))) {}

CalendarFolder::~CalendarFolder() = default;

bool CalendarFolder::rescan() { return state_->rescan(); }

const std::vector<CalendarInfo>& CalendarFolder::calendars() const { return state_->calendars(); }

std::vector<CalendarOccurrence> CalendarFolder::occurrences(Date from, Date to, const TimeZone& local) const {
  return state_->occurrences(from, to, local, nullptr);
}

std::vector<CalendarOccurrence> CalendarFolder::occurrences(Date from, Date to, const TimeZone& local,
                                                            const std::vector<std::string>& identifiers) const {
  const std::vector<bool> wanted = state_->wanted(identifiers);
  return state_->occurrences(from, to, local, &wanted);
}

std::optional<CalendarOccurrence> CalendarFolder::withUUID(std::string_view uuid, const TimeZone& local) const {
  return state_->firstOf(uuid, local);
}

std::optional<CalendarOccurrence> CalendarFolder::withIdentifier(std::string_view eventIdentifier,
                                                                 const TimeZone& local) const {
  return state_->withIdentifier(eventIdentifier, local);
}

std::optional<CalendarOccurrence> CalendarFolder::withUniqueId(std::string_view uniqueId, const TimeZone& local) const {
  return state_->firstOf(uniqueId, local);
}

std::optional<CalendarOccurrence> CalendarFolder::withUniqueId(std::string_view uniqueId, Date start,
                                                               const TimeZone& local) const {
  return state_->startingAt(uniqueId, start, local);
}

}  // namespace hushmode::devices
