// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarSpans.h"
#include "devices/shared/ICalSeries.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// What the texts of one calendar hold: its files, or the objects of a calendar service.
class CalendarContents {
 public:
  using Report = std::function<void(const std::string&)>;

  /// Takes what the text of that name holds now. The names are also the order in which texts with the same entry count,
  /// and tell people which one is meant. After this, and after `remove`, nothing may be asked before `arrange`.
  void put(const std::string& name, ICalFile content);
  /// Answers whether there was such a text.
  bool remove(std::string_view name);
  /// Removes the texts whose name fulfils the condition; answers whether there was one.
  bool removeIf(const std::function<bool(const std::string& name)>& condition);
  /// Puts together the entries of all texts; does nothing when they are the same as at the last time.
  void arrange();

  bool has(std::string_view name) const { return texts_.contains(name); }

  /// X-WR-CALNAME of the first text that has one; empty when none has.
  const std::string& name() const;
  /// That of one text; empty when it has none, or there is no such text.
  const std::string& nameIn(std::string_view text) const;

  /// Calls `visit` with the name of the text and each of its entries, texts in the order of their names.
  template <class Visit>
  void forEachEntry(Visit visit) const {
    for (const auto& [name, text] : texts_) {
      for (const ICalEntry& entry : text.content.entries) visit(name, entry);
    }
  }

  /// Appends the occurrences that overlap the span, in no order. When a text has too much to expand, what it has too
  /// much of is left out, and the answer is false.
  bool expand(std::int64_t from, std::int64_t to, const TimeZone& local, std::vector<ICalOccurrence>& occurrences);
  /// Says in one line for each text of which something was left out, once per content of the text.
  void reportCuts(const Report& report);

  /// The series with this UID, null when there is none.
  const ICalSeries* find(std::string_view uid) const;
  /// Lets go of what the occurrences of entries share, so that it is made anew.
  void forgetDetails();

  /// What may be expanded of one text in one query: some 50 to 100 ms of work.
  static constexpr std::int64_t kWorkPerText = 4'000'000;
  /// The same for those texts of a calendar together that need more than a little.
  static constexpr std::int64_t kWorkPerCalendar = 5 * kWorkPerText;

 private:
  struct Text {
    std::string_view name;
    ICalFile content;
    WorkBudget budget{kWorkPerText};
    bool cut = false, cutReported = false;
  };
  struct Member {
    ICalSeries series;
    Text* text;
  };

  void disarrange();

  std::map<std::string, Text, std::less<>> texts_;
  bool arranged_ = true;
  std::vector<Member> members_;  ///< Ordered by hash of the UID, then by UID.
  CalendarSpans spans_;          ///< Of the members.
};

}  // namespace hushmode::devices
