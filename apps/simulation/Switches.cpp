#include "apps/simulation/Switches.h"

#include "apps/simulation/TimeText.h"
#include "calendar/EventBinding.h"
#include "util/Numbers.h"

#include <cmath>

namespace hushmode::simulation {

using platform::Date;

namespace {

/// After this long the delayed effects of a switch are over: the tone, then the media volume.
constexpr double restSeconds = 2.5;

std::string percent(float volume) { return std::to_string(std::lround(volume * 100)) + "%"; }

std::string onOff(bool on) { return on ? "on" : "off"; }

std::string quoted(const std::optional<std::string>& title) { return "\"" + title.value_or("(no title)") + "\""; }

}  // namespace

std::string differenceText(const PhoneState& before, const PhoneState& after) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  if (before.ringtone != after.ringtone) add("ringtone " + percent(before.ringtone) + " to " + percent(after.ringtone));
  if (before.media != after.media) add("media " + percent(before.media) + " to " + percent(after.media));
  if (before.ringVibrate != after.ringVibrate) add("vibrate on ring " + onOff(after.ringVibrate));
  if (before.silentVibrate != after.silentVibrate) add("vibrate on silent " + onOff(after.silentVibrate));
  if (before.doNotDisturb != after.doNotDisturb) add("do not disturb " + onOff(after.doNotDisturb));
  if (before.icon != after.icon) add(after.icon ? "icon shown" : "icon hidden");
  return text.empty() ? "nothing changed" : text;
}

PhoneState stateOf(devices::SimulatedPhone& phone) {
  using devices::SimulatedSound;
  const auto& domains = phone.defaults().domains();
  const auto domain = domains.find("com.apple.springboard");
  const auto isOn = [&](std::string_view key) {
    return domain != domains.end() && booleanMeaning(domain->second.find(key));
  };
  return {.ringtone = phone.sound().volume(SimulatedSound::ringtone).value_or(0),
          .media = phone.sound().mediaVolume(),
          .ringVibrate = isOn("ring-vibrate"),
          .silentVibrate = isOn("silent-vibrate"),
          .doNotDisturb = phone.controlCenter().isDoNotDisturbOn(),
          .icon = phone.statusBar().isIconVisible()};
}

SwitchWatch::SwitchWatch(devices::SimulatedPhone& phone, std::function<void(const Switch&)> tell)
    : phone_(phone), tell_(std::move(tell)), last_(stateOf(phone)) {}

void SwitchWatch::watch(HMProfilesManager& manager) {
  manager_ = &manager;
  for (const auto& profile : manager.profiles()) {
    if (profile->isApplied())
      applied_.try_emplace(profile->identifier(), Applied{"applied before", std::nullopt, false});
  }
}

SwitchWatch::Applied SwitchWatch::reasonToApply(HMProfile& profile) {
  const ScheduledEvents::List* list = manager_->scheduledEventsDict().find(profile.identifier());
  if (list && !list->empty() && hm_isProfileApplied(list->front())) {
    return {quoted(list->front()->title()), list->front()->endDate(), false};
  }
  const auto network = phone_.wifi().joined();
  if (network && profile.hasWiFiNetwork(network)) return {"network " + *network, std::nullopt, true};
  return {"by hand", std::nullopt, false};
}

std::string SwitchWatch::reasonToRevert(HMProfile& profile, const Applied& applied) {
  if (!cause_.empty()) return cause_;
  if (!profile.isEnabled()) return "profile disabled";
  if (applied.byNetwork && !profile.hasWiFiNetwork(phone_.wifi().joined())) return "left " + applied.reason;
  if (applied.eventEnd && phone_.time().now() >= *applied.eventEnd) return applied.reason + " ended";
  if (!profile.isAllDay() && phone_.time().now() >= profile.endDate()) return "window closed";
  return applied.eventEnd ? applied.reason + " gone from the calendar or overtaken" : applied.reason + " over";
}

void SwitchWatch::look() {
  if (!manager_) return rest();
  for (const auto& profile : manager_->profiles()) {
    const auto known = applied_.find(profile->identifier());
    if (profile->isApplied() == (known != applied_.end())) continue;
    Switch seen{phone_.time().now(),
                profile->title().value_or("(no title)"),
                profile->identifier(),
                profile->isApplied(),
                {},
                last_,
                last_,
                false};
    if (seen.on) {
      const Applied reason = reasonToApply(*profile);
      seen.reason = reason.reason;
      applied_.emplace(seen.identifier, reason);
    } else {
      seen.reason = reasonToRevert(*profile, known->second);
      applied_.erase(known);
    }
    // What a later switch changes is not the earlier one's doing; of one instant only the last can tell.
    if (!moving_.empty() && moving_.back().at < seen.at) {
      finish();
      seen.before = last_;
    } else if (!moving_.empty()) {
      moving_.back().withNext = true;
    }
    moving_.push_back(std::move(seen));
  }
  rest();
}

void SwitchWatch::rest() {
  const PhoneState state = stateOf(phone_);
  // Told with the state that it came to rest in: what happens to the phone later is not the switch's doing.
  if (!moving_.empty() && phone_.time().now() - moving_.back().at > restSeconds) finish();
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

}  // namespace hushmode::simulation
