// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/EventStores.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace hushmode::devices {

using platform::Date;
using platform::EKCalendar;
using platform::EKEvent;
using platform::EKEventPredicate;
using platform::EKEventStore;

/// What the stores share: the source, as long as there is one, and the last answer.
class EventStores::Queries {
 public:
  Queries(const CalendarSource& source, LocalZone zone) : source_(&source), zone_(std::move(zone)) {}

  void setSource(const CalendarSource* source) { source_ = source; }
  void forget() { cached_.reset(); }

  /// Null once the phone has gone.
  const CalendarSource* source() const { return source_; }
  std::shared_ptr<const TimeZone> zone() const { return zone_(); }

  /// The occurrences that overlap the span, in the order of the stores. Kept for the span asked last, since all
  /// profiles ask for the same day.
  const std::vector<CalendarOccurrence>& sortedOccurrences(Date from, Date to) {
    const std::shared_ptr<const TimeZone> zone = zone_();
    if (!cached_ || cached_->from != from || cached_->to != to || cached_->zone != zone) {
      cached_ = Cached{from, to, zone, source_->occurrences(from, to, *zone)};
      const auto key = [](const CalendarOccurrence& each) {
        return std::tuple(each.start, each.end, each.calendar, std::string_view(each.details->uniqueId));
      };
      std::stable_sort(cached_->occurrences.begin(), cached_->occurrences.end(),
                       [&](const CalendarOccurrence& a, const CalendarOccurrence& b) { return key(a) < key(b); });
    }
    return cached_->occurrences;
  }

 private:
  struct Cached {
    Date from, to;
    std::shared_ptr<const TimeZone> zone;
    std::vector<CalendarOccurrence> occurrences;
  };

  const CalendarSource* source_;
  LocalZone zone_;
  std::optional<Cached> cached_;
};

class EventStores::Store final : public EKEventStore {
 public:
  explicit Store(std::shared_ptr<Queries> queries) : queries_(std::move(queries)) {}

  std::string description() const override { return "<EKEventStore>"; }

  std::vector<std::shared_ptr<EKCalendar>> calendarsForEntityType(platform::EKEntityType type) const override {
    std::vector<std::shared_ptr<EKCalendar>> list;
    const CalendarSource* source = queries_->source();
    if (type != platform::EKEntityType::Event || source == nullptr) return list;
    for (const CalendarInfo& info : source->calendars()) list.push_back(info.calendar);
    return list;
  }

  std::vector<std::shared_ptr<EKEvent>> eventsMatchingPredicate(const EKEventPredicate& predicate) const override {
    const std::vector<bool> asked = askedCalendars(predicate);
    std::vector<std::shared_ptr<EKEvent>> events;
    if (std::find(asked.begin(), asked.end(), true) == asked.end()) return events;
    const auto& occurrences = queries_->sortedOccurrences(predicate.start, predicate.end);
    events.reserve(occurrences.size());
    for (const CalendarOccurrence& occurrence : occurrences) {
      if (asked[occurrence.calendar]) events.push_back(eventOf(occurrence));
    }
    return events;
  }

  std::shared_ptr<EKEvent> eventWithIdentifier(std::string_view identifier) const override {
    return find([&](const CalendarSource& source, const TimeZone& z) { return source.withIdentifier(identifier, z); });
  }
  std::shared_ptr<EKEvent> eventWithUUID(std::string_view uuid) const override {
    return find([&](const CalendarSource& source, const TimeZone& zone) { return source.withUUID(uuid, zone); });
  }
  std::shared_ptr<EKEvent> eventWithUniqueId(std::string_view uniqueId) const override {
    return find(
        [&](const CalendarSource& source, const TimeZone& zone) { return source.withUniqueId(uniqueId, zone); });
  }
  std::shared_ptr<EKEvent> eventWithUniqueId(std::string_view uniqueId, Date occurrence) const override {
    return find([&](const CalendarSource& source, const TimeZone& zone) {
      return source.withUniqueId(uniqueId, occurrence, zone);
    });
  }

 private:
  static std::shared_ptr<EKEvent> eventOf(const CalendarOccurrence& occurrence) {
    return std::make_shared<EKEvent>(occurrence.details, occurrence.start, occurrence.end);
  }

  template <class Look>
  std::shared_ptr<EKEvent> find(Look look) const {
    if (queries_->source() == nullptr) return nullptr;
    const std::shared_ptr<const TimeZone> zone = queries_->zone();
    const std::optional<CalendarOccurrence> occurrence = look(*queries_->source(), *zone);
    return occurrence ? eventOf(*occurrence) : nullptr;
  }

  /// Which of the source's calendars the query names. By identifier: the query may hold calendars from before a change.
  std::vector<bool> askedCalendars(const EKEventPredicate& predicate) const {
    if (queries_->source() == nullptr) return {};
    const std::vector<CalendarInfo>& known = queries_->source()->calendars();
    std::vector<bool> asked(known.size(), false);
    for (const auto& calendar : predicate.calendars) {
      for (std::size_t index = 0; index < known.size(); ++index) {
        if (calendar && known[index].identifier == calendar->calendarIdentifier()) asked[index] = true;
      }
    }
    return asked;
  }

  std::shared_ptr<Queries> queries_;
};

EventStores::EventStores(const CalendarSource& source, LocalZone zone)
    : queries_(std::make_shared<Queries>(source, std::move(zone))) {}

EventStores::~EventStores() {
  queries_->setSource(nullptr);
  queries_->forget();
}

std::shared_ptr<EKEventStore> EventStores::make() {
  std::erase_if(stores_, [](const auto& store) { return store.expired(); });
  auto store = std::make_shared<Store>(queries_);
  stores_.push_back(store);
  return store;
}

void EventStores::setSource(const CalendarSource& source) { queries_->setSource(&source); }

const std::vector<std::weak_ptr<EKEventStore>>& EventStores::sourceChanged() {
  queries_->forget();
  return stores_;
}

}  // namespace hushmode::devices
