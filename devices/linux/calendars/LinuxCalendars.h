// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/EventStores.h"
#include "devices/shared/JoinedCalendars.h"
#include "platform/EventKit.h"
#include "platform/Foundation.h"

#include <memory>
#include <sigc++/connection.h>
#include <vector>

namespace hushmode::devices {

/// The calendars of a Linux phone: those of all its sources, such as a folder of files and a calendar service.
///
/// Every change of a source posts `EKEventStore::changedNotification` once for each store that was made before it, from
/// the main loop, soon. For the thread of the main loop.
class LinuxCalendars final : public platform::EventKit {
 public:
  /// `notifications` must outlive this object; stores need not be gone before it.
  LinuxCalendars(platform::NotificationCenter& notifications, EventStores::LocalZone zone);
  ~LinuxCalendars() override;
  LinuxCalendars(const LinuxCalendars&) = delete;
  LinuxCalendars& operator=(const LinuxCalendars&) = delete;

  /// Counts as a change. Calendar identifiers must differ between the sources.
  void add(std::unique_ptr<CalendarSource> source);

  std::shared_ptr<platform::EKEventStore> makeEventStore() override { return stores_.make(); }

 private:
  void changed();
  void postPending();
  void tidySoon();

  platform::NotificationCenter& notifications_;
  JoinedCalendars calendars_;
  EventStores stores_;
  std::vector<std::weak_ptr<platform::EKEventStore>> pending_;  ///< One for each notice that is due.
  sigc::connection posting_, tidying_;
};

}  // namespace hushmode::devices
