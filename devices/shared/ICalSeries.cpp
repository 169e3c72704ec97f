// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalSeries.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <tuple>

namespace hushmode::devices {

namespace {

/// More than any two clocks of the world are apart: 14 hours one way, 12 the other.
constexpr std::int64_t kClocksApart = 30 * 3600;
/// More than a clock is ever set forward or back.
constexpr std::int64_t kClockChange = 3 * 3600;
constexpr std::int64_t kForever = std::numeric_limits<std::int64_t>::max() / 4;

/// The end of something that starts at `at`. `start` is where the length was counted from.
std::int64_t endOf(const ICalTime& at, const ICalTime& start, const ICalLength& length, const TimeZone& local) {
  if (!length.end) {
    const ICalTime end{at.wall + length.days * kSecondsPerDay, at.zone, at.isDate};
    return end.instant(local) + length.seconds;
  }
  if (at == start) return length.end->instant(local);
  if (length.end->zone == nullptr && start.zone == nullptr) {
    return ICalTime{at.wall + length.end->wall - start.wall, at.zone}.instant(local);
  }
  // RFC 5545, 3.8.5.3: by DTEND, all occurrences last exactly as long.
  return at.instant(local) + (length.end->instant(local) - start.instant(local));
}

/// About how long it lasts, on the wall clock; negative when it ends before it starts.
std::int64_t wallLength(const ICalTime& start, const ICalLength& length) {
  return length.end ? length.end->wall - start.wall : length.days * kSecondsPerDay + length.seconds;
}

/// By how much that can be wrong.
std::int64_t slackOf(const ICalTime& start, const ICalLength& length) {
  return length.end && length.end->zone != start.zone ? kClocksApart : kClockChange;
}

void append(ICalEntry* entry, const ICalTime& at, const ICalTime& start, const ICalLength& length, std::int64_t from,
            std::int64_t to, const TimeZone& local, std::vector<ICalOccurrence>& occurrences) {
  ICalOccurrence occurrence{at.instant(local), endOf(at, start, length, local), entry};
  // An entry that ends before it starts has them exchanged.
  if (occurrence.end < occurrence.start) std::swap(occurrence.start, occurrence.end);
  if (occurrence.overlaps(from, to)) occurrences.push_back(occurrence);
}

/// Moments that are taken out of a series: dates as day numbers, times as instants.
class Exclusions {
 public:
  void add(const ICalTime& time, const TimeZone& local) {
    (time.isDate ? days_ : instants_).push_back(time.isDate ? time.day() : time.instant(local));
  }
  void order() {
    std::sort(days_.begin(), days_.end());
    std::sort(instants_.begin(), instants_.end());
  }
  bool hold(std::int64_t instant, const ICalTime& time) const {
    return std::binary_search(instants_.begin(), instants_.end(), instant) ||
           std::binary_search(days_.begin(), days_.end(), time.day());
  }

