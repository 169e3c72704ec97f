// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"

#include <cstdint>
#include <optional>

namespace hushmode::devices {

/// Do Not Disturb as Plasma has it: somebody inhibits the notifications of org.freedesktop.Notifications, until the
/// inhibition is given back, the user ends it, or the connection to the bus that holds it ends.
///
/// Only some notification services have inhibitions: each new one is asked, and `isOffered` tells its answer. While a
/// service that has them is away (desktops restart theirs), nothing is inhibited; what is wanted is asked for again
/// when it returns.
class NotificationInhibition {
 public:
  /// `changed` is called from the main loop whenever one of the answers below may be another.
  NotificationInhibition(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, std::chrono::milliseconds timeLimit,
                         std::function<void()> changed);

  /// Whether anything is known at present: false until it was looked for a notification service, and while one is
  /// asked.
  bool isKnown() const { return state_ == State::Ready || state_ == State::Away; }
  /// The last notification service that was there has inhibitions.
  bool isOffered() const { return offered_; }
  /// It is there now.
  bool isPresent() const { return state_ == State::Ready; }
  /// Why the last request came to nothing; empty when it did not.
  const std::string& trouble() const { return trouble_; }

  /// Anybody inhibits notifications; while a request is under way, or the service is away, what was asked for last.
  bool isInhibited() const { return state_ == State::Ready && !requesting_ ? inhibited_ : wanted_; }
  /// Asks for an inhibition, or gives the own one back. Those of others stay. Nothing happens unless inhibitions are
  /// offered.
  void setInhibited(bool wanted);

 private:
  enum class State { Unknown, Away, Asking, Ready };

  void appeared(BusClient& client);
  void vanished();
  void learned(std::optional<bool> inhibited);
  void changedTo(bool inhibited);
  void pursue();
  void inhibit();
  void endInhibition();
  void failed(const BusClient::Failure& failure);
  void readBack();
  void settle(bool inhibited);
  void endedByUser();

  std::function<void()> changed_;
  State state_ = State::Unknown;
  bool offered_ = false;
  bool inhibited_ = false;               ///< What the service said last.
  bool wanted_ = false;                  ///< Only while offered.
  bool requesting_ = false;              ///< A request is under way.
  bool requested_ = false;               ///< What the last one was for.
  bool stuck_ = false;                   ///< It was for the end, and was not answered.
  std::optional<std::uint32_t> cookie_;  ///< Of the own inhibition.
  std::string trouble_;
  std::optional<RemoteService> service_;
};

}  // namespace hushmode::devices
