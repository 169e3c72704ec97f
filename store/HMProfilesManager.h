// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HMProfile.h"
#include "platform/EventKit.h"
#include "platform/Foundation.h"
#include "platform/MobileTimer.h"
#include "platform/StatusBar.h"
#include "platform/UIKit.h"
#include "store/ScheduledEvents.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

/// Why an operation of the store failed.
struct StoreError {
  std::string domain;  ///< The host's bundle identifier.
  int code = 0;        ///< Always 1.
  /// Localised texts: under "NSLocalizedDescriptionKey" always, under "NSLocalizedFailureReasonErrorKey" and
  /// "NSLocalizedRecoverySuggestionErrorKey" where there is a reason and a remedy.
  std::map<std::string, std::string, std::less<>> userInfo;
};

/// The one central object: it owns the profiles, saves and loads them, plans and processes their events, and carries
/// what the scheduler and the effects share.
///
/// One instance a process, made on first use. No locks: everything but the making of the instance is to be called from
/// one thread at a time, the scheduler and the effects from the main thread.
class HUSHMODE_API HMProfilesManager final : public platform::Object {
  struct Private {};

 public:
  using Profile = std::shared_ptr<HMProfile>;
  using Event = std::shared_ptr<platform::EKEvent>;
  using Events = std::vector<Event>;
  using Success = std::function<void()>;
  using Failure = std::function<void(const StoreError&)>;

  /// Notifications. The first three are posted in-process, with the profile under "profile", and then system-wide; the
  /// last is posted system-wide only.
  static constexpr std::string_view profileAddedNotification = "com.quorvel.ProfileAddedNotification";
  static constexpr std::string_view profileChangedNotification = "com.quorvel.ProfileChangedNotification";
  static constexpr std::string_view profileDeletedNotification = "com.quorvel.ProfileDeletedNotification";
  static constexpr std::string_view appliedStateChangedNotification =
      "com.quorvel.ProfileAppliedStateChangedNotification";

  /// Property lists: an array of profile dictionaries; and a dictionary whose boolean "com.quorvel.hushmode.enabled" is
  /// the master switch.
  static constexpr std::string_view profilesPath =
      "/var/mobile/Library/Preferences/com.quorvel.hushmode.profiles.plist";
  static constexpr std::string_view settingsPath = "/var/mobile/Library/Preferences/com.quorvel.hushmode.plist";

  /// The single instance; the first call makes it and sends it `initialize`. Any thread.
  static std::shared_ptr<HMProfilesManager> sharedManager();
  explicit HMProfilesManager(Private);
  /// Ends its observations.
  ~HMProfilesManager() override;

  // --- Start-up and files (store/) ---

  /// Makes the status-bar item, loads the profiles and observes the volume. Plans nothing.
  void initialize();
  /// The master switch, read from the settings file at every call; false unless the file says otherwise.
  static bool isHushmodeEnabled();
  /// Writes a profiles file with one default profile, only if there is no file at all.
  static void createAndSaveDefaultProfile();
  /// Replaces the list by the file's content, in new objects; by nothing when there is no readable file.
  void loadProfiles();
  void reloadProfiles();  ///< The same.
  /// Writes all profiles. Announces `notificationName` for `profile` when written, asked to, and named. False, without
  /// a change to the list, when the file could not be written.
  bool saveAllProfilesToDisk(const Profile& profile, bool postNotification,
                             std::optional<std::string_view> notificationName);

  /// The working copy, in file order.
  std::vector<Profile>& profiles() { return profiles_; }
  void setProfiles(std::vector<Profile> profiles) { profiles_ = std::move(profiles); }
  const std::shared_ptr<platform::LSStatusBarItem>& statusBarItem() const { return statusBarItem_; }
  void setStatusBarItem(std::shared_ptr<platform::LSStatusBarItem> item) { statusBarItem_ = std::move(item); }
  const std::shared_ptr<platform::NSTimer>& eventStoreUpdateTimer() const { return eventStoreUpdateTimer_; }
  void setEventStoreUpdateTimer(std::shared_ptr<platform::NSTimer> timer) { eventStoreUpdateTimer_ = std::move(timer); }
  ScheduledEvents& scheduledEventsDict() { return scheduledEventsDict_; }
  void setScheduledEventsDict(ScheduledEvents events) { scheduledEventsDict_ = std::move(events); }
  const std::shared_ptr<platform::UIAlertView>& volumePreserveAlertView() const { return volumePreserveAlertView_; }
  void setVolumePreserveAlertView(std::shared_ptr<platform::UIAlertView> alert) {
    volumePreserveAlertView_ = std::move(alert);
  }

  // --- Operations (store/) ---
  // Each changes the list first and saves second; nothing is rolled back. Exactly one of the callbacks runs, last and
  // inside the call; absent ones are skipped. None plans or touches the device.

