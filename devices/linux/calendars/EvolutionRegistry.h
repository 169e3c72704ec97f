// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/NameWatch.h"
#include "devices/linux/calendars/GObjects.h"

#include <chrono>
#include <functional>
#include <giomm/dbusconnection.h>
#include <libedataserver/libedataserver.h>
#include <memory>
#include <optional>
#include <sigc++/connection.h>
#include <string>
#include <vector>

namespace hushmode::devices {

/// Which calendars Evolution Data Server has. A registry that ends, or does not answer in time, is tried again, at
/// first soon and then every few minutes; one that is not installed is waited for.
///
/// For the thread of the main loop; nothing is called back once this object is gone.
class EvolutionRegistry {
 public:
  /// Starts the registry where it can be started. `connection` is the session bus, not null. `changed` runs in the main
  /// loop when the calendars, what they are called, or the obstacle may have changed.
  EvolutionRegistry(Glib::RefPtr<Gio::DBus::Connection> connection, std::chrono::milliseconds answerLimit,
                    std::function<void()> changed);
  ~EvolutionRegistry();
  EvolutionRegistry(const EvolutionRegistry&) = delete;
  EvolutionRegistry& operator=(const EvolutionRegistry&) = delete;

  /// Whether the registry can be asked.
  bool isOpen() const { return registry_ != nullptr; }
  /// Why it cannot; empty when it can, or when that is not known yet.
  const std::string& obstacle() const { return obstacle_; }

  /// The calendars that are enabled; none while it is not open.
  std::vector<GObjectPointer<ESource>> enabledCalendars() const;
  /// The name of the account that a calendar belongs to; empty when it has none.
  std::string accountOf(ESource* calendar) const;

 private:
  enum class Retry { Soon, WhenItAppears };

  void open();
  void started(GAsyncResult* result);
  void opened(GObjectPointer<ESourceRegistry> registry);
  void close();
  void failed(const std::string& reason, Retry retry = Retry::Soon);
  void changedSoon();

  const Glib::RefPtr<Gio::DBus::Connection> connection_;
  const std::chrono::milliseconds answerLimit_;
  std::function<void()> changed_;
  std::string obstacle_;
  unsigned attempt_ = 0;  ///< Counts the attempts to open it, so that results of a former one are known.
  GObjectPointer<GCancellable> cancellable_;  ///< Of the attempt that is under way, or that led here.
  GObjectPointer<ESourceRegistry> registry_;
  std::vector<std::unique_ptr<SignalHandler<ESource*>>> signals_;
  sigc::connection limit_, retry_, telling_;
  std::chrono::milliseconds delay_;
  std::shared_ptr<bool> exists_ = std::make_shared<bool>(true);
  std::optional<NameWatch> watch_;
};

}  // namespace hushmode::devices
