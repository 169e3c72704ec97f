// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/CoreFoundation.h"
#include "platform/PersistentConnection.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

/// One profile: the conditions under which the phone is to be quiet (a daily window, calendars and a filter on their
/// events, WiFi networks) and what quiet means (volumes, vibration, alert tone, Do Not Disturb, icon, screen).
///
/// An object with identity, held by `std::shared_ptr`. There is no `operator==`, on purpose: see `isEqual`. Main thread
/// only; `beginTimerForDate`, `beginStartTimer` and `beginEndTimer` may be called from any.
class HUSHMODE_API HMProfile final : public platform::Object {
  struct Private {};

 public:
  using Date = platform::Date;

  /// A new profile: identifier now, in whole seconds since 1970; everything else zero, false or absent.
  static std::shared_ptr<HMProfile> init();
  explicit HMProfile(Private);
  ~HMProfile() override;
  /// "<HMProfile title>". Reads nothing lazily.
  std::string description() const override;

  // --- The record (model/) ---

  /// Identity: the creation time in whole seconds since 1970. Not checked for uniqueness anywhere.
  std::int64_t identifier() const { return identifier_; }
  void setIdentifier(std::int64_t identifier) { identifier_ = identifier; }
  /// The name shown to people.
  const std::optional<std::string>& title() const { return title_; }
  void setTitle(std::optional<std::string> title) { title_ = std::move(title); }
  /// Whether the profile takes part in scheduling.
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled) { enabled_ = enabled; }
  /// Whether the window is the whole day.
  bool isAllDay() const { return allDay_; }
  void setAllDay(bool allDay) { allDay_ = allDay; }
  /// The daily window, as "8:00 AM". Absent reads as midnight.
  const std::optional<std::string>& startTime() const { return startTime_; }
  void setStartTime(std::optional<std::string> time) { startTime_ = std::move(time); }
  const std::optional<std::string>& endTime() const { return endTime_; }
  void setEndTime(std::optional<std::string> time) { endTime_ = std::move(time); }
  /// When the store last updated the profile. Written to the file, never read from it.
  const std::optional<Date>& updatedDate() const { return updatedDate_; }
  void setUpdatedDate(std::optional<Date> date) { updatedDate_ = date; }
  /// Volumes while applied, 0.0 to 1.0. `deviceVolume` is only logged.
  double ringerVolume() const { return ringerVolume_; }
  void setRingerVolume(double volume) { ringerVolume_ = volume; }
  double playBackVolume() const { return playBackVolume_; }
  void setPlayBackVolume(double volume) { playBackVolume_ = volume; }
  double deviceVolume() const { return deviceVolume_; }
  void setDeviceVolume(double volume) { deviceVolume_ = volume; }
  /// Whether a tone sounds at each switch, and which.
  bool isPlayAlert() const { return playAlert_; }
  void setPlayAlert(bool playAlert) { playAlert_ = playAlert; }
  std::int64_t alertSound() const { return alertSound_; }
  void setAlertSound(std::int64_t sound) { alertSound_ = sound; }
  std::uint32_t alertSoundID() const { return alertSoundID_; }  ///< Never persisted.
  void setAlertSoundID(std::uint32_t sound) { alertSoundID_ = sound; }
  const std::optional<std::string>& alertToneIdentifier() const { return alertToneIdentifier_; }
  void setAlertToneIdentifier(std::optional<std::string> identifier) { alertToneIdentifier_ = std::move(identifier); }
  bool isVibrate() const { return vibrate_; }
  void setVibrate(bool vibrate) { vibrate_ = vibrate; }
  bool isVibrateAlert() const { return vibrateAlert_; }
  void setVibrateAlert(bool vibrateAlert) { vibrateAlert_ = vibrateAlert; }
  bool isShowOnStatusBar() const { return showOnStatusBar_; }
  void setShowOnStatusBar(bool show) { showOnStatusBar_ = show; }
  bool isDnDEnabled() const { return dnDEnabled_; }
  void setDnDEnabled(bool enabled) { dnDEnabled_ = enabled; }
  bool isWakeUpScreen() const { return wakeUpScreen_; }
  void setWakeUpScreen(bool wake) { wakeUpScreen_ = wake; }
  /// Whether calendar events that last all day leave the profile alone.
  bool isAllDayEventsIgnored() const { return allDayEventsIgnored_; }
  void setAllDayEventsIgnored(bool ignored) { allDayEventsIgnored_ = ignored; }
  /// Kept with the record; never persisted.
  bool isNewProfile() const { return newProfile_; }
  void setNewProfile(bool isNew) { newProfile_ = isNew; }
  bool isApplied() const { return applied_; }
  bool isSilent() const { return silent_; }
  /// The volume question of the present application; never persisted.
  bool isVolumeAlertShown() const { return volumeAlertShown_; }
  void setVolumeAlertShown(bool shown) { volumeAlertShown_ = shown; }
  bool shouldPreserveVolumeChange() const { return preserveVolumeChange_; }
  void setPreserveVolumeChange(bool preserve) { preserveVolumeChange_ = preserve; }
  double newRingtoneVolume() const { return newRingtoneVolume_; }
  void setNewRingtoneVolume(double volume) { newRingtoneVolume_ = volume; }

  /// Not a comparison: takes over the other profile's identifier and answers whether that is not zero. For anything but
  /// a profile: whether it is the same object. Other rooms depend on it as it stands; never search a list with it.
  bool isEqual(const std::shared_ptr<platform::Object>& other);
  /// Whether a scheduled event's profile differs from `other` in what matters to the schedule: the window's dates, and
  /// calendars that only this profile has (one that only the other has is no change, on purpose). Begins with
  /// `isEqual`, so it takes over the other's identifier; an identifier of 0 counts as not changed.
  bool hasChanged(const std::shared_ptr<HMProfile>& other);

  /// The filter on event status, 0 to 3 (0: any; else the event's status code). A stored value out of range becomes 0.
  std::int64_t applyProfileEventStatus();
  void setApplyProfileEventStatus(std::int64_t status) { applyProfileEventStatus_ = status; }
  /// The filter's localised label.
  std::string applyProfileEventStatusString();

  /// Networks whose presence applies the profile; created empty on first read.
  std::vector<std::string>& wifiNetworks();
  void setWifiNetworks(std::optional<std::vector<std::string>> names) { wifiNetworks_ = std::move(names); }
  /// Whether there is any network.
  bool isWifiEnabled();
  /// Appends, without a look for duplicates.
  void addToWiFiNetwork(const std::string& name);
  /// Removes every entry of that name.
  void removeFromWiFiNetwork(const std::string& name);
  /// An absent name is in no list.
  bool hasWiFiNetwork(const std::optional<std::string>& name);

  // --- Its dictionary (model/) ---

  static std::shared_ptr<HMProfile> initWithDictionary(const platform::Dictionary& dictionary);
  void setPropertiesFromDicitonary(const platform::Dictionary& dictionary);
  /// May fill the calendar list first.
  platform::Dictionary dictionaryRepresentation();

  // --- Its window (model/) ---

  /// Today at a time of day such as "8:00 AM"; midnight when absent. Throws std::out_of_range when it has no ":".
  Date dateFromTime(const std::optional<std::string>& time) const;
  Date todayModifiedWithHours(const std::string& hours, const std::string& minutes,
                              const std::optional<std::string>& andPeriod) const;
  /// The window's bounds, both included. Of an all-day profile: today, computed on every call. Otherwise those of the
  /// day on which they were first asked for, kept for the life of the object; a window that ends before it starts is
  /// empty.
  Date startDate();
  Date endDate();
  Date createdDate();
  void setStartDate(std::optional<Date> date) { startDate_ = date; }
  void setEndDate(std::optional<Date> date) { endDate_ = date; }
  void setCreatedDate(std::optional<Date> date) { createdDate_ = date; }
  /// True for any date whatever when the profile is all-day.
  bool isDateBetweenProfileStartAndEndDate(Date date);
  /// An event's interval cut to the window. Not checked: of an event outside the window the pair is inverted.
  std::array<Date, 2> gimmeIntersectionDates(Date eventStart, Date eventEnd);

  // --- The default profile (store/) ---

  /// A new profile with the settings that people start from and a title that none has yet.
  static std::shared_ptr<HMProfile> defaultProfile();

  // --- Its calendars (calendar/) ---

  /// Identifiers of the calendars whose events apply the profile. An absent list is filled, once, with all calendars
  /// that can be written to; an empty one stays empty.
  const std::vector<std::string>& calendarIdentifiers();
  void setCalendarIdentifiers(std::optional<std::vector<std::string>> identifiers) {
    calendarIdentifiers_ = std::move(identifiers);
  }

  // --- Its wake timers (scheduler/) ---

  std::shared_ptr<platform::PCSimpleTimer> timer() const { return timer_; }
  void setTimer(std::shared_ptr<platform::PCSimpleTimer> timer) { timer_ = std::move(timer); }
  /// Made on first use for the window's bounds, and kept until stopped, also when spent.
  std::shared_ptr<platform::PCSimpleTimer> startTimer();
  void setStartTimer(std::shared_ptr<platform::PCSimpleTimer> timer) { startTimer_ = std::move(timer); }
  std::shared_ptr<platform::PCSimpleTimer> endTimer();
  void setEndTimer(std::shared_ptr<platform::PCSimpleTimer> timer) { endTimer_ = std::move(timer); }
  /// A new unarmed timer; null, with an error line, when the date is absent or past, and null without a line when the
  /// timer class is absent.
  std::shared_ptr<platform::PCSimpleTimer> timerWithDate(const std::optional<Date>& date);
  /// The general timer, made when there is none; an existing one is returned whatever its date.
  std::shared_ptr<platform::PCSimpleTimer> timerForDate(const std::optional<Date>& date);
  /// Stops the general timer and arms a new one. From another thread the arming is handed to the main queue.
  void beginTimerForDate(const std::optional<Date>& date);
  void stopTimer();
  void beginStartTimer();
  void beginEndTimer();
  void stopStartTimer();
  void stopEndTimer();
  /// Does not stop the start timer first, and arms the end timer too.
  void scheduleTimerForProfileStartDate();
  void scheduleTimerForProfileEndDate();
  void scheduleTimers();
  /// Stops the start and end timers; the general timer runs on.
  void stopTimers();
  /// Arms the start or the end family, by the date; an error line for any other date.
  void scheduleTimer(const std::optional<Date>& date);

  // --- Apply and revert (effects/) ---

  /// Marks the profile applied, saves it, and runs its effects. Does not look whether it is applied already.
  void apply();
  /// Undoes everything, whatever the profile's flags: what an earlier form of it applied goes too. `silent`: no tone
  /// and no light.
  void revert(bool silent);
  void revert();  ///< Not silent.
  /// Stores the flag, saves the profile and announces the change to other processes.
  void setApplied(bool applied);
  void setSilent(bool silent);
  /// Asserts the settings of an applied profile again, quietly.
  void refreshSoundSettingsIfRequired();

  // --- Sound (effects/) ---

  void applySoundSettings(bool apply);
  /// Brings the system's volume indicator back, in spite of the name.
  void hideSystemVolumeHUD();

  // --- Vibration, tone, screen (effects/) ---

  void vibrate(bool on);
  /// Plays the profile's tone for a second and calls `completion` with true: at once after that on a locked phone, 0.8
  /// seconds later on an unlocked one. In spite of the name, the argument is the completion.
  void playAlertToneFromIdentifier(std::function<void(bool)> completion);
  void wakeUpScreenIfRequired();

  // --- Do Not Disturb and status bar (effects/) ---

  void enableORDisableDnD(bool enable);
  void showORHideIconsOnSpringBoard(bool show);
  /// For the host after an edit: brings the effect in line when the profile is applied.
  void updateDNDStatus();
  void updateShowStatuBarState();

 private:
  std::shared_ptr<HMProfile> self() { return std::static_pointer_cast<HMProfile>(shared_from_this()); }

  std::int64_t identifier_ = 0;
  std::optional<std::string> title_;
  bool enabled_ = false, allDay_ = false;
  std::optional<std::string> startTime_, endTime_;
  std::optional<Date> startDate_, endDate_, createdDate_, updatedDate_;
  double ringerVolume_ = 0, playBackVolume_ = 0, deviceVolume_ = 0;
  bool playAlert_ = false;
  std::int64_t alertSound_ = 0;
  std::uint32_t alertSoundID_ = 0;
  std::optional<std::string> alertToneIdentifier_;
  bool vibrate_ = false, vibrateAlert_ = false, showOnStatusBar_ = false, dnDEnabled_ = false;
  bool silent_ = false, applied_ = false, wakeUpScreen_ = false, allDayEventsIgnored_ = false;
  std::int64_t applyProfileEventStatus_ = 0;
  std::optional<std::vector<std::string>> calendarIdentifiers_, wifiNetworks_;
  bool newProfile_ = false, volumeAlertShown_ = false, preserveVolumeChange_ = false;
  double newRingtoneVolume_ = 0;
  std::shared_ptr<platform::PCSimpleTimer> timer_, startTimer_, endTimer_;
};

}  // namespace hushmode
