// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarContents.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <utility>

namespace hushmode::devices {

namespace {

/// What every series may cost before those that cost more have their turn: a month of a daily rule several times over.
constexpr std::int64_t kWorkAtFirst = 4'096;

const std::string none;

}  // namespace

void CalendarContents::put(const std::string& name, ICalFile content) {
  disarrange();
  const auto place = texts_.try_emplace(name).first;
  place->second = Text{place->first, std::move(content)};
}

bool CalendarContents::remove(std::string_view name) {
  const auto place = texts_.find(name);
  if (place == texts_.end()) return false;
  disarrange();
  texts_.erase(place);
  return true;
}

bool CalendarContents::removeIf(const std::function<bool(const std::string& name)>& condition) {
  const auto isMeant = [&](const auto& text) { return condition(text.first); };
  if (std::none_of(texts_.begin(), texts_.end(), isMeant)) return false;
  disarrange();
  std::erase_if(texts_, isMeant);
  return true;
}

/// The members lead to entries of texts that change or go.
void CalendarContents::disarrange() {
  arranged_ = false;
  members_.clear();
  members_.shrink_to_fit();
  spans_.clear();
}

/// Groups the entries of all texts by UID.
void CalendarContents::arrange() {
  if (std::exchange(arranged_, true)) return;
  struct Entry {
    ICalEntry* entry;
    Text* text;
  };
  std::vector<Entry> entries;
  for (auto& [name, text] : texts_) {
    for (ICalEntry& entry : text.content.entries) entries.push_back({&entry, &text});
  }
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.entry->uidHash != b.entry->uidHash ? a.entry->uidHash < b.entry->uidHash
                                                : a.entry->uid.view() < b.entry->uid.view();
  });

  const auto sameUid = [](const Entry& a, const Entry& b) { return a.entry->uid.view() == b.entry->uid.view(); };
  std::size_t groups = entries.empty() ? 0 : 1;
  for (std::size_t index = 1; index < entries.size(); ++index) groups += !sameUid(entries[index - 1], entries[index]);
  members_.reserve(groups);
  std::vector<ICalEntry*> group;
  for (auto first = entries.begin(); first != entries.end();) {
    auto next = first;
    group.clear();
    for (; next != entries.end() && sameUid(*first, *next); ++next) group.push_back(next->entry);
    members_.push_back({ICalSeries(group), first->text});
    const ICalSeries::Extent extent = members_.back().series.extent();
    spans_.add({extent.from, extent.to, static_cast<std::uint32_t>(members_.size() - 1)});
    first = next;
  }
  spans_.order();
}

const std::string& CalendarContents::nameIn(std::string_view text) const {
  const auto place = texts_.find(text);
  return place == texts_.end() ? none : place->second.content.calendarName;
}

const std::string& CalendarContents::name() const {
  const auto named = std::find_if(texts_.begin(), texts_.end(),
                                  [](const auto& text) { return !text.second.content.calendarName.empty(); });
  return named == texts_.end() ? none : named->second.content.calendarName;
}

bool CalendarContents::expand(std::int64_t from, std::int64_t to, const TimeZone& local,
                              std::vector<ICalOccurrence>& occurrences) {
  for (auto& [name, text] : texts_) {
    text.budget = WorkBudget(kWorkPerText);
    text.cut = false;
  }
  // One rule without measure must not take away the other events of its text: it comes last.
  std::vector<const Member*> costly;
  spans_.forEachTouching(from, to, [&](std::uint32_t item) {
    const Member& member = members_[item];
    const std::size_t before = occurrences.size();
    WorkBudget budget(std::min(kWorkAtFirst, member.text->budget.left()));
    const std::int64_t allowed = budget.left();
    const bool complete = member.series.expand(from, to, local, budget, occurrences);
    member.text->budget.take(allowed - std::max<std::int64_t>(budget.left(), 0));
    if (complete) return;
    occurrences.resize(before);
    costly.push_back(&member);
  });
  bool complete = true;
  std::int64_t left = kWorkPerCalendar;
  for (const Member* member : costly) {
    const std::int64_t allowed = std::max<std::int64_t>(std::min(left, member->text->budget.left()), 0);
    WorkBudget budget(allowed);
    const bool done = member->series.expand(from, to, local, budget, occurrences);
    const std::int64_t used = allowed - std::max<std::int64_t>(budget.left(), 0);
    member->text->budget.take(used);
    left -= used;
    if (done) continue;
    member->text->cut = true;
    complete = false;
  }
  return complete;
}

void CalendarContents::reportCuts(const Report& report) {
  for (auto& [name, text] : texts_) {
    if (!text.cut || text.cutReported) continue;
    text.cutReported = true;
    report(
        tr("{}: has more occurrences, or rules that are more work to follow, than one query allows; some are left out",
           name));
  }
}

const ICalSeries* CalendarContents::find(std::string_view uid) const {
  const std::size_t hash = std::hash<std::string_view>()(uid);
  const auto member =
      std::lower_bound(members_.begin(), members_.end(), hash, [&](const Member& candidate, std::size_t) {
        const ICalEntry& entry = candidate.series.anyEntry();
        return entry.uidHash != hash ? entry.uidHash < hash : entry.uid.view() < uid;
      });
  return member != members_.end() && member->series.anyEntry().uid.view() == uid ? &member->series : nullptr;
}

void CalendarContents::forgetDetails() {
  for (auto& [name, text] : texts_) {
    for (ICalEntry& entry : text.content.entries) entry.details.reset();
  }
}

}  // namespace hushmode::devices
