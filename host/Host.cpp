// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The host's life: starting and stopping, pieces of work and what is held against them, triggers.

#include "host/Host.h"

#include "calendar/HMEventManager.h"
#include "effects/VolumeMarks.h"
#include "model/DayHelpers.h"
#include "util/HMUtils.h"
#include "util/Now.h"

#include <algorithm>
#include <utility>

namespace hushmode::host {

using platform::Date;

namespace {
std::shared_ptr<HMProfilesManager> manager() { return HMProfilesManager::sharedManager(); }
constexpr std::size_t switchesKept = 100;
/// The host says when a switch has come to rest: when it has settled.
constexpr double neverByItself = 86400;
}  // namespace

Host::Host(platform::Device& phone, Say say)
    : phone_(phone),
      say_(std::move(say)),
      device_(phone, {
                         .enter =
                             [this](const std::function<void()>& work, bool plans) {
                               perform([&] {
                                 planned_ = planned_ || plans;
                                 work();
                               });
                             },
                         .mayWake = [] { return HMProfilesManager::isHushmodeEnabled(); },
                         .beforeArrayIsWritten =
                             [this](const platform::Array& content, std::string_view path) {
                               if (path == HMProfilesManager::profilesPath) {
                                 restore_->willSave(content);
                               }
                             },
                     }) {}

Host::~Host() { kill(); }

void Host::kill() {
  process_.reset();
  watch_.reset();
  restore_.reset();
  lookTimer_.reset();
  lookAt_.reset();
  order_.clear();
  unfinished_ = planned_ = false;
  depth_ = 0;
  leaving_ = false;
  settledRound_ = ++settleRound_;  // What waits, waits for a process that is no more.
}

void Host::startProcess() {
  enabled_ = false;
  restore_ = std::make_unique<RestoreGuard>(device_, [this](const Message& message) { sayOnce(message); });
  process_ = std::make_unique<platform::Process>(device_);
  manager();
  watch_ = std::make_unique<SwitchWatch>(
      WatchedPhone{[] { return now(); }, [this] { return restore_->phone(); }, [this] { return joinedNetwork(); }},
      neverByItself, [this](const Switch& each) {
        recent_.push_back(each);
        if (recent_.size() > switchesKept) recent_.pop_front();
        if (onSwitch_) onSwitch_(each);
      });
  watch_->watch(*manager());
  if (onStart_) onStart_(*manager());
  for (const Profile& each : appliedProfiles()) order_.push_back(each->identifier());
}

void Host::start() {
  if (process_) return;
  startProcess();
  perform([this] {
    restore_->takeOver(appliedProfiles());
    HMEventManager::sharedManager();  // From now on changes of the calendars are heard.
    enabled_ = HMProfilesManager::isHushmodeEnabled();
    network_ = joinedNetwork();
    loadedDay_ = hm_beginningOfDay(now());
    const bool wasApplied = !order_.empty();
    if (!enabled_) manager()->revertAppliedProfilesIfAny();
    planNow(false);
    // What an earlier process left needs no waiting, unless this one has just begun to revert something itself.
    if (!wasApplied) settle();
    // The file may call a profile applied whose effects the earlier process did not live to see done.
    unfinished_ = wasApplied;
    if (unfinished_) settleLater();
  });
}

void Host::stop() {
  if (!process_) return;
  watch_->setCause(Reason{Reason::Kind::Stopped});
  putBackAll();
  watch_->finish();
  kill();
}

void Host::putBackAll() {
  perform([this] {
    manager()->revertAppliedProfilesIfAny();
    device_.disarmWakeUps();
    enabled_ = false;
  });
  // At once: the delayed steps end with the process.
  perform([this] { restore_->settle(appliedProfiles()); });
}

// --- Pieces of work ---

void Host::perform(const std::function<void()>& work) {
  if (!process_) return;
  begin();
  try {
    work();
  } catch (const std::exception& fault) {
    sayOnce(Message("a piece of work ended with an error: {0}", std::string(fault.what())));
    planned_ = true;
  }
  end();
}

void Host::begin() {
  if (depth_++ > 0) return;
  clearStaleMarks();
  restore_->begin(appliedProfiles());
}

void Host::end() {
  if (--depth_ > 0) return;
  ++depth_;  // What the guards do here is the same piece of work.
  try {
    if (planned_ && enabled_) reconcile();
    std::vector<std::int64_t> now;
    for (const Profile& each : appliedProfiles()) now.push_back(each->identifier());
    const auto isApplied = [&](std::int64_t id) { return std::find(now.begin(), now.end(), id) != now.end(); };
    const auto before = order_;
    std::erase_if(order_, [&](std::int64_t id) { return !isApplied(id); });
    const bool reverted = order_.size() < before.size();
    for (const std::int64_t id : now) {
      if (std::find(order_.begin(), order_.end(), id) == order_.end()) order_.push_back(id);
    }
    if (reverted) reassert();
    restore_->end(appliedProfiles());
    if (order_ != before || (restore_->isOpen() && order_.empty() && planned_)) settleLater();
    if (planned_) armLook();
    planned_ = false;
    watch_->look();
  } catch (const std::exception& fault) {
    sayOnce(Message("the host's own work ended with an error: {0}", std::string(fault.what())));
  }
  --depth_;
  if (onChange_) onChange_();
}

void Host::sayOnce(const Message& message) {
  if (said_.insert(message.english()).second) say_(message);
}

std::vector<Host::Profile> Host::appliedProfiles() const {
  std::vector<Profile> applied;
  for (const Profile& each : manager()->profiles()) {
    if (each->isApplied()) applied.push_back(each);
  }
  return applied;
}

/// Of the applied profiles the one whose settings hold: the latest; null when none is applied.
Host::Profile Host::latestApplied() const {
  for (auto identifier = order_.rbegin(); identifier != order_.rend(); ++identifier) {
    const Profile profile = manager()->profileByIdentifier(*identifier);
    if (profile && profile->isApplied()) return profile;
  }
  return nullptr;
}

/// Something may have gone over what the applied profiles ask for: the end of one takes the others' settings with it.
void Host::reassert() {
  if (const Profile latest = latestApplied()) latest->refreshSoundSettingsIfRequired();
}

void Host::settleLater(double seconds) {
  const std::uint64_t round = ++settleRound_;
  phone_.coreFoundation().mainRunLoop().dispatchAfter(seconds, [this, round] {
    if (round != settleRound_) return;
    settledRound_ = round;
    perform([this] { settle(); });
    if (watch_) watch_->finish();
    if (onChange_) onChange_();
  });
}

void Host::settle() {
  if (!restore_->settle(appliedProfiles())) {
    settleLater(retrySeconds);
    settledRound_ = settleRound_;  // At rest meanwhile: the phone may sleep.
  }
  const bool unfinished = std::exchange(unfinished_, false);
  // Delayed steps of an earlier switch, or of a form that the profile had before an edit, may have gone over what the
  // latest asks for.
  const Profile latest = latestApplied();
  if (latest && (unfinished || !restore_->isAsAskedBy(*latest))) reassert();
}

// --- What happens to the phone ---

void Host::resumed() {
  perform([this] { look(); });
}

void Host::clockChanged() {
  perform([this] { planNow(true); });
}

void Host::settingsChanged() {
  perform([this] { followMasterSwitch(); });
}

void Host::followMasterSwitch() {
  const bool on = HMProfilesManager::isHushmodeEnabled();
  if (on == enabled_) return;
  enabled_ = on;
  if (on) {
    planNow(true);
  } else {
    switchOff();
  }
}

void Host::switchOff() {
  watch_->setCause(Reason{Reason::Kind::SwitchedOff});
  manager()->handleHushmodeEnabledOrDisabled();
  device_.disarmWakeUps();
  ScheduledEvents none;
  none.onRecord = manager()->scheduledEventsDict().onRecord;
  manager()->setScheduledEventsDict(std::move(none));
  if (const auto timer = manager()->eventStoreUpdateTimer()) timer->invalidate();
  manager()->setEventStoreUpdateTimer(nullptr);
  planned_ = true;
  watch_->look();
  watch_->setCause(std::nullopt);
}

void Host::profilesFileChanged() {
  perform([this] { planNow(true); });
}

void Host::phoneChanged() {
  perform([] {});
}

void Host::volumeIsChanging(bool byUser) {
  if (!process_) return;
  // Below system 11 the library reads the mark the other way round.
  setHm_ChangedViaHWButtons(device_.celestial().sharedAVSystemController(), HMUtils::isIOS11() == byUser);
}

void Host::serviceReturned() {
  if (!process_) return;
  restore_->forgetSeen();
  perform([this] {
    if (order_.empty()) {
      settle();
    } else {
      reassert();
    }
    planned_ = true;
  });
}

void Host::plan(bool reload) {
  perform([this, reload] { planNow(reload); });
}

// --- What there is to show ---

std::vector<platform::Dictionary> Host::profiles() {
  std::vector<platform::Dictionary> list;
  if (!process_) return list;
  for (const Profile& each : manager()->profiles()) list.push_back(each->dictionaryRepresentation());
  return list;
}

std::vector<AppliedProfile> Host::applied() {
  std::vector<AppliedProfile> list;
  if (!process_) return list;
  for (const std::int64_t identifier : order_) {
    const Profile profile = manager()->profileByIdentifier(identifier);
    const SwitchWatch::Applied* why = watch_->applied(identifier);
    if (!profile || !why) continue;
    AppliedProfile shown{identifier, profile->title().value_or(""), why->reason, why->since, std::nullopt};
    if (isWindowReadable(profile)) {
      const Day day = dayOf(profile);
      shown.until = onUntil(day.conditions, day.happenings, now());
    }
    list.push_back(std::move(shown));
  }
  return list;
}

std::vector<PlannedWakeUp> Host::armed() const {
  std::vector<PlannedWakeUp> list;
  for (const ArmedWakeUp& each : device_.armedWakeUps()) list.push_back({each.date, each.profile});
  if (lookAt_) list.push_back({*lookAt_, std::nullopt});
  std::stable_sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.date < b.date; });
  return list;
}

}  // namespace hushmode::host
