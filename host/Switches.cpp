#include "host/Switches.h"

#include "calendar/EventBinding.h"

#include <set>

namespace hushmode::host {

using platform::Date;

namespace {

constexpr const char* untitled = "(no title)";

std::string quoted(const std::optional<std::string>& title) { return "\"" + title.value_or(untitled) + "\""; }

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
    if (profile->isApplied())
      applied_.try_emplace(profile->identifier(), Applied{profile->title().value_or(untitled), "applied before",
                                                          std::nullopt, false, phone_.now()});
  }
}

SwitchWatch::Applied SwitchWatch::reasonToApply(HMProfile& profile) {
  const std::string title = profile.title().value_or(untitled);
  const ScheduledEvents::List* list = manager_->scheduledEventsDict().find(profile.identifier());
  if (list && !list->empty() && hm_isProfileApplied(list->front())) {
    return {title, quoted(list->front()->title()), list->front()->endDate(), false, phone_.now()};
  }
  const auto network = phone_.joinedNetwork();
  if (network && profile.hasWiFiNetwork(network))
    return {title, "network " + *network, std::nullopt, true, phone_.now()};
  return {title, "by hand", std::nullopt, false, phone_.now()};
}

std::string SwitchWatch::reasonToRevert(HMProfile& profile, const Applied& applied) {
  if (!cause_.empty()) return cause_;
  if (!profile.isEnabled()) return "profile disabled";
  if (applied.byNetwork && !profile.hasWiFiNetwork(phone_.joinedNetwork())) return "left " + applied.reason;
  if (applied.eventEnd && phone_.now() >= *applied.eventEnd) return applied.reason + " ended";
  if (!profile.isAllDay() && phone_.now() >= profile.endDate()) return "window closed";
  return applied.eventEnd ? applied.reason + " gone from the calendar or overtaken" : applied.reason + " over";
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
      note(known->second, known->first, false, "profile deleted");
      known = applied_.erase(known);
    }
  }
  rest();
}

void SwitchWatch::stopped() {
  manager_ = nullptr;
  for (const auto& [identifier, applied] : applied_) note(applied, identifier, false, cause_);
  applied_.clear();
  rest();
}

void SwitchWatch::note(const Applied& applied, std::int64_t identifier, bool on, std::string reason) {
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
