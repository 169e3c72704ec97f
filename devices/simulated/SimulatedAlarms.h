// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"
#include "platform/MobileTimer.h"

#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The alarms of a simulated phone. Take the selectors "title" and "rawTitle" of "Alarm" away to make the alarms answer
/// only one of the others, as they do on other system versions.
class SimulatedAlarms {
 public:
  static constexpr std::string_view alarmClassName = "Alarm";

  SimulatedAlarms(Record& record, SimulatedClasses& classes);

  /// The titles of the stored alarms. The manager sees a change only after it was told to load again.
  const std::vector<std::string>& stored() const { return stored_; }
  void setStored(std::vector<std::string> titles) { stored_ = std::move(titles); }
  void processEnded() { loaded_.clear(); }

 private:
  class StoredAlarm;
  class Manager;
  class ManagerClass;

  Record& record_;
  SimulatedClasses& classes_;
  std::vector<std::string> stored_;
  std::vector<std::shared_ptr<platform::Alarm>> loaded_;
};

}  // namespace hushmode::devices