  /// Appends. Fails when a profile of the same title exists (exact comparison; no title equals nothing).
  void addProfile(const Profile& profile, const Success& success, const Failure& failure);
  /// Puts the given object in the place of the first of the same identifier, and stamps its `updatedDate` in any case.
  void updateProfile(const Profile& profile, const Success& success, const Failure& failure);
  /// Removes the first of the same identifier; stamps the given object too.
  void deleteProfile(const Profile& profile, const Success& success, const Failure& failure);
  /// As the update, without a notification of its own (none has a name here, so the flag changes nothing).
  void updateProfile(const Profile& profile, bool shouldPostNotification, const Success& success,
                     const Failure& failure);

  // --- Queries (store/) ---
  // All compare exactly. All but the first two, and the one that answers nothing, load the file first when the list is
  // empty.

  bool isProfileNameAlreadyExists(const std::optional<std::string>& title) const;
  /// "Profile", or the first free of "Profile - 1", "Profile - 2", ...
  std::string defaultProfileTitle() const;
  std::vector<Profile> activeProfiles();    ///< Enabled or applied.
  std::vector<Profile> enabledProfiles();   ///< The same list, on purpose.
  std::vector<Profile> disabledProfiles();  ///< Not enabled; an applied one may be among them.
  Profile activeProfileByName(const std::optional<std::string>& title);  ///< Enabled; applied is not enough.
  Profile profileByIdentifier(std::int64_t identifier);
  Profile profileByIdentifier(std::int64_t identifier, bool shouldReload);
  /// Always none: never filled in, and nobody may rely on it.
  std::optional<std::vector<Profile>> profilesForCalendarIdentifier(const std::string& identifier) const;
  std::vector<Profile> activeWiFiProfiles();
  /// The calendars that matter at this moment: of active profiles whose window is open now. No repeats, no fixed order.
  std::vector<std::string> calendarIdentifiers();

  // --- Event scheduling (scheduler/) ---

  /// Plans one profile anew; nothing happens for none. `shouldProceedAnyCase` skips the test for an unchanged event.
  void scheduleEvents(const Profile& profile, bool shouldProceedAnyCase);
  /// The event to follow next, or null.
  Event eventToBeScheduled(const std::optional<Events>& events);
  /// The event that the profile follows, bound to this profile object first; or null.
  Event getCurrentScheduledEventFromProfile(const Profile& profile);
  void removeEventFromScheduledList(const Profile& profile, const Event& event);
  /// What a fired wake timer calls.
  void schedulePowerEvent(const std::shared_ptr<platform::PCSimpleTimer>& timer);
  /// Applies now or arms the wake-up, for the event or, when null, for the one that the profile follows.
  void schedulePowerEvent(const Profile& profile, const Event& withEvent);

  // --- Processing and re-planning (scheduler/) ---

  void processScheduledEvent(const Profile& profile);
  void registerForPowerNotifications(const std::optional<platform::Date>& date, const Profile& profile);
  void schedulePowerEventsForProfiles(bool reload);
  void schedulePowerEventsForProfiles();
  void revertAppliedProfilesIfAny();
  void handleHushmodeEnabledOrDisabled();
  void eventStoreChanged(const platform::Notification& notification);
  void handleEventStoreChanges(const std::shared_ptr<platform::NSTimer>& timer);

  // --- WiFi triggers (scheduler/) ---

  /// Calls `completion` at most once, inside the call: true to go on with the calendar; false when the network, or
  /// off the networks the closed window, decided.
  void shceduleWiFiDetected(const Profile& profile, const std::function<void(bool)>& completion);
  /// For the host, after a change of network.
  void scheduleProfilesOnWiFiChange();

  // --- Do Not Disturb and status bar (effects/) ---

  void loadLibStatusbar();
  void showORHideIconsOnSpringBoard(bool show);
  void enableORDisableDnD(bool enable);
  void enableORDisableDnDForIOS11(bool enable);

  // --- Volume watch (effects/) ---

  void volumeChanged(const platform::Notification& notification);
  void updateVolumeInUserDefaults(double volume);
  void alertView(const std::shared_ptr<platform::UIAlertView>& alert, int clickedButtonAtIndex);

  // --- Alarms (alarms/) ---

  /// Removes the system's own alarms; answers all that there were before.
  static std::vector<std::shared_ptr<platform::Alarm>> unloadAllHushmodeAlarms();

 private:
  std::vector<Profile> profiles_;
  std::shared_ptr<platform::LSStatusBarItem> statusBarItem_;
  std::shared_ptr<platform::NSTimer> eventStoreUpdateTimer_;
  ScheduledEvents scheduledEventsDict_;
  std::shared_ptr<platform::UIAlertView> volumePreserveAlertView_;
};

}  // namespace hushmode
