// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Expectation.h"
#include "host/GuardedDevice.h"
#include "host/RestoreGuard.h"
#include "host/Switches.h"
#include "platform/Process.h"
#include "store/HMProfilesManager.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace hushmode::host {

/// Why a change to the profiles was refused. Nothing was changed.
class EditError : public std::runtime_error {
 public:
  enum class Kind {
    InvalidArgument,  ///< A value that no profile can have.
    UnknownProfile,
    TitleTaken,  ///< Another profile bears that title.
    NotSaved     ///< The profiles file could not be written.
  };
  EditError(Kind kind, Message message)
      : std::runtime_error(message.english()), kind_(kind), message_(std::move(message)) {}
  Kind kind() const { return kind_; }
  const Message& message() const { return message_; }

 private:
  Kind kind_;
  Message message_;
};

/// A profile that is applied now, for those who show it.
struct AppliedProfile {
  std::int64_t identifier = 0;
  std::string title;
  Reason reason;  ///< As a switch tells it.
  platform::Date since{0};
  std::optional<platform::Date> until;  ///< When it ends by itself; none where nothing known ends it.
};

/// A moment at which the host or the library looks again.
struct PlannedWakeUp {
  platform::Date date{0};
  std::optional<std::int64_t> profile;  ///< Whose event or window; none for the host's own look.
};

/// What an earlier process left changed on the phone, and what became of it.
struct Rescue {
  PhoneState before;    ///< When it began.
  PhoneState wanted;    ///< What is to be put back; absent values are nothing that a profile has changed.
  PhoneState after;     ///< When it ended.
  bool isSaved = true;  ///< Whether the disk says so, too: the ledger is closed, and no profile is marked as applied.
};

/// What is wrong with a time of the profile's window, or none: a profile with such a time cannot be planned.
std::optional<Message> unreadableTime(const HMProfile& profile);

/// What the home screen's process does with the library: it hands it every trigger, keeps it to what the phone's user
/// expects, and sees to it that a phone is never left silent.
///
/// - It plans at its start, at local midnight with a reload, after resume and changes of clock, zone, network,
/// calendar,
///   settings and profiles. Where the library loses a wake-up, the host looks itself, at the second that matters.
/// - Off means off: while the master switch is off nothing is applied, armed or woken.
/// - Nothing stays changed: see RestoreGuard. `settleSeconds` after the last switch everything is as it was.
/// - A profile that is edited, disabled or deleted while applied is brought in line at once.
///
/// It knows no service and no device: only the declarations of platform/. Main thread; the phone must outlive it.
class Host {
 public:
  using Say = std::function<void(const Message& message)>;

  /// The delayed steps of a switch (tone, media volume, vibrate switches) are over by then.
  static constexpr double settleSeconds = 3.0;
  /// What could not be put back is tried again after this long, and as soon as a service returns.
  static constexpr double retrySeconds = 60.0;
  /// A network that is gone for less than this was not left.
  static constexpr double leaveSeconds = 10.0;

  /// `say` gets a message for people whenever something is not as it should be; each complaint once.
  Host(platform::Device& phone, Say say);
  /// As the death of a process: nothing is reverted.
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// Starts the process: finishes what an earlier one left undone, and plans. Nothing while running.
  void start();
  /// Reverts what is applied, puts everything back at once, and ends the process.
  void stop();
  /// The process dies.
  void kill();
  bool isRunning() const { return process_ != nullptr; }

  /// Puts back at once what a process that died has left changed, plans nothing, and ends. Not while running. What
  /// cannot be put back, since its service is away, stays in the ledger.
  Rescue rescue();
  /// What `rescue` would put back. Changes nothing.
  Rescue wouldRescue();

  // What happens to the phone. Nothing while not running.

  void networkChanged();
  /// The wall clock was set, or the time zone is another.
  void clockChanged();
  /// The phone has woken up from sleep.
  void resumed();
  /// The settings file may have changed, and the master switch in it.
  void settingsChanged();
  /// Another program wrote the profiles file.
  void profilesFileChanged();
  /// Something that profiles change was changed by others: it is noted at once.
  void phoneChanged();
  /// To be called before observers are told of a change of volume.
  void volumeIsChanging(bool byUser);
  /// A service that was away is back: what it lacks is asserted or put back.
  void serviceReturned();
  /// Plans all active profiles; `reload` reads the file first.
  void plan(bool reload);

