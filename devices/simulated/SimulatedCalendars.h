#pragma once

#include "devices/simulated/MemoryCalendars.h"
#include "devices/simulated/SimulatedFoundation.h"
#include "platform/EventKit.h"

#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The calendars of a simulated phone: its own in memory, or those of another source.
class SimulatedCalendars final : public platform::EventKit {
 public:
  SimulatedCalendars(VirtualTime& time, Record& record, SimulatedFoundation& foundation);
  ~SimulatedCalendars() override;

  std::shared_ptr<platform::EKEventStore> makeEventStore() override;

  /// The calendars in memory; used while no other source is set.
  MemoryCalendars& memory() { return memory_; }
  /// Takes the calendars from `source`, null for those in memory. A source must live until it is replaced, or until
  /// the phone is not used any more. Counts as a change of the calendars.
  void setSource(CalendarSource* source);

  /// Every change of the calendars is recorded as a step, and told from the run loop to each store that exists.
  void processEnded() { stores_.clear(); }

 private:
  class Store;

  const CalendarSource& source() const { return *source_; }
  void changed(const platform::Dictionary& step);
  /// The occurrences that overlap the span, in the order of the stores. Kept for the span asked last, since all
  /// profiles ask for the same day.
  const std::vector<CalendarOccurrence>& sortedOccurrences(platform::Date from, platform::Date to) const;

  VirtualTime& time_;
  Record& record_;
  SimulatedFoundation& foundation_;
  MemoryCalendars memory_;
  CalendarSource* source_;
  std::vector<std::weak_ptr<Store>> stores_;

  struct Cached {
    platform::Date from, to;
    std::shared_ptr<const TimeZone> zone;
    std::vector<CalendarOccurrence> occurrences;
  };
  mutable std::optional<Cached> cached_;
};

}  // namespace hushmode::devices
