// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "calendar/EventBinding.h"
#include "store/HMProfilesManager.h"
#include "tests/support/PhoneFixture.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace hushmode {

struct EventOptions {
  platform::EKEventStatus status = platform::EKEventStatus::Confirmed;
  bool allDay = false;
  std::string calendar = "cal-A";
  std::string uuid = {};  ///< The title when empty.
};

/// A phone with profiles and calendar events on it.
class ProfilesFixture : public PhoneFixture {
 protected:
  using Profile = HMProfilesManager::Profile;
  using Event = HMProfilesManager::Event;
  using Events = HMProfilesManager::Events;
  using Date = platform::Date;

  static HMProfilesManager& manager() { return *HMProfilesManager::sharedManager(); }

  /// Sets the phone's clock, ahead or back.
  void clock(const std::string& clockTime) { phone.time().jumpTo(at(clockTime)); }

  /// An enabled profile at the end of the manager's list: 8:00 AM to 5:00 PM, calendar "cal-A", no networks, silent and
  /// dark. Identifiers count up from 1000. Nothing is saved.
  Profile addProfile(const std::string& title = "Work") {
    const Profile profile = HMProfile::init();
    profile->setIdentifier(nextIdentifier_++);
    profile->setTitle(title);
    profile->setEnabled(true);
    profile->setStartTime("8:00 AM");
    profile->setEndTime("5:00 PM");
    profile->setCalendarIdentifiers(std::vector<std::string>{"cal-A"});
    manager().profiles().push_back(profile);
    return profile;
  }

  /// Puts an event into the phone's calendars, which name its entry by `uuid`.
  void addEvent(const std::string& title, Date start, Date end, const EventOptions& options = {}) {
    const std::string uuid = options.uuid.empty() ? title : options.uuid;
    phone.calendars().add({uuid, options.calendar, title, start, end, options.status, options.allDay});
    added_.push_back(uuid);
  }
  /// Takes all events out again; their calendars stay.
  void removeEvents() {
    for (const std::string& uuid : std::exchange(added_, {})) phone.calendars().remove(uuid);
  }

  /// An event object that is in no calendar.
  static Event event(std::optional<std::string> title, Date start, Date end, const EventOptions& options = {}) {
    auto details = std::make_shared<platform::EKEventDetails>();
    details->title = std::move(title);
    details->UUID = options.uuid;
    details->status = options.status;
    details->allDay = options.allDay;
    return std::make_shared<platform::EKEvent>(std::move(details), start, end);
  }

  /// The event that the profile follows, without binding it; null when there is none.
  static Event followed(const Profile& profile) {
    const auto* list = manager().scheduledEventsDict().find(profile->identifier());
    return list && !list->empty() ? list->front() : nullptr;
  }

 private:
  std::int64_t nextIdentifier_ = 1000;
  std::vector<std::string> added_;
};

}  // namespace hushmode
