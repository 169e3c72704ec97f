// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/ZonedCalendar.h"
#include "devices/simulated/SimulatedDefaults.h"
#include "devices/simulated/SimulatedFiles.h"
#include "devices/simulated/SimulatedNotifications.h"
#include "devices/simulated/SimulatedRunLoop.h"
#include "platform/Foundation.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// A bundle of a simulated phone: an identifier and its default string table.
class SimulatedBundle final : public platform::Bundle {
 public:
  using StringTable = std::map<std::string, std::string, std::less<>>;

  explicit SimulatedBundle(std::string identifier, StringTable table = {})
      : identifier_(std::move(identifier)), table_(std::move(table)) {}

  std::string localizedStringForKey(std::string_view key, std::optional<std::string_view> value) const override;
  std::string bundleIdentifier() const override { return identifier_; }

  void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }
  void setTable(StringTable table) { table_ = std::move(table); }

 private:
  std::string identifier_;
  StringTable table_;
};

/// Foundation and CoreFoundation of a simulated phone.
class SimulatedFoundation final : public platform::Foundation, public platform::CoreFoundation {
 public:
  SimulatedFoundation(VirtualTime& time, Record& record, std::shared_ptr<const TimeZone> zone);

  platform::Date now() const override { return time_.now(); }
  const platform::Calendar& currentCalendar() const override { return calendar_; }
  const platform::Calendar& gregorianCalendar() const override { return calendar_; }
  SimulatedFiles& files() override { return files_; }
  SimulatedDefaults& standardUserDefaults() override { return defaults_; }
  SimulatedNotificationCenter& defaultNotificationCenter() override { return notifications_; }
  std::shared_ptr<platform::Bundle> bundleWithPath(std::string_view path) override;
  std::shared_ptr<platform::Bundle> mainBundle() override { return mainBundle_; }
  std::shared_ptr<platform::NSTimer> timerWithTimeInterval(
      double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) override;
  platform::SystemLog& systemLog() override { return log_; }
  std::shared_ptr<platform::NSDateFormatter> makeDateFormatter() override;

  SimulatedRunLoop& mainRunLoop() override { return runLoop_; }
  void postDarwinNotification(std::string_view name) override { darwin_.post(name); }
  /// Succeeds for the paths that `setLoads` names, and loads them until the process ends.
  bool dlopen(std::string_view path, int mode) override;

  SimulatedDarwinCenter& darwinCenter() { return darwin_; }
  /// The host's own bundle: "com.apple.springboard" at first, without texts.
  SimulatedBundle& hostBundle() { return *mainBundle_; }
  /// The bundle at `path`; null takes it away. There is none at first.
  void setBundle(std::string_view path, std::shared_ptr<SimulatedBundle> bundle);
  /// Whether the library at `path` can be loaded.
  void setLoads(std::string_view path, bool loads);
  bool isLoaded(std::string_view path) const { return loaded_.contains(path); }

  const std::shared_ptr<const TimeZone>& timeZone() const { return calendar_.timeZone(); }
  /// Affects every date computed from now on, and the local times of the record.
  void setTimeZone(std::shared_ptr<const TimeZone> zone);

  /// Drops the observers and loaded libraries of a process that ended.
  void processEnded();

 private:
  class Log final : public platform::SystemLog {
   public:
    explicit Log(Record& record) : record_(record) {}
    bool isListening(platform::LogLine::Level level) const override { return record_.isListening(level); }
    void write(const platform::LogLine& line) override;

   private:
    Record& record_;
  };

  VirtualTime& time_;
  Record& record_;
  ZonedCalendar calendar_;
  SimulatedFiles files_;
  SimulatedDefaults defaults_;
  SimulatedNotificationCenter notifications_;
  SimulatedDarwinCenter darwin_;
  SimulatedRunLoop runLoop_;
  Log log_;
  std::shared_ptr<SimulatedBundle> mainBundle_;
  std::map<std::string, std::shared_ptr<SimulatedBundle>, std::less<>> bundles_;
  std::set<std::string, std::less<>> loadable_, loaded_;
};

}  // namespace hushmode::devices
