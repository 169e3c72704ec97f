// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/daemon/BusInterface.h"
#include "apps/daemon/FileWatch.h"
#include "devices/linux/base/Services.h"
#include "devices/linux/core/Log.h"
#include "devices/linux/core/WriterLock.h"
#include "devices/linux/phone/LinuxPhone.h"
#include "host/Host.h"

#include <filesystem>
#include <functional>
#include <glibmm/main.h>
#include <memory>
#include <optional>
#include <sigc++/connection.h>
#include <stdexcept>
#include <string>

namespace hushmode::daemon {

struct Options {
  std::filesystem::path calendarFolder;  ///< Of iCalendar files.
  std::filesystem::path dataFolder;      ///< What was installed.
  bool verbose = false;                  ///< The library's own lines, with the titles of events, too.
};

/// Another daemon runs for this user.
class AlreadyRunning : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Hush Mode as a program: the host on a Linux phone, and the session bus in front of it.
///
/// It waits for the phone's services to say how they stand, plans, and then takes the bus name. One process per user:
/// the name and a lock in the state folder see to that.
class Daemon {
 public:
  /// `quit` ends the main loop with an exit code.
  Daemon(const Options& options, devices::LogSink sink, std::function<void(int code)> quit);
  ~Daemon();

  /// Connects and begins. Throws, with a line for people, AlreadyRunning, and std::runtime_error when there is no
  /// session bus or a folder cannot be made.
  void start();
  /// Reverts what is applied, waits until the phone's services have what they were sent, and quits with `code`.
  void stop(int code);

 private:
  static constexpr int answersSeconds = 2;  ///< How long services may take to say how they stand.
  static constexpr int writesSeconds = 2;   ///< How long they may take at the end.

  void takeLock();
  void connect();
  void startHost();
  void makeFirstSettings();
  void makeFirstProfile();
  void ownName();
  void nameLost();
  void watchFiles();
  void profilesChanged();
  void serviceChanged(const std::string& name, const devices::ServiceState& now, const devices::ServiceState* before);
  void aboutToSleep();
  void tell(const host::Switch& each);
  bool setEnabled(bool enabled);

  Options options_;
  devices::LogSink sink_;
  std::function<void(int)> quit_;
  devices::Folders folders_;
  std::unique_ptr<devices::WriterLock> lock_;
  Glib::RefPtr<Gio::DBus::Connection> session_, system_;
  devices::Services services_;
  std::unique_ptr<devices::LinuxPhone> phone_;
  std::unique_ptr<host::Host> host_;
  std::unique_ptr<BusInterface> interface_;
  std::unique_ptr<FileWatch> profilesWatch_, settingsWatch_;
  guint name_ = 0;
  bool started_ = false, stopping_ = false;
  sigc::connection startLimit_, stopLimit_, stopLook_, sleepLook_;
};

}  // namespace hushmode::daemon
