// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/SimulatedPhone.h"
#include "platform/Process.h"

#include <algorithm>
#include <cstdio>
#include <gtest/gtest.h>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

/// A test on a simulated phone with a host process: 2024-05-14, 08:00, in UTC, master switch on, and beside the vibrate
/// switches a value of the home screen's own in its domain. All else is as SimulatedPhone says, and the record empty.
class PhoneFixture : public ::testing::Test {
 protected:
  static constexpr std::string_view profilesPath =
      "/var/mobile/Library/Preferences/com.quorvel.hushmode.profiles.plist";
  static constexpr std::string_view settingsPath = "/var/mobile/Library/Preferences/com.quorvel.hushmode.plist";

  PhoneFixture() : ownPhone_(platform::Date(1715673600)) {
    phone.defaults().domains()["com.apple.springboard"].set("other", 1);
    setMasterSwitch(true);
    process_.emplace(phone);
  }
  /// The process ends; whoever listened from the test is gone by now.
  ~PhoneFixture() override {
    phone.record().setListener({});
    phone.time().setOnStep({});
  }

  /// The instant at which the phone's clock shows "HH:MM" or "HH:MM:SS" (with a fraction, if need be) on the day that
  /// it shows now.
  platform::Date at(const std::string& clockTime) const {
    int hour = 0, minute = 0;
    double second = 0;
    if (std::sscanf(clockTime.c_str(), "%d:%d:%lf", &hour, &minute, &second) < 2) {
      throw std::invalid_argument("no clock time: " + clockTime);
    }
    const platform::Calendar& calendar = phone.foundation().currentCalendar();
    platform::DateComponents components = calendar.componentsOfDate(phone.time().now());
    components.hour = hour;
    components.minute = minute;
    components.second = 0;
    return calendar.dateFromComponents(components).addingSeconds(second);
  }
  /// Runs the phone until its clock shows that time.
  void runTo(const std::string& clockTime) const { phone.time().runUntil(at(clockTime)); }
  void runFor(double seconds) const { phone.time().runFor(seconds); }

  /// Ends the process as if it were killed.
  void killProcess() { process_.reset(); }
  /// Starts a new process on the same phone, after killing the one that runs.
  void restartProcess() {
    killProcess();
    phone.noteProcessStarted();
    process_.emplace(phone);
  }

  /// The record's lines, of all kinds or only of the given ones.
  std::vector<std::string> texts(std::initializer_list<std::string_view> kinds = {}) const {
    std::vector<std::string> lines;
    for (const devices::RecordEntry& entry : phone.record().entries()) {
      const bool wanted = kinds.size() == 0 || std::find(kinds.begin(), kinds.end(), entry.kind) != kinds.end();
      if (wanted) lines.push_back(entry.text());
    }
    return lines;
  }
  void clearRecord() const { phone.record().clear(); }

  /// Puts the profiles file there as it is; nothing loads it.
  void writeProfilesFile(platform::Array profiles) const {
    phone.files().memory().set(profilesPath, std::move(profiles));
  }
  /// Puts a settings file there with the master switch.
  void setMasterSwitch(bool on) const {
    phone.files().memory().set(settingsPath, platform::Dictionary{{"com.quorvel.hushmode.enabled", on}});
  }

 private:
  devices::SimulatedPhone ownPhone_;
  std::optional<platform::Process> process_;

 protected:
  // A reference, so that a constant fixture can ask its phone everything, too.
  devices::SimulatedPhone& phone = ownPhone_;
};

}  // namespace hushmode
