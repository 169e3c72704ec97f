// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedFoundation.h"

#include "devices/shared/DateFormatter.h"

namespace hushmode::devices {

std::string SimulatedBundle::localizedStringForKey(std::string_view key, std::optional<std::string_view> value) const {
  if (const auto text = table_.find(key); text != table_.end()) return text->second;
  return std::string(value && !value->empty() ? *value : key);
}

SimulatedFoundation::SimulatedFoundation(VirtualTime& time, Record& record, std::shared_ptr<const TimeZone> zone)
    : time_(time),
      record_(record),
      calendar_(std::move(zone)),
      files_(record),
      defaults_(record),
      notifications_(record),
      darwin_(time, record),
      runLoop_(time, record),
      log_(record),
      mainBundle_(std::make_shared<SimulatedBundle>("com.apple.springboard")) {}

std::shared_ptr<platform::Bundle> SimulatedFoundation::bundleWithPath(std::string_view path) {
  const auto bundle = bundles_.find(path);
  return bundle == bundles_.end() ? nullptr : bundle->second;
}

void SimulatedFoundation::setBundle(std::string_view path, std::shared_ptr<SimulatedBundle> bundle) {
  bundles_.insert_or_assign(std::string(path), std::move(bundle));
}

std::shared_ptr<platform::NSTimer> SimulatedFoundation::timerWithTimeInterval(
    double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) {
  return runLoop_.makeTimer(seconds, std::move(action));
}

bool SimulatedFoundation::dlopen(std::string_view path, int mode) {
  const bool ok = loadable_.contains(path);
  if (ok) loaded_.emplace(path);
  record_.effect("dlopen", {{"path", path}, {"mode", mode}, {"ok", ok}});
  return ok;
}

void SimulatedFoundation::setLoads(std::string_view path, bool loads) {
  if (loads) {
    loadable_.emplace(path);
  } else {
    loadable_.erase(std::string(path));
  }
}

void SimulatedFoundation::setTimeZone(std::shared_ptr<const TimeZone> zone) {
  record_.setTimeZone(zone);
  calendar_.setTimeZone(std::move(zone));
}

void SimulatedFoundation::processEnded() {
  notifications_.processEnded();
  darwin_.processEnded();
  runLoop_.processEnded();
  loaded_.clear();
}

void SimulatedFoundation::Log::write(const platform::LogLine& line) {
  platform::Dictionary fields;
  fields.reserve(4);
  fields.append("level", recordName(line.level));
  fields.append("method", line.method);
  fields.append("line", line.line);
  fields.append("message", line.message);
  record_.append(kind::log, std::move(fields));
}

std::shared_ptr<platform::NSDateFormatter> SimulatedFoundation::makeDateFormatter() {
  return std::make_shared<DateFormatter>([this] { return timeZone(); });
}

}  // namespace hushmode::devices