 private:
  std::vector<std::int64_t> days_, instants_;
};

}  // namespace

/// A start that the rules and dates of the entry give.
struct ICalSeries::Candidate {
  std::int64_t instant;
  ICalTime at;
  const ICalLength* length;  ///< Null: that of the entry.
};

ICalSeries::ICalSeries(std::span<ICalEntry* const> entries) {
  for (ICalEntry* entry : entries) {
    if (!entry->replaced && (entry_ == nullptr || entry->sequence >= entry_->sequence)) entry_ = entry;
  }
  addReplacements(entries);
}

void ICalSeries::addReplacements(std::span<ICalEntry* const> entries) {
  std::vector<Replacement> all;
  for (ICalEntry* entry : entries) {
    if (entry->replaced) all.push_back({entry, likeStart(entry->replaced->start)});
  }
  if (all.empty()) return;
  const auto isFuture = [](const Replacement& replacement) { return replacement.entry->replaced->thisAndFuture; };
  const auto key = [&](const Replacement& replacement) {
    return std::tuple(replacement.replaced.wall, isFuture(replacement), replacement.entry->sequence);
  };
  std::stable_sort(all.begin(), all.end(), [&](const Replacement& a, const Replacement& b) { return key(a) < key(b); });
  // Of those for the same occurrence, the last one stays.
  const auto superseded = [&](const Replacement& later, const Replacement& earlier) {
    return later.replaced == earlier.replaced && isFuture(later) == isFuture(earlier);
  };
  const auto kept = std::unique(all.rbegin(), all.rend(), superseded);
  all.erase(all.begin(), kept.base());
  replacements_ = std::make_unique<Replacements>();
  std::copy_if(all.begin(), all.end(), std::back_inserter(replacements_->futures), isFuture);
  replacements_->all = std::move(all);
}

std::span<const ICalSeries::Replacement> ICalSeries::replacements() const {
  return replacements_ ? std::span<const Replacement>(replacements_->all) : std::span<const Replacement>();
}

/// The occurrence that a RECURRENCE-ID or RDATE means: a date beside a timed series is the occurrence on that day, a
/// time beside an all-day series that of its day.
ICalTime ICalSeries::likeStart(const ICalTime& time) const {
  if (entry_ == nullptr) return time;
  const ICalTime& start = entry_->start;
  if (start.isDate) return {time.day() * kSecondsPerDay, nullptr, true};
  if (time.isDate) return {time.wall + floorModulo(start.wall, kSecondsPerDay), start.zone, false};
  if (time.zone == start.zone || time.zone == nullptr || start.zone == nullptr) return time;
  return {start.zone->localFromUtc(time.zone->utcFromLocal(time.wall)), start.zone, false};
}

bool ICalSeries::expand(std::int64_t from, std::int64_t to, const TimeZone& local, WorkBudget& budget,
                        std::vector<ICalOccurrence>& occurrences) const {
  const auto count = static_cast<std::int64_t>(replacements().size());
  if (!budget.take(WorkBudget::kOccurrence * (1 + count))) return false;
  bool complete = true;
  if (entry_ != nullptr && !entry_->repetition && !replacements_) {
    append(entry_, entry_->start, entry_->start, entry_->length, from, to, local, occurrences);
  } else if (entry_ != nullptr) {
    complete = expandRepetition(from, to, local, budget, occurrences);
  }
  for (const auto& [entry, replaced] : replacements()) {
    append(entry, entry->start, entry->start, entry->length, from, to, local, occurrences);
  }
  return complete;
}

bool ICalSeries::expandRepetition(std::int64_t from, std::int64_t to, const TimeZone& local, WorkBudget& budget,
                                  std::vector<ICalOccurrence>& occurrences) const {
  const Reach reach = longestReach();
  const WallTime first = from - reach.before - kClocksApart, last = to + reach.after + kClocksApart;
  std::vector<Candidate> candidates;
  const bool complete = collectCandidates(first, last, local, budget, candidates);

  Exclusions exclusions;
  const auto exclude = [&](const ICalTime& time) {
    if (time.wall >= first - kClocksApart && time.wall <= last + kClocksApart) exclusions.add(time, local);
  };
  for (const Replacement& replacement : replacements()) exclude(replacement.replaced);
  if (entry_->repetition) {
    if (!budget.take(static_cast<std::int64_t>(entry_->repetition->exceptions.size()))) return false;
    for (const ICalTime& time : entry_->repetition->exceptions) {
      exclude(entry_->start.isDate && !time.isDate ? likeStart(time) : time);
    }
  }
  exclusions.order();

  for (const Candidate& candidate : candidates) {
    if (exclusions.hold(candidate.instant, candidate.at)) continue;
    if (const Replacement* future = futureReplacementFor(candidate.at)) {
      const ICalEntry& entry = *future->entry;
      const ICalTime moved{entry.start.wall + (candidate.at.wall - future->replaced.wall), entry.start.zone,
                           entry.start.isDate};
      append(future->entry, moved, entry.start, entry.length, from, to, local, occurrences);
    } else {
      const bool ownLength = candidate.length != nullptr;
      append(entry_, candidate.at, ownLength ? candidate.at : entry_->start,
             ownLength ? *candidate.length : entry_->length, from, to, local, occurrences);
    }
  }
  return complete;
}

void ICalSeries::Reach::extend(std::int64_t length, std::int64_t moved, std::int64_t slack) {
  before = std::max(before, std::max<std::int64_t>(length, 0) + std::max<std::int64_t>(moved, 0) + slack);
  after = std::max(after, std::max<std::int64_t>(-length, 0) + std::max<std::int64_t>(-moved, 0) + slack);
}

ICalSeries::Reach ICalSeries::longestReach() const {
  Reach reach;
  const auto extend = [&](const ICalTime& start, const ICalLength& length, std::int64_t moved) {
    reach.extend(wallLength(start, length), moved, slackOf(start, length));
  };
  extend(entry_->start, entry_->length, 0);
  if (entry_->repetition) {
    for (const ICalRepetition::Date& date : entry_->repetition->dates) {
      if (date.length) extend(date.start, *date.length, 0);
    }
  }
  if (!replacements_) return reach;
  for (const auto& [entry, replaced] : replacements_->futures) {
    // It may be on another clock than what it replaces.
    const std::int64_t moved = entry->start.wall - replaced.wall;
    reach.extend(wallLength(entry->start, entry->length), moved, slackOf(entry->start, entry->length) + kClocksApart);
  }
  return reach;
}

bool ICalSeries::collectCandidates(WallTime from, WallTime to, const TimeZone& local, WorkBudget& budget,
                                   std::vector<Candidate>& candidates) const {
  const auto add = [&](const ICalTime& at, const ICalLength* length) {
    candidates.push_back({at.instant(local), at, length});
  };
  const ICalTime& start = entry_->start;
  bool complete = true;
  if (start.wall >= from && start.wall <= to && startOccurs()) add(start, nullptr);
  if (entry_->repetition) {
    std::vector<WallTime> walls;
    for (ICalRecurrence& rule : entry_->repetition->rules) {
      complete = rule.expand(from, to, budget, walls) && complete;
    }
    for (const WallTime wall : walls) {
      if (!budget.take(WorkBudget::kOccurrence)) return false;
      add({wall, start.zone, start.isDate}, nullptr);
    }
    if (!budget.take(static_cast<std::int64_t>(entry_->repetition->dates.size()))) return false;
    for (const ICalRepetition::Date& date : entry_->repetition->dates) {
      // It may be on another clock than the start, or a date in place of a time.
      if (date.start.wall < from - kClocksApart || date.start.wall > to + kClocksApart) continue;
      add(likeStart(date.start), date.length ? &*date.length : nullptr);
    }
  }
  // Where rules and dates agree on a start it occurs once, as long as its PERIOD says.
  std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    return a.instant != b.instant ? a.instant < b.instant : (a.length != nullptr) > (b.length != nullptr);
  });
  const auto sameStart = [](const Candidate& a, const Candidate& b) { return a.instant == b.instant; };
  candidates.erase(std::unique(candidates.begin(), candidates.end(), sameStart), candidates.end());
  return complete;
}

