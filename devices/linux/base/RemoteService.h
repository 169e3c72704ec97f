// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/BusClient.h"
#include "devices/linux/base/NameWatch.h"

#include <functional>
#include <memory>
#include <optional>
#include <sigc++/connection.h>
#include <string>

namespace hushmode::devices {

/// A service on a bus that comes and goes: there is a client of it for as long as somebody owns its name.
class RemoteService {
 public:
  /// `appeared` sets up a new client: it subscribes, and asks for what stands now. It runs again, with another client,
  /// for each new owner of the name and after `tryAgainLater`. `vanished` runs when the name has no owner; also in this
  /// constructor when there is no connection.
  RemoteService(Glib::RefPtr<Gio::DBus::Connection> connection, const std::string& name,
                std::function<void(BusClient&)> appeared, std::function<void()> vanished,
                std::chrono::milliseconds limit = BusClient::answerLimit);
  ~RemoteService();
  RemoteService(const RemoteService&) = delete;
  RemoteService& operator=(const RemoteService&) = delete;

  /// The client; null while the service is away.
  BusClient* client() const { return client_.get(); }

  /// For a service that is there but does not answer, or answers nonsense: starts over after a while.
  void tryAgainLater();

 private:
  void startOver(const std::string& owner);

  Glib::RefPtr<Gio::DBus::Connection> connection_;
  std::function<void(BusClient&)> appeared_;
  std::chrono::milliseconds limit_;
  std::unique_ptr<BusClient> client_;
  sigc::connection retry_;
  std::optional<NameWatch> watch_;
};

}  // namespace hushmode::devices
