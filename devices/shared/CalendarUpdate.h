// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarCache.h"
#include "devices/shared/CalendarContents.h"
#include "devices/shared/CalendarFiles.h"
#include "devices/shared/CalendarLayout.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace hushmode::devices {

/// The reading of one calendar whose files, or some of them, are not as they were remembered.
class CalendarUpdate {
 public:
  /// `place` and `old` must outlive the object. `known` is the calendar in `old`; null to read all of it.
  CalendarUpdate(const CalendarPlace& place, const CalendarCache& old, const CalendarCache::Calendar* known);

  /// Reads what is new or changed, and all that shares an entry with it or with what is gone.
  void readChanged();
  void readAll();

  /// Finds what occurs of that which was read. Answers false when it is too much; then there is nothing.
  bool expand(std::int64_t from, std::int64_t to, const TimeZone& local);
  /// The same for what is not too much; the rest is told among the problems of its file.
  void expandInPart(std::int64_t from, std::int64_t to, const TimeZone& local);

  bool hasReadAll() const { return chosen_.size() == place_.files.size(); }
  std::size_t filesRead() const { return chosen_.size(); }
  const std::vector<ICalOccurrence>& occurrences() const { return occurrences_; }

  /// Adds the calendar with its files; when it is complete, with what occurs in all of them. `now` in seconds since
  /// 1970, UTC.
  void addTo(CalendarCache& cache, const std::string& identifier, bool complete, std::int64_t now);

 private:
  using Uids = std::unordered_set<std::uint64_t>;
  using NewFiles = std::unordered_map<const CalendarCache::File*, std::uint32_t>;

  bool isSettled(const CalendarPlace::File& file) const;
  void touchOld(std::string_view path, Uids& touched) const;
  bool isTouched(std::string_view path, const Uids& touched) const;
  void readChosen();
  void note(const std::string& line);
  CalendarCache::File copied(const CalendarCache::File& old, CalendarCache& cache) const;
  CalendarCache::File read(const CalendarPlace::File& file, const std::vector<std::uint64_t>& uids, std::int64_t now,
                           CalendarCache& cache) const;
  void keepOld(CalendarCache& cache, const NewFiles& newFiles) const;
  void addNew(CalendarCache& cache, const std::unordered_map<std::uint64_t, std::uint32_t>& fileOfUid) const;

  const CalendarPlace& place_;
  const CalendarCache& old_;
  std::map<std::string_view, const CalendarCache::File*> oldFiles_;  ///< By path.
  std::set<std::string_view> chosen_;                                ///< The paths of the files that are read.
  ICalZones zones_;
  CalendarFiles files_;
  CalendarContents contents_;
  std::map<std::string, std::string, std::less<>> problems_;  ///< By path, in lines.
  std::vector<ICalOccurrence> occurrences_;
};

}  // namespace hushmode::devices
