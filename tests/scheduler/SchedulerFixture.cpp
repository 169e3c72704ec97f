// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/scheduler/SchedulerFixture.h"

#include <array>

namespace hushmode {

namespace {

constexpr std::array schedulerMethods{
    std::string_view("scheduleEvents:shouldProceedAnyCase:"),
    std::string_view("eventToBeScheduled:"),
    std::string_view("getCurrentScheduledEventFromProfile:"),
    std::string_view("removeEventFromScheduledList:event:"),
    std::string_view("schedulePowerEvent:"),
    std::string_view("schedulePowerEvent:withEvent:"),
    std::string_view("processScheduledEvent:"),
    std::string_view("registerForPowerNotifications:profile:"),
    std::string_view("schedulePowerEventsForProfiles"),
    std::string_view("handleEventStoreChanges:"),
    std::string_view("timerWithDate:"),
    std::string_view("scheduleTimer:"),
    std::string_view("shceduleWiFiDetected:completion:"),
    std::string_view("scheduleProfilesOnWiFiChange"),
    std::string_view("eventsForProfile:"),
};

std::string textAt(const platform::Dictionary& fields, std::string_view key) {
  const platform::Value* value = fields.find(key);
  const std::string* text = value ? value->as<std::string>() : nullptr;
  return text ? *text : std::string();
}

void eraseAll(std::string& text, std::string_view part) {
  for (auto place = text.find(part); place != std::string::npos; place = text.find(part, place)) {
    text.erase(place, part.size());
  }
}

/// A log line of the effects, as what it gives away; empty for all others.
std::string_view deedOf(std::string_view message) {
  if (message == "********* applying profile ************") return "<apply>";
  if (message.starts_with("**** currentSysVolume:")) return "<refresh>";
  // The one line of a revert that tells whether it is quiet.
  if (message.starts_with("self.isPlayAlert:") && message.find("apply: 0") != std::string_view::npos) {
    return message.ends_with("self.isSilent: 1") ? "<revert quietly>" : "<revert>";
  }
  return {};
}

}  // namespace

void SchedulerFixture::SetUp() {
  manager().scheduledEventsDict().onRecord = [this](std::int64_t identifier, const Event& event) {
    phone.record().append(devices::kind::table, {{"identifier", identifier}, {"event", event->description()}});
  };
  clearRecord();
}

std::string SchedulerFixture::withoutToday(std::string text) const {
  eraseAll(text, phone.record().localTimeOf(phone.time().now()).substr(0, 11));
  eraseAll(text, " +0000");
  return text;
}

std::string SchedulerFixture::storyLine(const devices::RecordEntry& entry) const {
  if (entry.kind == devices::kind::table) return entry.text();
  if (entry.kind == devices::kind::timer) {
    const std::string text = entry.text();
    return withoutToday(text.substr(0, text.find(" {")));
  }
  if (entry.kind != devices::kind::log) return {};
  const std::string method = textAt(entry.fields, "method");
  for (const std::string_view known : schedulerMethods) {
    if (method == known) return withoutToday(entry.text().substr(std::string_view("log ").size()));
  }
  return std::string(deedOf(textAt(entry.fields, "message")));
}

std::string SchedulerFixture::story() {
  std::string text = "\n";
  for (const devices::RecordEntry& entry : phone.record().entries()) {
    if (const std::string line = storyLine(entry); !line.empty()) text += line + "\n";
  }
  clearRecord();
  return text;
}

int SchedulerFixture::count(std::string_view text) const {
  int found = 0;
  for (const devices::RecordEntry& entry : phone.record().entries()) {
    const bool contains =
        withoutToday(entry.text()).find(text) != std::string::npos || storyLine(entry).find(text) != std::string::npos;
    if (contains) ++found;
  }
  return found;
}

std::string SchedulerFixture::armed() const {
  std::string text;
  for (const auto& timer : phone.wakeTimers().armed()) {
    if (!text.empty()) text += ", ";
    text += timer.name + " at " + withoutToday(phone.record().localTimeOf(timer.fireDate));
  }
  return text;
}

}  // namespace hushmode
