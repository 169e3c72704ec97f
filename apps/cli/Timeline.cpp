// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/cli/Timeline.h"

#include "apps/simulation/TimeText.h"
#include "apps/words/Words.h"
#include "devices/words/Text.h"

#include <algorithm>

namespace hushmode::cli {

using host::Switch;

Timeline::Timeline(std::ostream& out, Terminal terminal, std::shared_ptr<const devices::TimeZone> zone, Change change)
    : out_(out), terminal_(terminal), zone_(std::move(zone)), change_(std::move(change)) {}

void Timeline::add(const Switch& each) {
  ++switches_;
  insert({each.at, true, each, {}});
}

void Timeline::add(const devices::RecordEntry& entry) { insert({entry.time, false, {}, entry.text()}); }

void Timeline::insert(Line line) {
  // A switch is told once its effects are over, so it comes after later entries; it belongs before the first entry that
  // is later than it.
  const std::string day = simulation::dayHeading(line.at, *zone_);
  if (day != day_ && (lines_.empty() || lines_.back().at <= line.at)) {
    printDay();
    day_ = day;
  }
  const auto place = std::upper_bound(lines_.begin(), lines_.end(), line.at,
                                      [](platform::Date at, const Line& other) { return at < other.at; });
  lines_.insert(place, std::move(line));
}

void Timeline::print(const Line& line, std::size_t profileColumns, std::size_t reasonColumns) {
  const std::string time = simulation::clockTime(line.at, *zone_);
  if (!line.isSwitch) {
    out_ << "  " << terminal_.styled(time + "  " + harmless(line.text), Style::Dim) << '\n';
    return;
  }
  const Switch& each = line.each;
  const std::size_t stateColumns = std::max(columnsOf(tr("on")), columnsOf(tr("off")));
  out_ << "  " << time << "  " << terminal_.styled(padded(harmless(each.profile), profileColumns), Style::Bold) << "  "
       << terminal_.styled(padded(each.on ? tr("on") : tr("off"), stateColumns), each.on ? Style::Green : Style::Red)
       << "  " << padded(harmless(inWords(each.reason)), reasonColumns) << "  "
       << (each.withNext ? tr("(changed together with the next line)") : change_(each)) << '\n';
}

void Timeline::printDay() {
  if (lines_.empty()) return;
  std::size_t profileColumns = 0, reasonColumns = 0;
  for (const Line& line : lines_) {
    if (!line.isSwitch) continue;
    profileColumns = std::max(profileColumns, columnsOf(harmless(line.each.profile)));
    reasonColumns = std::max(reasonColumns, columnsOf(harmless(inWords(line.each.reason))));
  }
  out_ << terminal_.styled(day_, Style::Bold) << '\n';
  for (const Line& line : lines_) print(line, profileColumns, reasonColumns);
  out_ << '\n';
  lines_.clear();
}

void Timeline::finish() {
  printDay();
  if (switches_ == 0) {
    out_ << tr("No switches.") << '\n';
  } else {
    out_ << trCount("{} switch.", "{} switches.", switches_) << '\n';
  }
}

}  // namespace hushmode::cli
