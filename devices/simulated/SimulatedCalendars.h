// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/EventStores.h"
#include "devices/simulated/MemoryCalendars.h"
#include "devices/simulated/SimulatedFoundation.h"
#include "platform/EventKit.h"

#include <memory>

namespace hushmode::devices {

/// The calendars of a simulated phone: its own in memory, or those of another source.
class SimulatedCalendars final : public platform::EventKit {
 public:
  SimulatedCalendars(VirtualTime& time, Record& record, SimulatedFoundation& foundation);
  ~SimulatedCalendars() override;

  std::shared_ptr<platform::EKEventStore> makeEventStore() override { return stores_.make(); }

  /// The calendars in memory; used while no other source is set.
  MemoryCalendars& memory() { return memory_; }
  /// Takes the calendars from `source`, null for those in memory. A source must live until it is replaced, or until
  /// the phone is not used any more. Counts as a change of the calendars.
  void setSource(CalendarSource* source);

  /// Every change of the calendars is recorded as a step, and told from the run loop to each store that exists.
  void processEnded() { stores_.forgetStores(); }

 private:
  void changed(const platform::Dictionary& step);

  VirtualTime& time_;
  Record& record_;
  SimulatedFoundation& foundation_;
  MemoryCalendars memory_;
  CalendarSource* source_;
  EventStores stores_;
};

}  // namespace hushmode::devices
