// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/core/Folders.h"
#include "devices/linux/core/LinuxFiles.h"
#include "devices/linux/core/Log.h"
#include "devices/linux/core/MainLoop.h"
#include "devices/linux/core/StringTables.h"
#include "devices/shared/DiskDefaults.h"
#include "devices/shared/ProcessNotifications.h"
#include "devices/shared/ZonedCalendar.h"
#include "platform/Foundation.h"

#include <memory>
#include <string>

namespace hushmode::devices {

/// Foundation on a Linux phone: the system's clock and zone, files and defaults on its disk.
class LinuxFoundation final : public platform::Foundation {
 public:
  struct Options {
    Folders folders;
    std::string identifier = "com.quorvel.Hushmode";  ///< Of the host's bundle; names its defaults.
    bool logsLibrary = false;                         ///< Whether the library's own lines are wanted.
  };

  /// `loop` must outlive the object; `zone` must not be null. `sink` gets what is wrong with files as warnings, and the
  /// library's lines; empty for none.
  LinuxFoundation(const Options& options, MainLoop& loop, std::shared_ptr<const TimeZone> zone, const LogSink& sink);
  ~LinuxFoundation() override;

  platform::Date now() const override;
  const platform::Calendar& currentCalendar() const override { return calendar_; }
  const platform::Calendar& gregorianCalendar() const override { return calendar_; }
  LinuxFiles& files() override { return files_; }
  DiskDefaults& standardUserDefaults() override { return defaults_; }
  ProcessNotifications& defaultNotificationCenter() override { return notifications_; }
  /// Only "/Library/PreferenceBundles/HushmodePreferences.bundle" can be there, in the data folder.
  std::shared_ptr<platform::Bundle> bundleWithPath(std::string_view path) override;
  std::shared_ptr<platform::Bundle> mainBundle() override { return mainBundle_; }
  std::shared_ptr<platform::NSTimer> timerWithTimeInterval(
      double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) override;
  platform::SystemLog& systemLog() override { return log_; }
  std::shared_ptr<platform::NSDateFormatter> makeDateFormatter() override;

  const std::shared_ptr<const TimeZone>& timeZone() const { return calendar_.timeZone(); }
  /// Affects every date computed from now on. `zone` must not be null.
  void setTimeZone(std::shared_ptr<const TimeZone> zone) { calendar_.setTimeZone(std::move(zone)); }

  /// Drops the observers of a process that ended.
  void processEnded() { notifications_.processEnded(); }

 private:
  MainLoop& loop_;
  std::filesystem::path bundleFolder_;
  ZonedCalendar calendar_;
  LinuxFiles files_;
  DiskDefaults defaults_;
  ProcessNotifications notifications_;
  LibraryLog log_;
  std::shared_ptr<StringTables> mainBundle_, preferenceBundle_;
};

}  // namespace hushmode::devices
