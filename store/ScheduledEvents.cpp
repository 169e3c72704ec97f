// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "store/ScheduledEvents.h"

namespace hushmode {

const ScheduledEvents::List* ScheduledEvents::find(std::int64_t identifier) const {
  const auto place = lists_.find(identifier);
  return place == lists_.end() ? nullptr : &place->second;
}

void ScheduledEvents::record(std::int64_t identifier, const Event& event) {
  List& list = lists_[identifier];
  if (list.empty()) {
    list.push_back(event);
  } else {
    list.front() = event;
  }
  if (onRecord) onRecord(identifier, event);
}

void ScheduledEvents::remove(std::int64_t identifier, const Event& event) {
  const auto place = lists_.find(identifier);
  if (place == lists_.end()) return;
  const Event held = event;  // The argument may be an element of the list.
  std::erase(place->second, held);
}

}  // namespace hushmode
