// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "calendar/EventBinding.h"

#include "model/DayHelpers.h"
#include "util/Now.h"

namespace hushmode {

using Event = std::shared_ptr<platform::EKEvent>;

namespace {
constexpr char profileKey = 0, appliedKey = 0;
}

std::shared_ptr<HMProfile> hm_profile(const Event& event) {
  return event ? std::static_pointer_cast<HMProfile>(event->association(&profileKey)) : nullptr;
}

void setHm_profile(const Event& event, std::shared_ptr<HMProfile> profile) {
  if (event) event->setAssociation(&profileKey, std::move(profile));
}

bool hm_isProfileApplied(const Event& event) { return event && event->association(&appliedKey); }

void setHm_isProfileApplied(const Event& event, bool applied) {
  if (event) event->setAssociation(&appliedKey, applied ? std::make_shared<bool>(true) : nullptr);
}

void applyProfile(const Event& event) {
  const auto profile = hm_profile(event);
  if (!profile || !profile->isEnabled() || hm_isProfileApplied(event)) return;
  setHm_isProfileApplied(event, true);
  profile->apply();
}

void revertProfile(const Event& event, bool silent) {
  const Event held = event;
  setHm_isProfileApplied(held, false);
  if (const auto profile = hm_profile(held)) profile->revert(silent);
}

void revertProfile(const Event& event) { revertProfile(event, false); }

bool hm_isOccuring(const Event& event) {
  return event && event->status() != platform::EKEventStatus::Canceled &&
         hm_isBetweenDate(now(), event->startDate(), event->endDate());
}

}  // namespace hushmode
