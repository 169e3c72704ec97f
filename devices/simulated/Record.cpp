// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/Record.h"

#include <cmath>

namespace hushmode::devices {

using platform::Date;
using platform::Dictionary;
using platform::DictionaryEntry;

namespace {

Dictionary fieldsOf(std::string_view key, std::string_view name, std::initializer_list<DictionaryEntry> arguments) {
  Dictionary fields;
  fields.reserve(1 + arguments.size());
  fields.append(std::string(key), name);
  for (const DictionaryEntry& argument : arguments) fields.append(argument.key, argument.value);
  return fields;
}

}  // namespace

Record::Record(const VirtualTime& time, std::shared_ptr<const TimeZone> zone) : time_(time), zone_(std::move(zone)) {}

void Record::append(std::string_view kind, Dictionary fields) {
  const Date now = time_.now();
  const auto utc = static_cast<std::int64_t>(std::floor(now.secondsSince1970()));
  RecordEntry entry{now, zone_->offsetAt(utc), std::string(kind), std::move(fields)};
  const std::lock_guard lock(mutex_);
  if (listener_) listener_(entry);
  if (keepsEntries_) entries_.push_back(std::move(entry));
}

void Record::effect(std::string_view name, std::initializer_list<DictionaryEntry> arguments) {
  append(kind::effect, fieldsOf("name", name, arguments));
}

void Record::step(std::string_view step, std::initializer_list<DictionaryEntry> arguments) {
  append(kind::phone, fieldsOf("step", step, arguments));
}

std::string Record::localTimeOf(Date date) const {
  const double seconds = std::floor(date.secondsSince1970());
  return localTimeText(seconds + static_cast<double>(zone_->offsetAt(static_cast<std::int64_t>(seconds))));
}

std::string_view recordName(platform::LogLine::Level level) {
  using Level = platform::LogLine::Level;
  switch (level) {
    case Level::Information:
      return "information";
    case Level::Warning:
      return "warning";
    case Level::Error:
      return "error";
    case Level::Bare:
      break;
  }
  return "bare";
}

}  // namespace hushmode::devices
