// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The profile's power-aware timers. Each calls the scheduler with itself when it fires; the user info names the profile
// by identifier and not by object, so that a timer can outlive the object that armed it.

#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"
#include "util/Now.h"

namespace hushmode {

using platform::Date;
using platform::PCSimpleTimer;
using Timer = std::shared_ptr<PCSimpleTimer>;

namespace {

platform::RunLoop& mainRunLoop() { return platform::device().coreFoundation().mainRunLoop(); }

void arm(const Timer& timer) {
  if (timer) timer->scheduleInRunLoop(mainRunLoop());
}

void stop(Timer& timer) {
  if (!timer) return;
  timer->invalidate();
  timer = nullptr;
}

/// Runs `work` at once on the main thread, else hands it to the main queue.
template <class Work>
void onMainThread(Work work) {
  if (mainRunLoop().isMainThread()) {
    work();
  } else {
    mainRunLoop().dispatchAsync(work);
  }
}

}  // namespace

Timer HMProfile::timerWithDate(const std::optional<Date>& date) {
  if (!date || now() > *date) {
    logError("timerWithDate:", "Supplied Date '%@' is invalid or in the past..", date);
    return nullptr;
  }
  auto* timerClass = platform::find<PCSimpleTimer>();
  if (!timerClass) return nullptr;
  HMProfilesManager::sharedManager();  // The timer's target: it is there from now on, not first when the timer fires.
  return timerClass->initWithFireDate(
      *date, "com.quorvel.hushmode",
      [](const Timer& fired) { HMProfilesManager::sharedManager()->schedulePowerEvent(fired); },
      {{"ProfileIdentifier", identifier()}});
}

Timer HMProfile::timerForDate(const std::optional<Date>& date) {
  if (!timer_) timer_ = timerWithDate(date);
  return timer_;
}

void HMProfile::beginTimerForDate(const std::optional<Date>& date) {
  stopTimer();
  // The timer is made here and now; only its arming waits for the main thread.
  onMainThread([timer = timerForDate(date)] { arm(timer); });
}

void HMProfile::stopTimer() { stop(timer_); }

Timer HMProfile::startTimer() {
  if (!startTimer_) startTimer_ = timerWithDate(startDate());
  return startTimer_;
}

Timer HMProfile::endTimer() {
  if (!endTimer_) endTimer_ = timerWithDate(endDate());
  return endTimer_;
}

void HMProfile::beginStartTimer() {
  onMainThread([held = self()] { arm(held->startTimer()); });
}

void HMProfile::beginEndTimer() {
  onMainThread([held = self()] { arm(held->endTimer()); });
}

void HMProfile::stopStartTimer() { stop(startTimer_); }
void HMProfile::stopEndTimer() { stop(endTimer_); }

void HMProfile::scheduleTimerForProfileStartDate() {
  beginStartTimer();
  beginEndTimer();
}

void HMProfile::scheduleTimerForProfileEndDate() {
  stopEndTimer();
  beginEndTimer();
}

void HMProfile::scheduleTimers() {
  scheduleTimerForProfileStartDate();
  scheduleTimerForProfileEndDate();
}

void HMProfile::stopTimers() {
  stopStartTimer();
  stopEndTimer();
}

void HMProfile::scheduleTimer(const std::optional<Date>& date) {
  if (platform::sameInstant(date, startDate())) {
    scheduleTimerForProfileStartDate();
  } else if (platform::sameInstant(date, endDate())) {
    scheduleTimerForProfileEndDate();
  } else {
    logError("scheduleTimer:", "Invalid date supplied hence ignoring schedule timers call...");
  }
}

}  // namespace hushmode
