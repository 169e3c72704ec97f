// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarSource.h"
#include "platform/EventKit.h"

#include <functional>
#include <memory>
#include <vector>

namespace hushmode::devices {

/// The event stores that a phone has handed out, all over one source of calendars.
///
/// For one thread. A store may outlive this object: it then answers as if there were no calendars.
class EventStores {
 public:
  /// The phone's zone at present; never null.
  using LocalZone = std::function<std::shared_ptr<const TimeZone>()>;

  /// `source` must live as long as this object, or until another is set.
  EventStores(const CalendarSource& source, LocalZone zone);
  ~EventStores();
  EventStores(const EventStores&) = delete;
  EventStores& operator=(const EventStores&) = delete;

  std::shared_ptr<platform::EKEventStore> make();

  /// To be followed by `sourceChanged`.
  void setSource(const CalendarSource& source);
  /// To be called after each change of what the source answers. Gives the stores that were made before it, for whoever
  /// posts `EKEventStore::changedNotification`.
  const std::vector<std::weak_ptr<platform::EKEventStore>>& sourceChanged();
  /// From now on, the stores that were made are not given out by `sourceChanged` any more.
  void forgetStores() { stores_.clear(); }

 private:
  class Queries;
  class Store;

  std::shared_ptr<Queries> queries_;
  std::vector<std::weak_ptr<platform::EKEventStore>> stores_;
};

}  // namespace hushmode::devices
