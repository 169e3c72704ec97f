// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarUpdate.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace hushmode::devices {

namespace {

/// Clocks of file systems are this coarse: a change so soon after another may not show.
constexpr std::int64_t kSecondsUntilSettled = 2;

}  // namespace

CalendarUpdate::CalendarUpdate(const CalendarPlace& place, const CalendarCache& old,
                               const CalendarCache::Calendar* known)
    : place_(place), old_(old) {
  if (known == nullptr) return;
  for (std::uint32_t index = 0; index < known->files; ++index) {
    const auto& file = old.files[known->firstFile + index];
    oldFiles_.emplace(old.view(file.path), &file);
  }
}

void CalendarUpdate::readChanged() {
  Uids touched;
  std::set<std::string_view> gone;
  for (const auto& [path, file] : oldFiles_) gone.insert(path);
  for (const auto& file : place_.files) {
    gone.erase(file.path);
    if (!isSettled(file)) chosen_.insert(file.path);
  }
  for (const std::string_view path : gone) touchOld(path, touched);
  for (std::size_t before = chosen_.size() + 1; before != chosen_.size();) {
    before = chosen_.size();
    for (const std::string_view path : chosen_) touchOld(path, touched);
    readChosen();
    contents_.forEachEntry([&](const std::string&, const ICalEntry& entry) { touched.insert(entry.uidHash); });
    for (const auto& file : place_.files) {
      if (!chosen_.contains(file.path) && isTouched(file.path, touched)) {
        chosen_.insert(file.path);
      }
    }
  }
}

void CalendarUpdate::readAll() {
  for (const auto& file : place_.files) chosen_.insert(file.path);
  readChosen();
}

bool CalendarUpdate::expand(std::int64_t from, std::int64_t to, const TimeZone& local) {
  occurrences_.clear();
  contents_.arrange();
  if (contents_.expand(from, to, local, occurrences_)) return true;
  occurrences_.clear();
  return false;
}

void CalendarUpdate::expandInPart(std::int64_t from, std::int64_t to, const TimeZone& local) {
  contents_.expand(from, to, local, occurrences_);
  contents_.reportCuts([this](const std::string& line) { note(line); });
}

void CalendarUpdate::addTo(CalendarCache& cache, const std::string& identifier, bool complete, std::int64_t now) {
  CalendarCache::Calendar calendar;
  calendar.identifier = cache.keep(identifier);
  calendar.firstFile = static_cast<std::uint32_t>(cache.files.size());
  calendar.files = static_cast<std::uint32_t>(place_.files.size());
  calendar.firstOccurrence = static_cast<std::uint32_t>(cache.occurrences.size());
  calendar.complete = complete;
  std::map<std::string_view, std::vector<std::uint64_t>> uids;
  contents_.forEachEntry([&](const std::string& path, const ICalEntry& entry) { uids[path].push_back(entry.uidHash); });
  std::unordered_map<std::uint64_t, std::uint32_t> fileOfUid;
  NewFiles newFiles;
  for (const auto& file : place_.files) {
    const auto index = static_cast<std::uint32_t>(cache.files.size());
    if (chosen_.contains(file.path)) {
      const auto& own = uids[file.path];
      cache.files.push_back(read(file, own, now, cache));
      for (const std::uint64_t uid : own) fileOfUid.emplace(uid, index);
    } else {
      const auto* old = oldFiles_.at(file.path);
      newFiles.emplace(old, index);
      cache.files.push_back(copied(*old, cache));
    }
  }
  if (complete) {
    keepOld(cache, newFiles);
    addNew(cache, fileOfUid);
  }
  calendar.occurrences = static_cast<std::uint32_t>(cache.occurrences.size()) - calendar.firstOccurrence;
  cache.calendars.push_back(calendar);
}

bool CalendarUpdate::isSettled(const CalendarPlace::File& file) const {
  const auto place = oldFiles_.find(file.path);
  return place != oldFiles_.end() && place->second->settled && place->second->signature == file.signature;
}

void CalendarUpdate::touchOld(std::string_view path, Uids& touched) const {
  const auto place = oldFiles_.find(path);
  if (place == oldFiles_.end()) return;
  const auto first = old_.uids.begin() + place->second->firstUid;
  touched.insert(first, first + place->second->uids);
}

