// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Each log line names the selector that writes it, and its level.

#include "tests/scheduler/SchedulerFixture.h"

#include <set>

namespace hushmode {
namespace {

struct Origin {
  std::string_view beginning, level, method;
  std::string_view ending = {};
};

constexpr Origin origins[] = {
    {"Profile '", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"**** Trying to schedule events for profile", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"No events found to be scheduled", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"Got current event as:", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"There is no change in the current", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"No changes detected between", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"Current profile is applied, and", "information", "scheduleEvents:shouldProceedAnyCase:"},
    {"***** Checking whether the event", "bare", "eventToBeScheduled:"},
    {"**** 3. Event", "information", "eventToBeScheduled:"},
    {"**** 4. Event", "information", "eventToBeScheduled:"},
    {"**** 5. Event", "information", "schedulePowerEvent:withEvent:"},
    {"No event found for Profile with id", "warning", "getCurrentScheduledEventFromProfile:"},
    {"******** Removing ", "information", "removeEventFromScheduledList:event:"},
    {"************** schedulePowerEvent:", "information", "schedulePowerEvent:"},
    {"****************** Event is nil", "error", "schedulePowerEvent:withEvent:"},
    {"******Scheduling power events for", "information", "schedulePowerEvent:withEvent:"},
    {"******** Scheduling power wakeup at:", "information", "schedulePowerEvent:withEvent:"},
    {"****** Profile's start ime", "information", "schedulePowerEvent:withEvent:"},
    {"******** Scheduling timer for", "information", "registerForPowerNotifications:profile:"},
    {"***************** schedulePowerEventsForProfiles", "information", "schedulePowerEventsForProfiles"},
    {"**** Calling 'getCurrent", "information", "processScheduledEvent:"},
    {"Processing scheduled event:", "information", "processScheduledEvent:"},
    {"[currentEvent.startDate", "information", "processScheduledEvent:"},
    {"[currentEvent.endDate", "information", "processScheduledEvent:"},
    {"********************* TURNING PROFILE ON", "information", "processScheduledEvent:"},
    {"************* Scheduling power wakeup at:", "information", "processScheduledEvent:"},
    {"********* Checking whether the network", "information", "processScheduledEvent:"},
    {"startTimeDiff:", "information", "processScheduledEvent:"},
    {"endTimeDiff:", "information", "processScheduledEvent:"},
    {"***************** Handling event store changes", "information", "handleEventStoreChanges:"},
    {"Supplied Date '", "error", "timerWithDate:"},
    {"Invalid date supplied", "error", "scheduleTimer:"},
    {"Checking whether the network", "information", "shceduleWiFiDetected:completion:"},
    {"*** Profile '", "information", "shceduleWiFiDetected:completion:"},
    {"Checking currentDate:", "information", "shceduleWiFiDetected:completion:"},
    {"************* applying profile", "information", "shceduleWiFiDetected:completion:"},
    {"Reverting profile since", "information", "shceduleWiFiDetected:completion:"},
    {"Scheduling power wakeup for 'WiFi'", "information", "shceduleWiFiDetected:completion:", " profile Tied."},
    {"Scheduling power wakeup for 'WiFi'", "information", "processScheduledEvent:", " profile."},
    {"SInce the schedule date", "warning", "shceduleWiFiDetected:completion:"},
    {"WiFi change detected", "information", "scheduleProfilesOnWiFiChange"},
    {"Last connected & new WiFi", "information", "scheduleProfilesOnWiFiChange"},
};

class LogOrigins : public SchedulerFixture {
 protected:
  /// A day with a bit of everything in it.
  void liveThroughADay() {
    clock("07:00");
    const auto work = addProfile(), tied = addProfile("Tied");
    tied->addToWiFiNetwork("Home");
    addProfile("Disabled")->setEnabled(false);
    plan(manager().profiles().back());
    addEvent("Standup", at("09:00"), at("10:00"));
    manager().schedulePowerEventsForProfiles();
    runTo("09:05");
    plan(work);
    plan(work, true);
    phone.wifi().join("Home");
    manager().scheduleProfilesOnWiFiChange();
    manager().scheduleProfilesOnWiFiChange();
    manager().processScheduledEvent(tied);
    removeEvents();
    runTo("11:00");
    phone.wifi().leave();
    plan(tied);
    phone.wifi().join("Home");
    plan(tied);
    runTo("18:00");
    tied->apply();
    plan(tied);
    const Event cancelled = event("Off", at("19:00"), at("20:00"), {.status = platform::EKEventStatus::Canceled});
    manager().eventToBeScheduled(HMProfilesManager::Events{cancelled});
    manager().schedulePowerEvent(work, cancelled);
    manager().schedulePowerEvent(work, nullptr);
    work->beginTimerForDate(std::nullopt);
    work->scheduleTimer(std::nullopt);
  }
};

TEST_F(LogOrigins, EachLineNamesItsSelectorAndLevel) {
  liveThroughADay();
  std::set<const Origin*> seen;
  for (const devices::RecordEntry& entry : phone.record().entries()) {
    if (entry.kind != devices::kind::log) continue;
    const std::string message = *entry.fields.find("message")->as<std::string>();
    for (const Origin& origin : origins) {
      if (!message.starts_with(origin.beginning) || !message.ends_with(origin.ending)) continue;
      seen.insert(&origin);
      SCOPED_TRACE(message);
      EXPECT_EQ(*entry.fields.find("level"), origin.level);
      EXPECT_EQ(*entry.fields.find("method"), origin.method);
    }
  }
  for (const Origin& origin : origins) EXPECT_TRUE(seen.contains(&origin)) << "never logged: " << origin.beginning;
}

}  // namespace
}  // namespace hushmode