  // Changes to the profiles, in the form of their file (docs/profiles-file.md). Each throws EditError. "identifier"
  // and "applied" are not the caller's to set.

  std::int64_t addProfile(const platform::Dictionary& profile);
  /// Sets these keys.
  void updateProfile(std::int64_t identifier, const platform::Dictionary& changes);
  void deleteProfile(std::int64_t identifier);

  // What there is to show.

  std::vector<platform::Dictionary> profiles();
  std::vector<AppliedProfile> applied();
  /// By date.
  std::vector<PlannedWakeUp> armed() const;
  /// The last hundred, the latest last.
  const std::deque<Switch>& recentSwitches() const { return recent_; }
  PhoneState phone() const { return restore_->phone(); }
  /// Whether no delayed step of a switch is under way.
  bool isAtRest() const { return settledRound_ == settleRound_; }
  /// The master switch, as last seen.
  bool isEnabled() const { return enabled_; }
  /// The network that the phone is joined to at this moment. Only while running.
  std::optional<std::string> joinedNetwork() const;

  /// Called after each piece of work that may have changed what there is to show. Empty for none.
  void setOnChange(std::function<void()> onChange) { onChange_ = std::move(onChange); }
  /// Called with each switch, once its delayed effects are over. Empty for none.
  void setOnSwitch(std::function<void(const Switch&)> onSwitch) { onSwitch_ = std::move(onSwitch); }
  /// Called after each start of a process, with its manager, before anything is planned.
  void setOnStart(std::function<void(HMProfilesManager&)> onStart) { onStart_ = std::move(onStart); }

  /// Runs `work` as one piece of the host's: what it throws is said once, and the guards hold afterwards.
  void perform(const std::function<void()>& work);

 private:
  using Profile = HMProfilesManager::Profile;
  /// What is known about a profile's day.
  struct Day {
    Conditions conditions;
    std::vector<Happening> happenings;
    HMProfilesManager::Events events;  ///< In the same order.
  };

  void startProcess();
  void putBackAll();

  // Work in pieces.
  void begin();
  void end();
  /// Runs `work` as a piece and lets out what it throws, with the guards in force.
  template <class Work>
  void edit(Work work);
  void sayOnce(const Message& message);

  // Planning (HostPlanning.cpp).
  void planNow(bool reload);
  void reloadNow();
  void planOne(const Profile& profile, bool shouldProceedAnyCase);
  bool isWindowReadable(const Profile& profile);
  void clearStaleMarks();
  Day dayOf(const Profile& profile);
  void reconcile();
  void turnOn(const Profile& profile, const Day& day, const Expectation& expected);
  void turnOff(const Profile& profile);
  void armLook();
  void look();
  void followMasterSwitch();
  void networkSettled();
  void switchOff();

  // Restoring.
  std::vector<Profile> appliedProfiles() const;
  Profile latestApplied() const;
  void settleLater(double seconds = settleSeconds);
  void settle();
  void reassert();

  platform::Device& phone_;
  Say say_;
  std::set<std::string> said_;
  std::function<void()> onChange_;
  std::function<void(const Switch&)> onSwitch_;
  std::function<void(HMProfilesManager&)> onStart_;

  GuardedDevice device_;
  std::unique_ptr<platform::Process> process_;
  std::unique_ptr<RestoreGuard> restore_;
  std::unique_ptr<SwitchWatch> watch_;
  std::deque<Switch> recent_;

  int depth_ = 0;
  bool planned_ = false;                              ///< Something in this piece may call for another look.
  bool enabled_ = false;                              ///< The master switch, as last seen.
  bool unfinished_ = false;                           ///< Applied by an earlier process, perhaps not to the end.
  std::vector<std::int64_t> order_;                   ///< The applied profiles, the latest last.
  std::uint64_t settleRound_ = 0, settledRound_ = 0;  ///< Waits for settling: the last begun, the last over.
  std::uint64_t leaveRound_ = 0;                      ///< Waits for a network to come back: the last begun.
  bool leaving_ = false;                              ///< A network is gone, but has not been left yet.
  std::optional<std::string> network_;                ///< The one that plans were made for last.
  std::optional<platform::Date> loadedDay_, lookAt_;
  std::shared_ptr<platform::PCSimpleTimer> lookTimer_;
};

}  // namespace hushmode::host
