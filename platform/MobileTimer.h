// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// MobileTimer: the clock's alarms.
namespace hushmode::platform {

/// An alarm. Which of the three title operations exists differs between systems: ask `respondsTo`.
class HUSHMODE_API Alarm : public Object {
 public:
  ~Alarm() override;
  virtual std::string title() const = 0;
  virtual std::string rawTitle() const = 0;
  virtual std::string uiTitle() const = 0;
};

/// The list of alarms. Looked up by name.
class HUSHMODE_API AlarmManager : public Object {
 public:
  static constexpr std::string_view className = "AlarmManager";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<AlarmManager> sharedManager() = 0;
  };

  ~AlarmManager() override;
  /// Reads the alarms from storage.
  virtual void loadAlarms() = 0;
  virtual std::vector<std::shared_ptr<Alarm>> alarms() const = 0;
  virtual void removeAlarm(const std::shared_ptr<Alarm>& alarm) = 0;
};

}  // namespace hushmode::platform
