// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace hushmode::devices {

/// Whether what lasts from `start` to `end` overlaps a span: see `CalendarFolder::occurrences`. Of any kind of time.
template <class Time>
constexpr bool overlapsSpan(const Time& start, const Time& end, const Time& from, const Time& to) {
  return start < to && (end > from || (start == end && start >= from));
}

/// Spans of time, looked up by overlap in time that grows with the number of answers, not of spans.
///
/// The spans are kept by length, each class up to twice as long as the one before and ordered by start: in a class,
/// what overlaps can have started no earlier than the longest of the class before.
class CalendarSpans {
 public:
  struct Span {
    std::int64_t from, to;
    std::uint32_t item;
  };

  void clear() {
    for (Class& spans : classes_) spans.clear();
  }
  void add(const Span& span) { classes_[classOf(span.to - span.from)].push_back(span); }
  /// To be called after the last `add`.
  void order() {
    for (Class& spans : classes_) {
      std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.from < b.from; });
      spans.shrink_to_fit();
    }
  }

  /// Calls `visit` with the item of each span that touches [from, to].
  template <class Visit>
  void forEachTouching(std::int64_t from, std::int64_t to, Visit visit) const {
    for (std::size_t index = 0; index < classes_.size(); ++index) {
      const Class& spans = classes_[index];
      const std::int64_t earliest = from - longestOf(index);
      auto span = std::lower_bound(spans.begin(), spans.end(), earliest,
                                   [](const Span& candidate, std::int64_t start) { return candidate.from < start; });
      for (; span != spans.end() && span->from <= to; ++span) {
        if (span->to >= from) visit(span->item);
      }
    }
  }

 private:
  using Class = std::vector<Span>;
  static constexpr std::int64_t kShortest = 8 * 86'400;

  static constexpr std::int64_t longestOf(std::size_t index) { return kShortest << index; }
  std::size_t classOf(std::int64_t length) const {
    std::size_t index = 0;
    while (index + 1 < classes_.size() && length > longestOf(index)) ++index;
    return index;
  }

  /// The last class takes what lasts for ever.
  std::array<Class, 44> classes_;
};

}  // namespace hushmode::devices
