// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::properties {

/// What holds in the record of any phone with this library on it, whatever happens. Shown every entry in order, it
/// collects what breaks a rule:
///
/// - *Log*: a level, a method, a line, a message without placeholders; without prefix only the one line meant so.
/// - *Saving*: every write of the profiles is followed by the line 286. Only a write that succeeded is announced: by
///   line 289, the in-process notification and then the system-wide one of the same name (and line 342 for a change),
///   or, quietly, by line 32 and the system-wide notice of the applied state.
/// - *Apply*: the line, the save, then (after a light, perhaps) the sound settings, at one instant.
/// - *Revert*: the save, `silent`, the sound settings, the three saved volumes removed in their order and synchronised,
///   at one instant, before anything else is applied, reverted or saved.
/// - *Saved volumes*: a key is written only while absent, but for a ringtone volume that the user chose to keep. What
///   is written is synchronised next. Vibrate keys are written in pairs, and only while vibrating on ring is on.
/// - *Home screen*: both vibrate switches are written as one domain, which keeps what else it holds, and are told in
///   their order. Do Not Disturb's key only ever says "off", and is written before the switch is thrown.
/// - *Wake timers*: none is armed for a past date, none fires early, each carries one profile's identifier, and its
///   firing reaches the scheduler.
/// - *Sound*: volumes stay from 0 to 1; the volume indicator that was taken away comes back 2 seconds after a change.
/// - *Question*: its two answers, in their order.
class RecordRules {
 public:
  using Entry = devices::RecordEntry;

  void see(const Entry& entry);
  /// An error left the library: what was begun at this instant may stay unfinished.
  void interrupted();

  const std::vector<std::string>& violations() const { return violations_; }
  void report(const std::string& violation);

  /// Whether the last write of the profiles succeeded, or there was none.
  bool lastWriteSucceeded() const { return lastWriteSucceeded_; }
  /// Whether the present process took the volume indicator away and did not bring it back yet.
  bool isVolumeHUDAway() const { return volumeHUDAway_; }

 private:
  struct Expected {
    std::string what;
    std::function<bool(const Entry&)> fits;
  };
  void expect(std::string what, std::function<bool(const Entry&)> fits);
  void expectKey(const char* operation, std::string key);
  void expectLog(std::int64_t line);
  void expectDarwin(std::string name);

  void seeLog(const Entry& entry);
  void seeEffect(const Entry& entry);
  void seeDefaults(const Entry& entry);
  void seeStored(const Entry& entry, const std::string& key);
  void seeTimer(const Entry& entry);
  void seeAlert(const Entry& entry);
  /// What is begun must not be left for something else.
  void requireNothingBegun(const Entry& entry);

  enum class Save { None, OfApply, Other };
  enum class Begun { Nothing, Apply, Revert };

  std::vector<std::string> violations_;
  std::deque<Expected> expected_;
  std::string last_;  ///< What came last, in the words below.
  Save save_ = Save::None;
  Begun begun_ = Begun::Nothing;
  bool soundSet_ = false;  ///< In what was begun.
  std::optional<platform::Date> begunAt_;
  bool lastWriteSucceeded_ = true, volumeHUDAway_ = false;
  std::map<std::string, platform::Value> stored_;  ///< The saved device state.
};

}  // namespace hushmode::properties
