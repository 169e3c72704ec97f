// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarFolder.h"

#include <utility>

namespace hushmode::devices {

CalendarFolder::CalendarFolder(std::filesystem::path root, Diagnostics diagnostics, std::string identifierPrefix)
    : root_(std::move(root)), identifierPrefix_(std::move(identifierPrefix)), set_(std::move(diagnostics)) {}

bool CalendarFolder::rescan() {
  const auto report = [this](const std::string& line) { set_.report(line); };
  std::set<std::string> problems;
  const std::vector<CalendarPlace> places = calendarPlaces(root_, [&](const std::string& line) {
    if (problems.insert(line).second && !placeProblems_.contains(line)) report(line);
  });
  placeProblems_ = std::move(problems);

  bool changed = false;
  std::map<std::string, CalendarFiles> seen;
  for (const CalendarPlace& place : places) {
    const std::string identifier = identifierPrefix_ + place.identifier;
    CalendarFiles& files = seen[identifier] = std::move(files_[identifier]);
    CalendarContents& contents = set_.contentsOf(identifier);
    changed = files.update(place.files, contents, set_.zones(), report) || changed;
    const std::string& title = !place.displayName.empty() ? place.displayName
                               : !contents.name().empty() ? contents.name()
                                                          : place.ownName;
    changed = set_.describe(identifier, title, place.accountTitle, place.writable) || changed;
  }
  files_ = std::move(seen);
  changed = set_.removeIf([this](const std::string& identifier) { return !files_.contains(identifier); }) || changed;
  if (changed) set_.arrange();
  return changed;
}

std::vector<CalendarOccurrence> CalendarFolder::occurrences(platform::Date from, platform::Date to,
                                                            const TimeZone& local,
                                                            const std::vector<std::string>& identifiers) const {
  const std::vector<bool> wanted = set_.wanted(identifiers);
  return set_.occurrences(from, to, local, &wanted);
}

}  // namespace hushmode::devices
