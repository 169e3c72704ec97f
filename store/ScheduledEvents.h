// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/EventKit.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace hushmode {

/// The scheduled-events table: for each profile identifier a list whose first element is the event that the profile
/// follows now. A list is made by the first recording and never goes away; it may become empty.
class HUSHMODE_API ScheduledEvents {
 public:
  using Event = std::shared_ptr<platform::EKEvent>;
  using List = std::vector<Event>;

  /// The profile's list, or null when none was ever made. Valid until the next recording or removal.
  const List* find(std::int64_t identifier) const;
  /// Makes `event` the one that the profile follows.
  void record(std::int64_t identifier, const Event& event);
  /// Removes every element that is this very event; another object of the same calendar entry stays. Thus an event that
  /// was recorded anew in the meantime survives the removal of the old one.
  void remove(std::int64_t identifier, const Event& event);

  bool empty() const { return lists_.empty(); }
  std::size_t size() const { return lists_.size(); }

  /// Called after each recording; for those who show what the scheduler decides. May be empty.
  std::function<void(std::int64_t identifier, const Event&)> onRecord;

 private:
  std::map<std::int64_t, List> lists_;
};

}  // namespace hushmode
