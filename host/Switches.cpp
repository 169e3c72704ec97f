// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/Switches.h"

#include "calendar/EventBinding.h"

#include <set>

namespace hushmode::host {

using platform::Date;

namespace {

constexpr const char* untitled = "(no title)";

}  // namespace

SwitchWatch::SwitchWatch(WatchedPhone phone, double restSeconds, std::function<void(const Switch&)> tell)
    : phone_(std::move(phone)), restSeconds_(restSeconds), tell_(std::move(tell)), last_(phone_.state()) {}

const SwitchWatch::Applied* SwitchWatch::applied(std::int64_t identifier) const {
  const auto place = applied_.find(identifier);
  return place == applied_.end() ? nullptr : &place->second;
}

void SwitchWatch::watch(HMProfilesManager& manager) {
  manager_ = &manager;
  for (const auto& profile : manager.profiles()) {
    if (!profile->isApplied()) continue;
    const Applied before{profile->title().value_or(untitled), Reason{Reason::Kind::AppliedBefore, std::nullopt},
                         std::nullopt, phone_.now()};
    applied_.try_emplace(profile->identifier(), before);
  }
}

SwitchWatch::Applied SwitchWatch::reasonToApply(HMProfile& profile) {
  const std::string title = profile.title().value_or(untitled);
  const ScheduledEvents::List* list = manager_->scheduledEventsDict().find(profile.identifier());
  if (list && !list->empty() && hm_isProfileApplied(list->front())) {
    return {title, {Reason::Kind::Event, list->front()->title()}, list->front()->endDate(), phone_.now()};
  }
  const auto network = phone_.joinedNetwork();
  if (network && profile.hasWiFiNetwork(network))
    return {title, {Reason::Kind::Network, network}, std::nullopt, phone_.now()};
  return {title, {Reason::Kind::ByHand}, std::nullopt, phone_.now()};
}

Reason SwitchWatch::reasonToRevert(HMProfile& profile, const Applied& applied) {
  using enum Reason::Kind;
  if (cause_) return *cause_;
  if (!profile.isEnabled()) return {Disabled};
  const bool byNetwork = applied.reason.kind == Network;
  if (byNetwork && !profile.hasWiFiNetwork(phone_.joinedNetwork())) return {NetworkLeft, applied.reason.about};
  if (applied.eventEnd && phone_.now() >= *applied.eventEnd) return {EventEnded, applied.reason.about};
  if (!profile.isAllDay() && phone_.now() >= profile.endDate()) return {WindowClosed};
  if (applied.eventEnd) return {EventGone, applied.reason.about};
  return byNetwork ? Reason{NetworkOver, applied.reason.about} : Reason{Over};
}

void SwitchWatch::look() {
  if (!manager_) return rest();
  std::set<std::int64_t> listed;
  for (const auto& profile : manager_->profiles()) {
    listed.insert(profile->identifier());
    const auto known = applied_.find(profile->identifier());
    if (profile->isApplied() == (known != applied_.end())) continue;
    if (profile->isApplied()) {
      const Applied reason = reasonToApply(*profile);
      applied_.emplace(profile->identifier(), reason);
      note(reason, profile->identifier(), true, reason.reason);
    } else {
      const Applied before = known->second;
      applied_.erase(known);
      note(before, profile->identifier(), false, reasonToRevert(*profile, before));
    }
  }
  for (auto known = applied_.begin(); known != applied_.end();) {
    if (listed.contains(known->first)) {
      ++known;
    } else {
      note(known->second, known->first, false, {Reason::Kind::Deleted});
      known = applied_.erase(known);
    }
  }
  rest();
}

void SwitchWatch::stopped() {
  manager_ = nullptr;
  for (const auto& [identifier, applied] : applied_)
    note(applied, identifier, false, cause_.value_or(Reason{Reason::Kind::Over}));
  applied_.clear();
  rest();
}

void SwitchWatch::note(const Applied& applied, std::int64_t identifier, bool on, Reason reason) {
  Switch seen{phone_.now(), applied.profile, identifier, on, std::move(reason), last_, last_, false};
  // What a later switch changes is not the earlier one's doing; of one instant only the last can tell.
  if (!moving_.empty() && moving_.back().at < seen.at) {
    finish();
    seen.before = last_;
  } else if (!moving_.empty()) {
    moving_.back().withNext = true;
  }
  moving_.push_back(std::move(seen));
}

void SwitchWatch::rest() {
  const PhoneState state = phone_.state();
  // Told with the state that it came to rest in: what happens to the phone later is not the switch's doing.
  if (!moving_.empty() && phone_.now() - moving_.back().at > restSeconds_) finish();
  for (Switch& each : moving_) each.after = state;
  if (moving_.empty()) last_ = state;
}

void SwitchWatch::finish() {
  std::vector<Switch> told;
  told.swap(moving_);
  for (const Switch& each : told) {
    last_ = each.after;
    tell_(each);
  }
}

}  // namespace hushmode::host