bool CalendarUpdate::isTouched(std::string_view path, const Uids& touched) const {
  const auto& file = *oldFiles_.at(path);
  const auto first = old_.uids.begin() + file.firstUid;
  return std::any_of(first, first + file.uids, [&](std::uint64_t uid) { return touched.contains(uid); });
}

void CalendarUpdate::readChosen() {
  std::vector<CalendarPlace::File> files;
  for (const auto& file : place_.files) {
    if (chosen_.contains(file.path)) files.push_back(file);
  }
  files_.update(files, contents_, zones_, [this](const std::string& line) { note(line); });
}

/// Each line begins with the path of its file.
void CalendarUpdate::note(const std::string& line) {
  for (auto colon = line.find(':'); colon != std::string::npos; colon = line.find(':', colon + 1)) {
    const auto path = chosen_.find(std::string_view(line).substr(0, colon));
    if (path == chosen_.end()) continue;
    problems_[std::string(*path)] += line + '\n';
    return;
  }
}

CalendarCache::File CalendarUpdate::copied(const CalendarCache::File& old, CalendarCache& cache) const {
  CalendarCache::File file = old;
  file.path = cache.keep(old_.view(old.path));
  file.calendarName = cache.keep(old_.view(old.calendarName));
  file.problems = cache.keep(old_.view(old.problems));
  file.firstUid = static_cast<std::uint32_t>(cache.uids.size());
  const auto first = old_.uids.begin() + old.firstUid;
  cache.uids.insert(cache.uids.end(), first, first + old.uids);
  return file;
}

CalendarCache::File CalendarUpdate::read(const CalendarPlace::File& file, const std::vector<std::uint64_t>& uids,
                                         std::int64_t now, CalendarCache& cache) const {
  const std::string& path = file.path;
  const auto problems = problems_.find(path);
  CalendarCache::File made;
  made.signature = file.signature;
  made.path = cache.keep(path);
  made.calendarName = cache.keep(contents_.nameIn(path));
  if (problems != problems_.end()) made.problems = cache.keep(problems->second);
  made.firstUid = static_cast<std::uint32_t>(cache.uids.size());
  made.uids = static_cast<std::uint32_t>(uids.size());
  cache.uids.insert(cache.uids.end(), uids.begin(), uids.end());
  // What could not be read is tried again: permissions do not show in the signature.
  made.settled = contents_.has(path) && file.signature.modifiedSeconds + kSecondsUntilSettled < now;
  return made;
}

void CalendarUpdate::keepOld(CalendarCache& cache, const NewFiles& newFiles) const {
  std::unordered_map<std::uint32_t, CalendarCache::Text> texts;  // The occurrences of an entry share theirs.
  const auto copiedText = [&](CalendarCache::Text text) {
    const auto [place, isNew] = texts.try_emplace(text.offset);
    if (isNew || place->second.length != text.length) place->second = cache.keep(old_.view(text));
    return place->second;
  };
  for (const auto& each : old_.occurrences) {
    const auto place = newFiles.find(&old_.files[each.file]);
    if (place == newFiles.end()) continue;
    auto occurrence = each;
    occurrence.file = place->second;
    occurrence.title = copiedText(each.title);
    occurrence.uid = copiedText(each.uid);
    cache.occurrences.push_back(occurrence);
  }
}

void CalendarUpdate::addNew(CalendarCache& cache,
                            const std::unordered_map<std::uint64_t, std::uint32_t>& fileOfUid) const {
  std::unordered_map<const ICalEntry*, std::pair<CalendarCache::Text, CalendarCache::Text>> texts;
  for (const ICalOccurrence& each : occurrences_) {
    const ICalEntry& entry = *each.entry;
    const auto [place, isNew] = texts.try_emplace(&entry);
    if (isNew) {
      place->second = {entry.title ? cache.keep(entry.title.view()) : CalendarCache::Text(),
                       cache.keep(entry.uid.view())};
    }
    CalendarCache::Occurrence occurrence;
    occurrence.start = each.start;
    occurrence.end = each.end;
    std::tie(occurrence.title, occurrence.uid) = place->second;
    occurrence.file = fileOfUid.at(entry.uidHash);
    occurrence.status = static_cast<std::uint8_t>(entry.status);
    occurrence.allDay = entry.allDay;
    occurrence.hasTitle = static_cast<bool>(entry.title);
    cache.occurrences.push_back(occurrence);
  }
}

}  // namespace hushmode::devices