/// DTSTART is the first occurrence whether or not the rules meet it; but a series that ended before it began, as it is
/// left when all its occurrences are deleted, has none.
bool ICalSeries::startOccurs() const {
  if (!entry_->repetition || entry_->repetition->rules.empty()) return true;
  return std::any_of(entry_->repetition->rules.begin(), entry_->repetition->rules.end(),
                     [&](const ICalRecurrence& rule) { return !rule.last() || *rule.last() >= entry_->start.wall; });
}

/// The last THISANDFUTURE replacement at or before an occurrence.
const ICalSeries::Replacement* ICalSeries::futureReplacementFor(const ICalTime& start) const {
  if (!replacements_) return nullptr;
  const std::vector<Replacement>& futures = replacements_->futures;
  const auto later =
      std::upper_bound(futures.begin(), futures.end(), start.wall,
                       [](WallTime wall, const Replacement& replacement) { return wall < replacement.replaced.wall; });
  return later == futures.begin() ? nullptr : &*std::prev(later);
}

ICalSeries::Extent ICalSeries::extent() const {
  std::int64_t first = kForever, last = -kForever;
  const auto cover = [&](WallTime wall, const Reach& reach) {
    first = std::min(first, wall - reach.after - kClocksApart);
    last = std::max(last, wall + reach.before + kClocksApart);
  };
  for (const auto& [entry, replaced] : replacements()) {
    Reach reach;
    reach.extend(wallLength(entry->start, entry->length), 0, slackOf(entry->start, entry->length));
    cover(entry->start.wall, reach);
  }
  if (entry_ == nullptr) return {first, last};
  const Reach reach = longestReach();
  cover(entry_->start.wall, reach);
  if (entry_->repetition) {
    for (const ICalRepetition::Date& date : entry_->repetition->dates) cover(date.start.wall, reach);
    for (const ICalRecurrence& rule : entry_->repetition->rules) {
      cover(std::clamp(rule.last().value_or(kForever), -kForever, kForever), reach);
    }
  }
  return {first, last};
}

}  // namespace hushmode::devices
