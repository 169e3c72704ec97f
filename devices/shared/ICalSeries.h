// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarSpans.h"
#include "devices/shared/ICalEntry.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace hushmode::devices {

/// One occurrence, in seconds since 1970, UTC; `start` <= `end`.
struct ICalOccurrence {
  std::int64_t start, end;
  ICalEntry* entry;  ///< What it is called: the entry, or what replaces this occurrence of it.

  /// Whether it overlaps the span: see `CalendarFolder::occurrences`.
  bool overlaps(std::int64_t from, std::int64_t to) const { return overlapsSpan(start, end, from, to); }
};

/// An entry of a calendar with whatever replaces some of its occurrences: all VEVENTs with one UID, from whichever
/// file.
class ICalSeries {
 public:
  /// `entries` has one or more, in the order in which they were read; they must outlive the series. Of several that say
  /// the same thing (the entry itself, or one occurrence of it) the one with the highest SEQUENCE counts, and of those
  /// the last.
  explicit ICalSeries(std::span<ICalEntry* const> entries);

  /// Appends the occurrences that overlap the span, in no order. Answers false when the budget ended it early.
  bool expand(std::int64_t from, std::int64_t to, const TimeZone& local, WorkBudget& budget,
              std::vector<ICalOccurrence>& occurrences) const;

  /// Nothing occurs outside of it, whatever the local zone is. Seconds since 1970, UTC.
  struct Extent {
    std::int64_t from, to;
  };
  Extent extent() const;

  const ICalEntry& anyEntry() const { return entry_ != nullptr ? *entry_ : *replacements_->all.front().entry; }

 private:
  struct Replacement {
    ICalEntry* entry;
    ICalTime replaced;  ///< Like the start of the series: a date, or a time in its zone.
  };
  struct Replacements {
    std::vector<Replacement> all;      ///< In the order of what they replace. Never empty.
    std::vector<Replacement> futures;  ///< Those of them that replace all later occurrences as well.
  };
  struct Candidate;

  void addReplacements(std::span<ICalEntry* const> entries);
  ICalTime likeStart(const ICalTime& time) const;
  struct Reach {
    std::int64_t before = 0, after = 0;
    void extend(std::int64_t length, std::int64_t moved, std::int64_t slack);
  };
  /// How far before a span, and after it, the rules may give the start of an occurrence that overlaps the span.
  Reach longestReach() const;
  /// None for most.
  std::span<const Replacement> replacements() const;
  bool expandRepetition(std::int64_t from, std::int64_t to, const TimeZone& local, WorkBudget& budget,
                        std::vector<ICalOccurrence>& occurrences) const;
  bool collectCandidates(WallTime from, WallTime to, const TimeZone& local, WorkBudget& budget,
                         std::vector<Candidate>& candidates) const;
  const Replacement* futureReplacementFor(const ICalTime& start) const;
  bool startOccurs() const;

  // No more than this: a calendar may have 100,000 series, and few of them are more than one event.
  ICalEntry* entry_ = nullptr;  ///< Null when only occurrences of it are known.
  std::unique_ptr<Replacements> replacements_;
};

}  // namespace hushmode::devices
