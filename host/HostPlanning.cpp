// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// When the host plans, and what it does where the library's own wake-ups and marks would leave a profile in the wrong
// state.

#include "calendar/EventBinding.h"
#include "calendar/HMEventManager.h"
#include "host/Host.h"
#include "model/DayHelpers.h"
#include "model/TimeOfDay.h"
#include "util/Now.h"
#include "wifi/HMWiFiManager.h"

#include <algorithm>

namespace hushmode::host {

using platform::Date;
using platform::PCSimpleTimer;

namespace {

std::shared_ptr<HMProfilesManager> manager() { return HMProfilesManager::sharedManager(); }

Message titleOf(const HMProfile& profile) {
  return profile.title() ? Message::verbatim(*profile.title()) : Message("(no title)");
}

/// What the library arms is given this long to do its work before the host looks whether it did.
constexpr double libraryFirstSeconds = 1.0;

/// One that ends sooner is not worth switching on.
constexpr double leastSecondsOn = 2.0;

}  // namespace

std::optional<Message> unreadableTime(const HMProfile& profile) {
  if (profile.isAllDay()) return std::nullopt;
  for (const auto& time : {profile.startTime(), profile.endTime()}) {
    try {
      if (time) splitTimeOfDay(*time);
    } catch (const std::out_of_range&) {
      return Message("time of day \"{0}\" has no \":\"; expected a text such as \"8:00 AM\"", *time);
    }
  }
  return std::nullopt;
}

bool Host::isWindowReadable(const Profile& profile) {
  const auto fault = unreadableTime(*profile);
  if (fault) {
    sayOnce(Message("profile \"{0}\": {1}. It rests until that is mended; write times as \"8:00 AM\".",
                    titleOf(*profile), *fault));
  }
  return !fault;
}

void Host::planOne(const Profile& profile, bool shouldProceedAnyCase) {
  if (!isWindowReadable(profile)) return;
  if (!profile->isAllDay() &&
      profile->dateFromTime(profile->endTime()) <= profile->dateFromTime(profile->startTime())) {
    sayOnce(
        Message("profile \"{0}\": its window ends ({1}) before it starts ({2}), so it never opens. Make two profiles "
                "of it, one "
                "until midnight and one from midnight on.",
                titleOf(*profile), profile->endTime().value_or("12:00 AM"), profile->startTime().value_or("12:00 AM")));
  }
  manager()->scheduleEvents(profile, shouldProceedAnyCase);
}

void Host::planNow(bool reload) {
  planned_ = true;
  if (!HMProfilesManager::isHushmodeEnabled()) return;
  if (reload) reloadNow();
  for (const Profile& each : manager()->activeProfiles()) planOne(each, reload);
}

void Host::reloadNow() {
  loadedDay_ = hm_beginningOfDay(now());
  auto& files = device_.foundation().files();
  const auto content = files.arrayWithContentsOfFile(HMProfilesManager::profilesPath);
  if (!content && files.fileExists(HMProfilesManager::profilesPath)) {
    sayOnce(Message(
        "the profiles file cannot be read; the profiles stay as they were last. Mend the file or save a profile."));
    return;
  }
  std::set<std::int64_t> listed;
  for (const platform::Value& each : content.value_or(platform::Array())) {
    if (const auto* profile = each.as<platform::Dictionary>()) {
      listed.insert(HMProfile::initWithDictionary(*profile)->identifier());
    }
  }
  // One that another program has deleted cannot be reverted once it is out of the list. Reverting it writes the list,
  // and with it the deleted one: what the other program wrote is written again.
  bool reverted = false;
  for (const Profile& each : appliedProfiles()) {
    if (listed.contains(each->identifier())) continue;
    each->revert(true);
    reverted = true;
  }
  if (reverted && content) files.writeArrayToFileAtomically(*content, HMProfilesManager::profilesPath);
  if (!content) return manager()->setProfiles({});
  manager()->loadProfiles();
}

/// An event keeps its mark when its profile was reverted another way; the library would then take the running event
/// for applied and leave it at that, or set volumes for it.
void Host::clearStaleMarks() {
  for (const Profile& each : manager()->profiles()) {
    if (each->isApplied()) continue;
    const ScheduledEvents::List* list = manager()->scheduledEventsDict().find(each->identifier());
    if (list && !list->empty()) setHm_isProfileApplied(list->front(), false);
  }
}

std::optional<std::string> Host::joinedNetwork() const {
  platform::MobileWiFi& wifi = phone_.mobileWiFi();
  const auto network = wifi.WiFiDeviceClientCopyCurrentNetwork(HMWiFiManager::sharedManager()->client());
  return network ? std::optional(wifi.WiFiNetworkGetSSID(network)) : std::nullopt;
}

Host::Day Host::dayOf(const Profile& profile) {
  Day day;
  Conditions& conditions = day.conditions;
  conditions.enabled = profile->isEnabled();
  conditions.allDay = profile->isAllDay();
  if (!conditions.allDay) {
    conditions.windowStart = profile->dateFromTime(profile->startTime());
    conditions.windowEnd = profile->dateFromTime(profile->endTime());
  }
  // One that waits to be left still counts as joined.
  const auto network = leaving_ ? network_ : joinedNetwork();
  conditions.onOwnNetwork = profile->isWifiEnabled() && profile->hasWiFiNetwork(network);
  conditions.wantedStatus = profile->applyProfileEventStatus();
  conditions.allDayEventsIgnored = profile->isAllDayEventsIgnored();

  const auto events = HMEventManager::sharedManager();
  const auto calendars = events->allCalendars(profile->calendarIdentifiers());
  if (calendars.empty()) return day;
  const Date midnight = hm_beginningOfDay(now());
  const Date next = phone_.foundation().currentCalendar().dateByAddingDays(midnight, 1);
  const auto& store = events->eventStore();
  day.events = store->eventsMatchingPredicate(store->predicateForEventsWithStartDate(midnight, next, calendars));
  for (const auto& each : day.events) {
    day.happenings.push_back({each->startDate(), each->endDate(), each->status(), each->isAllDay()});
  }
  return day;
}

void Host::reconcile() {
  for (const Profile& profile : manager()->activeProfiles()) {
    if (!isWindowReadable(profile)) continue;
    const Day day = dayOf(profile);
    const Expectation expected = expectation(day.conditions, day.happenings, now());
    if (expected.on == profile->isApplied()) continue;
    if (!expected.on) {
      turnOff(profile);
    } else if (const auto until = onUntil(day.conditions, day.happenings, now());
               !until || *until - now() >= leastSecondsOn) {
      turnOn(profile, day, expected);
    }
  }
}

void Host::turnOn(const Profile& profile, const Day& day, const Expectation& expected) {
  if (!expected.event) return profile->apply();
  const auto& event = day.events[*expected.event];
  setHm_profile(event, profile);
  manager()->scheduledEventsDict().record(profile->identifier(), event);
  manager()->processScheduledEvent(profile);
  if (!profile->isApplied()) applyProfile(event);
}

void Host::turnOff(const Profile& profile) {
  const auto current = manager()->getCurrentScheduledEventFromProfile(profile);
  if (current && hm_isProfileApplied(current)) {
    revertProfile(current);
  } else {
    profile->revert();
  }
  if (current) manager()->removeEventFromScheduledList(profile, current);
}

/// Arms the next look: local midnight, or the first moment at which a profile is to switch. Where the library has armed
/// a wake-up for that moment itself, the host comes after it.
void Host::armLook() {
  std::optional<Date> next;
  const auto earlier = [&](Date date) {
    if (!next || date < *next) next = date;
  };
  if (enabled_) {
    earlier(phone_.foundation().currentCalendar().dateByAddingDays(hm_beginningOfDay(now()), 1));
    const auto wakeUps = device_.armedWakeUps();
    for (const Profile& profile : manager()->activeProfiles()) {
      if (!isWindowReadable(profile)) continue;
      const Day day = dayOf(profile);
      const auto change = nextChange(day.conditions, day.happenings, now());
      if (!change) continue;
      const bool isArmed = std::any_of(wakeUps.begin(), wakeUps.end(), [&](const ArmedWakeUp& each) {
        return each.profile == profile->identifier() && each.date == *change;
      });
      earlier(isArmed ? change->addingSeconds(libraryFirstSeconds) : *change);
    }
  }
  if (lookTimer_ && lookAt_ == next) return;
  if (lookTimer_) lookTimer_->invalidate();
  lookTimer_.reset();
  lookAt_ = next;
  if (!next) return;
  const auto looking = [this](const std::shared_ptr<PCSimpleTimer>&) {
    lookTimer_.reset();
    lookAt_.reset();
    perform([this] { look(); });
  };
  // The phone's own: this wake-up is none of the library's.
  auto* timers = dynamic_cast<PCSimpleTimer::Class*>(phone_.classNamed(PCSimpleTimer::className));
  if (!timers) {
    sayOnce(Message("the phone has no wake timers: profiles switch when something else happens, not at their second."));
    return;
  }
  lookTimer_ = timers->initWithFireDate(*next, "com.quorvel.hushmode", looking, {{"HostLook", true}});
  lookTimer_->scheduleInRunLoop(phone_.coreFoundation().mainRunLoop());
}

void Host::look() {
  planned_ = true;
  followMasterSwitch();  // Whoever set it may not have told yet.
  // The windows are kept per profile object, for the day on which they were first asked for.
  if (loadedDay_ != hm_beginningOfDay(now())) planNow(true);
}

void Host::networkChanged() {
  if (!process_) return;
  const auto joined = joinedNetwork();
  leaving_ = false;
  if (joined == network_) return;
  if (joined || !network_) return perform([this] { networkSettled(); });
  leaving_ = true;
  const std::uint64_t round = ++leaveRound_;
  phone_.coreFoundation().mainRunLoop().dispatchAfter(leaveSeconds, [this, round] {
    if (!leaving_ || round != leaveRound_) return;
    leaving_ = false;
    perform([this] { networkSettled(); });
  });
}

void Host::networkSettled() {
  planned_ = true;
  const auto before = network_;
  network_ = joinedNetwork();
  if (!HMProfilesManager::isHushmodeEnabled()) return;
  // The library takes the network that was joined last for the one that it has planned for already; when one network
  // follows another without a gap, that is the new one.
  if (before && network_) {
    HMWiFiManager::sharedManager()->currentNetWork();
    for (const Profile& each : manager()->activeProfiles()) planOne(each, each->isWifiEnabled());
  } else {
    manager()->scheduleProfilesOnWiFiChange();
  }
}

}  // namespace hushmode::host
