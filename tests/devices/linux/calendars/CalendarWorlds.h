// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/calendars/LinuxCalendars.h"
#include "tests/contracts/CalendarContract.h"
#include "tests/devices/linux/calendars/MainLoop.h"

#include <algorithm>
#include <string>
#include <vector>

namespace hushmode::devices {

/// A notification centre that tells its observers, and no more.
class PlainNotificationCenter final : public platform::NotificationCenter {
 public:
  void addObserver(const void* observer, std::string_view name, std::shared_ptr<platform::Object> sender,
                   std::function<void(const platform::Notification&)> handler) override {
    observers_.push_back({observer, std::string(name), std::move(sender), std::move(handler)});
  }
  void removeObserver(const void* observer) override {
    std::erase_if(observers_, [&](const Observer& each) { return each.identity == observer; });
  }
  void post(const platform::Notification& notification) override {
    for (const Observer& each : std::vector<Observer>(observers_)) {
      if (each.name == notification.name && (!each.sender || each.sender == notification.sender)) {
        each.handler(notification);
      }
    }
  }

 private:
  struct Observer {
    const void* identity;
    std::string name;
    std::shared_ptr<platform::Object> sender;
    std::function<void(const platform::Notification&)> handler;
  };
  std::vector<Observer> observers_;
};

/// The entry as iCalendar text, in Berlin's time. With `component` only its VEVENTs, one text each.
inline std::vector<std::string> componentTexts(const contracts::CalendarEntry& entry) {
  constexpr const char* kStatus[] = {"", "STATUS:CONFIRMED\r\n", "STATUS:TENTATIVE\r\n", "STATUS:CANCELLED\r\n"};
  const auto property = [&](const std::string& name, std::string time) {
    std::erase_if(time, [](char c) { return c == '-' || c == ':'; });
    if (entry.isAllDay()) return name + ";VALUE=DATE:" + time + "\r\n";
    std::replace(time.begin(), time.end(), ' ', 'T');
    return name + ";TZID=Europe/Berlin:" + time + "00\r\n";
  };
  std::string title;
  for (const char c : entry.title) title += std::string(c == ',' || c == ';' || c == '\\' ? "\\" : "") + c;
  const auto event = [&](const std::string& start, const std::string& end, const std::string& more) {
    return "BEGIN:VEVENT\r\nUID:" + entry.uid + "\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:" + title + "\r\n" +
           property("DTSTART", start) + property("DTEND", end) + kStatus[static_cast<int>(entry.status)] + more +
           "END:VEVENT\r\n";
  };
  std::vector<std::string> texts{event(
      entry.start, entry.end, entry.days > 1 ? "RRULE:FREQ=DAILY;COUNT=" + std::to_string(entry.days) + "\r\n" : "")};
  for (const auto& moved : entry.moved) {
    texts.push_back(event(moved.start, moved.end, property("RECURRENCE-ID", moved.from)));
  }
  return texts;
}

inline std::string calendarText(const contracts::CalendarEntry& entry) {
  std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//tests//EN\r\n";
  for (const std::string& event : componentTexts(entry)) text += event;
  return text + "END:VCALENDAR\r\n";
}

/// A Linux phone with one source of calendars.
class LinuxCalendarsWorld : public contracts::CalendarsWorld {
 public:
  platform::EventKit& eventKit() override { return calendars_; }
  platform::NotificationCenter& notifications() override { return notifications_; }
  ~LinuxCalendarsWorld() override { notifications_.removeObserver(this); }

 protected:
  LinuxCalendarsWorld() {
    notifications_.addObserver(this, platform::EKEventStore::changedNotification, store_,
                               [this](const platform::Notification&) { ++notices_; });
  }

  /// Runs the main loop until a change has been told and the store says so.
  template <class Change>
  void changeAndSettle(Change change, const std::function<bool()>& isSeen) {
    const int before = notices_;
    change();
    try {
      runMainLoopUntil([&] { return notices_ > before && isSeen(); });
    } catch (const std::runtime_error& error) {
      std::string state = std::string(error.what()) + "; " + std::to_string(notices_ - before) + " notices came";
      for (const auto& [name, service] : services_.states()) state += "; " + name + ": " + service.detail;
      for (const auto& calendar : store_->calendarsForEntityType(platform::EKEntityType::Event)) {
        state += "; " + calendar->calendarIdentifier() + " " + calendar->title();
      }
      throw std::runtime_error(state);
    }
  }
  bool shows(const contracts::CalendarEntry& entry) {
    const auto event = store_->eventWithUniqueId(entry.uid);
    if (!event || event->title() != entry.title || event->status() != entry.status) return false;
    for (const auto& moved : entry.moved) {
      if (!store_->eventWithUniqueId(entry.uid, date(moved.start))) return false;
    }
    return event->startDate() == date(entry.start) && event->endDate() == date(entry.end);
  }
  bool hasCalendar(const std::string& title) {
    const auto calendars = store_->calendarsForEntityType(platform::EKEntityType::Event);
    return std::any_of(calendars.begin(), calendars.end(), [&](const auto& each) { return each->title() == title; });
  }

  PlainNotificationCenter notifications_;
  Services services_;
  LinuxCalendars calendars_{notifications_, [this] { return zone_; }};
  const std::shared_ptr<platform::EKEventStore> store_ = calendars_.makeEventStore();
  int notices_ = 0;
};

}  // namespace hushmode::devices
