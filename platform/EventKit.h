// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "platform/Object.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// EventKit: the calendar store, its calendars and events.
namespace hushmode::platform {

/// An account that calendars belong to.
class HUSHMODE_API EKSource : public Object {
 public:
  explicit EKSource(std::string title) : title_(std::move(title)) {}
  ~EKSource() override;
  const std::string& title() const { return title_; }

 private:
  std::string title_;
};

/// A calendar, as the store had it at the time of the query.
class HUSHMODE_API EKCalendar : public Object {
 public:
  EKCalendar(std::string identifier, std::string title, bool allowsContentModifications,
             std::shared_ptr<EKSource> source);
  ~EKCalendar() override;
  std::string description() const override;

  const std::string& calendarIdentifier() const { return identifier_; }
  const std::string& title() const { return title_; }
  bool allowsContentModifications() const { return allowsContentModifications_; }
  const std::shared_ptr<EKSource>& source() const { return source_; }  ///< Never null.

 private:
  std::string identifier_, title_;
  bool allowsContentModifications_;
  std::shared_ptr<EKSource> source_;
};

/// An event's status code.
enum class EKEventStatus : int { None = 0, Confirmed = 1, Tentative = 2, Canceled = 3 };

/// What all occurrences of a calendar entry share.
struct EKEventDetails {
  std::optional<std::string> title;
  std::string UUID;             ///< The same for every occurrence of an entry, and after an edit of it.
  std::string eventIdentifier;  ///< Unique in the store.
  std::string uniqueId;         ///< The entry's identifier across devices (RFC 5545's UID).
  EKEventStatus status = EKEventStatus::None;
  bool allDay = false;
  std::shared_ptr<EKCalendar> calendar;
};

/// One occurrence of a calendar entry: a snapshot. Every query makes new objects; nothing changes them afterwards.
class HUSHMODE_API EKEvent : public Object {
 public:
  EKEvent(std::shared_ptr<const EKEventDetails> details, Date start, Date end);
  ~EKEvent() override;
  std::string description() const override;

  const std::optional<std::string>& title() const { return details_->title; }
  const std::string& UUID() const { return details_->UUID; }
  const std::string& eventIdentifier() const { return details_->eventIdentifier; }
  const std::string& uniqueId() const { return details_->uniqueId; }
  EKEventStatus status() const { return details_->status; }
  bool isAllDay() const { return details_->allDay; }
  const std::shared_ptr<EKCalendar>& calendar() const { return details_->calendar; }
  Date startDate() const { return start_; }
  Date endDate() const { return end_; }

 private:
  std::shared_ptr<const EKEventDetails> details_;
  Date start_, end_;
};

enum class EKEntityType : int { Event = 0, Reminder = 1 };

/// A query for the events that overlap a span, in some calendars.
struct EKEventPredicate {
  Date start, end;
  std::vector<std::shared_ptr<EKCalendar>> calendars;  ///< An empty list matches nothing.
};

/// The user's calendars. Posts `EKEventStoreChangedNotification`, with itself as the sender, whenever their data
/// changes.
class HUSHMODE_API EKEventStore : public Object {
 public:
  static constexpr std::string_view changedNotification = "EKEventStoreChangedNotification";

  ~EKEventStore() override;
  /// Every calendar of the type, in the store's order.
  virtual std::vector<std::shared_ptr<EKCalendar>> calendarsForEntityType(EKEntityType type) const = 0;
  virtual EKEventPredicate predicateForEventsWithStartDate(
      Date start, Date end, const std::vector<std::shared_ptr<EKCalendar>>& calendars) const;
  /// The matching events, occurrences of repeating ones included, in the store's order.
  virtual std::vector<std::shared_ptr<EKEvent>> eventsMatchingPredicate(const EKEventPredicate& predicate) const = 0;
  virtual std::shared_ptr<EKEvent> eventWithIdentifier(std::string_view identifier) const = 0;
  virtual std::shared_ptr<EKEvent> eventWithUUID(std::string_view uuid) const = 0;
  virtual std::shared_ptr<EKEvent> eventWithUniqueId(std::string_view uniqueId) const = 0;
  /// The occurrence of the entry that starts at `occurrence`.
  virtual std::shared_ptr<EKEvent> eventWithUniqueId(std::string_view uniqueId, Date occurrence) const = 0;
};

/// What EventKit offers a process.
class HUSHMODE_API EventKit {
 public:
  virtual ~EventKit();
  /// A store over the user's calendars.
  virtual std::shared_ptr<EKEventStore> makeEventStore() = 0;
};

}  // namespace hushmode::platform
