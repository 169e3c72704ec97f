#include "devices/simulated/SimulatedCalendars.h"

#include <algorithm>
#include <tuple>

namespace hushmode::devices {

using platform::Date;
using platform::EKCalendar;
using platform::EKEvent;
using platform::EKEventPredicate;
using platform::EKEventStore;

class SimulatedCalendars::Store final : public EKEventStore {
 public:
  explicit Store(const SimulatedCalendars& calendars) : calendars_(calendars) {}

  std::string description() const override { return "<EKEventStore>"; }

  std::vector<std::shared_ptr<EKCalendar>> calendarsForEntityType(platform::EKEntityType type) const override {
    std::vector<std::shared_ptr<EKCalendar>> list;
    if (type != platform::EKEntityType::Event) return list;
    for (const CalendarInfo& info : calendars_.source().calendars()) list.push_back(info.calendar);
    return list;
  }

  std::vector<std::shared_ptr<EKEvent>> eventsMatchingPredicate(const EKEventPredicate& predicate) const override {
    const std::vector<bool> asked = askedCalendars(predicate);
    std::vector<std::shared_ptr<EKEvent>> events;
    if (std::find(asked.begin(), asked.end(), true) == asked.end()) return events;
    const auto& occurrences = calendars_.sortedOccurrences(predicate.start, predicate.end);
    events.reserve(occurrences.size());
    for (const CalendarOccurrence& occurrence : occurrences) {
      if (asked[occurrence.calendar]) events.push_back(eventOf(occurrence));
    }
    return events;
  }

  std::shared_ptr<EKEvent> eventWithIdentifier(std::string_view identifier) const override {
    return eventOf(calendars_.source().withIdentifier(identifier, zone()));
  }
  std::shared_ptr<EKEvent> eventWithUUID(std::string_view uuid) const override {
    return eventOf(calendars_.source().withUUID(uuid, zone()));
  }
  std::shared_ptr<EKEvent> eventWithUniqueId(std::string_view uniqueId) const override {
    return eventOf(calendars_.source().withUniqueId(uniqueId, zone()));
  }
  std::shared_ptr<EKEvent> eventWithUniqueId(std::string_view uniqueId, Date occurrence) const override {
    return eventOf(calendars_.source().withUniqueId(uniqueId, occurrence, zone()));
  }

 private:
  const TimeZone& zone() const { return *calendars_.foundation_.timeZone(); }

  static std::shared_ptr<EKEvent> eventOf(const CalendarOccurrence& occurrence) {
    return std::make_shared<EKEvent>(occurrence.details, occurrence.start, occurrence.end);
  }
  static std::shared_ptr<EKEvent> eventOf(const std::optional<CalendarOccurrence>& occurrence) {
    return occurrence ? eventOf(*occurrence) : nullptr;
  }

  /// Which of the source's calendars the query names. By identifier: the query may hold calendars from before a change.
  std::vector<bool> askedCalendars(const EKEventPredicate& predicate) const {
    const std::vector<CalendarInfo>& known = calendars_.source().calendars();
    std::vector<bool> asked(known.size(), false);
    for (const auto& calendar : predicate.calendars) {
      for (std::size_t index = 0; index < known.size(); ++index) {
        if (calendar && known[index].identifier == calendar->calendarIdentifier()) asked[index] = true;
      }
    }
    return asked;
  }

  const SimulatedCalendars& calendars_;
};

SimulatedCalendars::SimulatedCalendars(VirtualTime& time, Record& record, SimulatedFoundation& foundation)
    : time_(time), record_(record), foundation_(foundation), source_(&memory_) {
  memory_.setChangeHandler([this](const platform::Dictionary& step) { changed(step); });
}

SimulatedCalendars::~SimulatedCalendars() = default;

std::shared_ptr<EKEventStore> SimulatedCalendars::makeEventStore() {
  std::erase_if(stores_, [](const auto& store) { return store.expired(); });
  auto store = std::make_shared<Store>(*this);
  stores_.push_back(store);
  return store;
}

void SimulatedCalendars::setSource(CalendarSource* source) {
  source_->setChangeHandler({});
  source_ = source ? source : &memory_;
  source_->setChangeHandler([this](const platform::Dictionary& step) { changed(step); });
  changed({{"step", "calendars replaced"}});
}

void SimulatedCalendars::changed(const platform::Dictionary& step) {
  cached_.reset();
  record_.append(kind::phone, step);
  for (const auto& store : stores_) {
    time_.after(0, [this, store] {
      if (const auto sender = store.lock()) {
        foundation_.defaultNotificationCenter().deliver({std::string(EKEventStore::changedNotification), sender, {}});
      }
    });
  }
}

const std::vector<CalendarOccurrence>& SimulatedCalendars::sortedOccurrences(Date from, Date to) const {
  const auto& zone = foundation_.timeZone();
  if (!cached_ || cached_->from != from || cached_->to != to || cached_->zone != zone) {
    cached_ = Cached{from, to, zone, source().occurrences(from, to, *zone)};
    const auto key = [](const CalendarOccurrence& each) {
      return std::tuple(each.start, each.end, each.calendar, std::string_view(each.details->uniqueId));
    };
    std::stable_sort(cached_->occurrences.begin(), cached_->occurrences.end(),
                     [&](const CalendarOccurrence& a, const CalendarOccurrence& b) { return key(a) < key(b); });
  }
  return cached_->occurrences;
}

}  // namespace hushmode::devices
