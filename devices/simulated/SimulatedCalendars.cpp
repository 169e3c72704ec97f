// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedCalendars.h"

namespace hushmode::devices {

using platform::EKEventStore;

SimulatedCalendars::SimulatedCalendars(VirtualTime& time, Record& record, SimulatedFoundation& foundation)
    : time_(time), record_(record), foundation_(foundation), source_(&memory_), stores_(memory_, [this] {
        return foundation_.timeZone();
      }) {
  memory_.setChangeHandler([this](const platform::Dictionary& step) { changed(step); });
}

SimulatedCalendars::~SimulatedCalendars() = default;

void SimulatedCalendars::setSource(CalendarSource* source) {
  source_->setChangeHandler({});
  source_ = source ? source : &memory_;
  source_->setChangeHandler([this](const platform::Dictionary& step) { changed(step); });
  stores_.setSource(*source_);
  changed({{"step", "calendars replaced"}});
}

void SimulatedCalendars::changed(const platform::Dictionary& step) {
  const auto& stores = stores_.sourceChanged();
  record_.append(kind::phone, step);
  for (const auto& store : stores) {
    time_.after(0, [this, store] {
      if (const auto sender = store.lock()) {
        foundation_.defaultNotificationCenter().deliver({std::string(EKEventStore::changedNotification), sender, {}});
      }
    });
  }
}

}  // namespace hushmode::devices
