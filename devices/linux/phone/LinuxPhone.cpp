// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/phone/LinuxPhone.h"

#include "devices/linux/calendars/EvolutionModule.h"
#include "devices/linux/calendars/WatchedCalendarFolder.h"
#include "devices/words/Text.h"

namespace hushmode::devices {

namespace {

std::function<void(const std::string&)> warningsTo(const LogSink& sink) {
  if (!sink) return nullptr;
  return [sink](const std::string& line) { sink(Priority::Warning, line); };
}

void tell(const std::function<void()>& event) {
  if (event) event();
}

}  // namespace

LinuxPhone::LinuxPhone(const Options& options, Services& services, LinuxPhoneEvents events, const LogSink& sink)
    : events_(std::move(events)),
      loop_(warningsTo(sink)),
      zone_(warningsTo(sink), [this] { zoneChanged(); }),
      foundation_(options.foundation, loop_, zone_.zone(), sink),
      coreFoundation_(*this),
      wakeTimers_(warningsTo(sink)),
      clockSteps_([this] { tell(events_.clockChanged); }),
      darwin_(options.sessionBus, services),
      observation_(darwin_.observe([this](std::string_view name) {
        if (events_.notified) events_.notified(name);
      })),
      volumes_(foundation_.defaultNotificationCenter(), services,
               [this](bool byUser) {
                 if (events_.volumeIsChanging) events_.volumeIsChanging(byUser);
               }),
      tones_(options.sessionBus, services),
      vibrateMirror_(foundation_.standardUserDefaults(), darwin_, services),
      doNotDisturb_(options.sessionBus, services),
      alarms_(options.sessionBus, services),
      wifi_(options.systemBus, services, [this] { tell(events_.networkChanged); }),
      logind_(options.systemBus, services, options.sessionId,
              {[this] { tell(events_.aboutToSleep); }, [this] { tell(events_.resumed); }, {}}),
      screen_(options.sessionBus, logind_, services),
      calendars_(foundation_.defaultNotificationCenter(), [this] { return foundation_.timeZone(); }),
      statusIcon_(options.sessionBus, options.iconFolder, services),
      alertViews_(options.sessionBus, services, {"Hush Mode", "hushmode", "com.quorvel.Hushmode"}),
      appearance_(options.sessionBus, services),
      uiKit_(alertViews_, appearance_) {
  doNotDisturb_.setListener([this](bool) { tell(events_.effectsChanged); });
  if (!options.calendarFolder.empty()) {
    calendars_.add(std::make_unique<WatchedCalendarFolder>(options.calendarFolder, services, warningsTo(sink)));
  }
  calendars_.add(makeEvolutionCalendarsFromModule(options.sessionBus, services, warningsTo(sink)));
  services.report("wake-ups", mayWakeDevice()
                                  ? ServiceState{true, tr("the phone wakes for switches")}
                                  : ServiceState{false, tr("this process may not wake the sleeping phone: it lacks "
                                                           "CAP_WAKE_ALARM, or there is no clock that can")});
}

// The calendar service's library runs the main context while it ends; whoever is told of events may be gone by then.
LinuxPhone::~LinuxPhone() { events_ = {}; }

void LinuxPhone::zoneChanged() {
  foundation_.setTimeZone(zone_.zone());
  tell(events_.clockChanged);
}

platform::Class* LinuxPhone::classNamed(std::string_view name) {
  if (name == platform::PCSimpleTimer::className) return &wakeTimers_.timerClass();
  if (name == platform::VolumeControl::className) return &volumes_.volumeControlClass();
  if (name == platform::TLAlert::className) return &tones_.alertClass();
  if (name == platform::SpringBoard::className) return &screen_.springBoardClass();
  if (name == platform::SBBacklightController::className) return &screen_.backlightClass();
  if (platform::Class* found = doNotDisturb_.classNamed(name)) return found;
  if (platform::Class* found = statusIcon_.classNamed(name)) return found;
  return alarms_.classNamed(name);
}

void LinuxPhone::processEnded() {
  foundation_.processEnded();
  alertViews_.processEnded();
  wakeTimers_.processEnded();
  // Last: what ends above may queue work from its destructor.
  loop_.processEnded();
}

}  // namespace hushmode::devices
