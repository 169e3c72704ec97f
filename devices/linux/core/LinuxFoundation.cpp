// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/LinuxFoundation.h"

#include "devices/linux/core/SystemClock.h"
#include "devices/shared/DateFormatter.h"

namespace hushmode::devices {

namespace {

constexpr std::string_view kPreferenceBundle = "/Library/PreferenceBundles/HushmodePreferences.bundle";

std::function<void(const std::string&)> warningsTo(const LogSink& sink) {
  if (!sink) return nullptr;
  return [sink](const std::string& line) { sink(Priority::Warning, line); };
}

}  // namespace

LinuxFoundation::LinuxFoundation(const Options& options, MainLoop& loop, std::shared_ptr<const TimeZone> zone,
                                 const LogSink& sink)
    : loop_(loop),
      bundleFolder_(options.folders.data.empty() ? std::filesystem::path()
                                                 : options.folders.data / "HushmodePreferences.bundle"),
      calendar_(std::move(zone)),
      files_(options.folders, warningsTo(sink)),
      defaults_(options.folders.state, options.identifier, warningsTo(sink)),
      log_(sink, options.logsLibrary) {
  const auto tables = [&](const std::string& identifier) {
    return std::make_shared<StringTables>(identifier, bundleFolder_, StringTables::preferredLanguages(),
                                          warningsTo(sink));
  };
  // The program's own texts are in the same tables.
  mainBundle_ = tables(options.identifier);
  preferenceBundle_ = tables("com.quorvel.HushmodePreferences");
}

LinuxFoundation::~LinuxFoundation() = default;

platform::Date LinuxFoundation::now() const { return systemNow(); }

std::shared_ptr<platform::Bundle> LinuxFoundation::bundleWithPath(std::string_view path) {
  std::error_code error;
  if (path != kPreferenceBundle || !std::filesystem::is_directory(bundleFolder_, error)) return nullptr;
  return preferenceBundle_;
}

std::shared_ptr<platform::NSTimer> LinuxFoundation::timerWithTimeInterval(
    double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) {
  return loop_.makeTimer(seconds, std::move(action));
}

std::shared_ptr<platform::NSDateFormatter> LinuxFoundation::makeDateFormatter() {
  return std::make_shared<DateFormatter>([this] { return timeZone(); });
}

}  // namespace hushmode::devices
