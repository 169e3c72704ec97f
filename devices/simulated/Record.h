// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "devices/simulated/VirtualTime.h"
#include "platform/Foundation.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// The kinds of entries. docs/record.md describes the fields of each; kinds and fields are stable.
namespace kind {
inline constexpr std::string_view log = "log";
inline constexpr std::string_view effect = "effect";
inline constexpr std::string_view defaults = "defaults";
inline constexpr std::string_view file = "file";
inline constexpr std::string_view notification = "notification";
inline constexpr std::string_view darwin = "darwin";
inline constexpr std::string_view timer = "timer";
inline constexpr std::string_view perform = "perform";
inline constexpr std::string_view alert = "alert";
inline constexpr std::string_view table = "table";
inline constexpr std::string_view phone = "phone";
}  // namespace kind

/// One thing that the phone was asked to do, or that happened to it.
struct RecordEntry {
  platform::Date time;
  std::int64_t utcOffset;  ///< Seconds that the phone's local clock was ahead of UTC.
  std::string kind;
  platform::Dictionary fields;

  /// The entry as a line for people, such as `fx setMediaVolume:0.000000`. Made from kind and fields at each call.
  std::string text() const;
  /// The local date and time to the millisecond, as "2024-05-14 09:00:00.500"; whole seconds without the fraction.
  std::string localTime() const;
};

/// "2024-05-14 09:00:00" of local seconds since 1970 (as TimeZone counts them), with ".500" where a fraction is given.
std::string localTimeText(double localSeconds);

/// What a simulated phone was asked to do and what happened to it, in order.
///
/// Appending is safe from any thread; everything else belongs to the thread that drives the phone.
class Record {
 public:
  using Level = platform::LogLine::Level;
  using Listener = std::function<void(const RecordEntry&)>;

  /// Entries are stamped with `time`, which must outlive the record. `zone` must not be null.
  Record(const VirtualTime& time, std::shared_ptr<const TimeZone> zone);

  void append(std::string_view kind, platform::Dictionary fields);
  /// An effect on the phone: `name` and then its arguments become the fields.
  void effect(std::string_view name, std::initializer_list<platform::DictionaryEntry> arguments = {});
  /// A step that was applied to the phone from outside: `step` and then its arguments become the fields.
  void step(std::string_view step, std::initializer_list<platform::DictionaryEntry> arguments = {});

  const std::vector<RecordEntry>& entries() const { return entries_; }
  void clear() { entries_.clear(); }
  /// Called with each entry as it is appended, from the thread that appends; it must not append itself. Empty for none.
  void setListener(Listener listener) { listener_ = std::move(listener); }
  /// Whether entries are kept, or only handed to the listener: a simulated year makes some 300,000. True at first.
  void setKeepsEntries(bool keeps) { keepsEntries_ = keeps; }

  /// Whether log lines of this level are wanted; all are at first.
  bool isListening(Level level) const { return listening_[static_cast<std::size_t>(level)]; }
  void setListening(Level level, bool listening) { listening_[static_cast<std::size_t>(level)] = listening; }
  void setListening(bool listening) { listening_.fill(listening); }

  void setTimeZone(std::shared_ptr<const TimeZone> zone) { zone_ = std::move(zone); }
  /// The local date and clock of `date`, as "2024-05-14 09:00:00".
  std::string localTimeOf(platform::Date date) const;

 private:
  const VirtualTime& time_;
  std::shared_ptr<const TimeZone> zone_;
  std::mutex mutex_;
  std::vector<RecordEntry> entries_;
  Listener listener_;
  bool keepsEntries_ = true;
  std::array<bool, 4> listening_{true, true, true, true};
};

/// The record's name of a log level: "information", "warning", "error", "bare".
std::string_view recordName(platform::LogLine::Level level);

}  // namespace hushmode::devices
