// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HMProfile.h"
#include "platform/EventKit.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hushmode {

/// The one place that reads the user's calendars. A denied permission shows only as empty results.
///
/// One instance a process; making it is safe from any thread, the rest runs on its caller's.
class HUSHMODE_API HMEventManager final : public platform::Object {
  struct Private {};

 public:
  using Calendars = std::vector<std::shared_ptr<platform::EKCalendar>>;
  using Events = std::vector<std::shared_ptr<platform::EKEvent>>;

  static std::shared_ptr<HMEventManager> sharedManager();
  /// A manager of one's own, initialised.
  static std::shared_ptr<HMEventManager> init();
  explicit HMEventManager(Private);
  ~HMEventManager() override;

  /// Makes the store, and has the profiles manager told of its changes from now on.
  void initialize();

  /// Today's events in the calendars of the profiles that are active and open now, unfiltered.
  Events eventsForToday() const;
  /// The calendars of those identifiers, in the store's order, each once; unknown identifiers are dropped.
  Calendars allCalendars(const std::vector<std::string>& identifiers) const;
  /// Today's events that matter to the profile, bound to it, in the store's order; cancelled ones are left out. None,
  /// as opposed to an empty list, when there is no profile or it names no calendar that exists.
  std::optional<Events> eventsForProfile(const std::shared_ptr<HMProfile>& profile) const;
  /// All event calendars, in the store's order.
  Calendars calendars() const;
  /// Those that can be written to, by account title, in the order in which the titles come up.
  std::vector<std::pair<std::string, Calendars>> groupedCalendars() const;

  /// Look-ups in the store; null when there is no such event.
  std::shared_ptr<platform::EKEvent> eventWithUUID(std::string_view uuid) const;
  std::shared_ptr<platform::EKEvent> eventByIdentifier(std::string_view identifier) const;
  std::shared_ptr<platform::EKEvent> eventWithUniqueId(std::string_view uniqueId) const;
  std::shared_ptr<platform::EKEvent> eventWithUniqueId(std::string_view uniqueId, platform::Date occurrenceDate) const;

  const std::shared_ptr<platform::EKEventStore>& eventStore() const { return eventStore_; }
  void setEventStore(std::shared_ptr<platform::EKEventStore> store) { eventStore_ = std::move(store); }

 private:
  Events eventsOfToday(const Calendars& calendars) const;

  std::shared_ptr<platform::EKEventStore> eventStore_;
};

}  // namespace hushmode
