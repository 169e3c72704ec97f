// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"
#include "devices/linux/base/Services.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace hushmode::devices {

/// The login manager (logind), on the system bus: when the phone sleeps, and whether its session is locked. As the
/// service "sleep and lock".
///
/// While the phone is awake a delay lock is held: a phone about to sleep waits, for as long as logind allows (5 seconds
/// by default), until `readyToSleep` is called.
class Logind {
 public:
  struct Callbacks {
    std::function<void()> aboutToSleep;  ///< Call `readyToSleep` when what is under way is over.
    std::function<void()> resumed;
    std::function<void()> lockChanged;  ///< `isLocked` answers otherwise than before.
  };

  /// `sessionId` is that of XDG_SESSION_ID; empty, or no longer valid: the user's session at a seat, else any of the
  /// user's. Callbacks (empty for none) come from the main loop.
  Logind(const Glib::RefPtr<Gio::DBus::Connection>& systemBus, Services& services, std::string sessionId,
         Callbacks callbacks, std::chrono::milliseconds limit = BusClient::answerLimit);

  /// What was under way when the phone was about to sleep is over. Nothing happens at other times.
  void readyToSleep();

  /// Whether the session is locked; none while that is not known.
  std::optional<bool> isLocked() const { return isLocked_; }

 private:
  /// The right to delay sleep, for as long as its descriptor is open.
  class DelayLock {
   public:
    explicit DelayLock(int descriptor) : descriptor_(descriptor) {}
    ~DelayLock();
    DelayLock(const DelayLock&) = delete;
    DelayLock& operator=(const DelayLock&) = delete;

   private:
    int descriptor_;
  };

  void listenTo(BusClient& client);
  void setPreparingForSleep(bool isPreparing);
  void takeDelayLock();
  void findSession();
  void findSessionInList();
  void followSession(const std::string& path);
  void notAnswered(const BusClient::Failure& failure);
  void setLocked(std::optional<bool> isLocked);

  Services& services_;
  const std::string sessionId_;
  const Callbacks callbacks_;
  bool isPreparingForSleep_ = false;
  std::unique_ptr<DelayLock> delayLock_;
  std::optional<bool> isLocked_;
  std::string sessionPath_;
  std::unique_ptr<BusClient> session_;  ///< Follows the session.
  RemoteService service_;               ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
