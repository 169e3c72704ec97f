// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedAlarms.h"

#include <algorithm>

namespace hushmode::devices {

using platform::Alarm;
using platform::AlarmManager;

class SimulatedAlarms::StoredAlarm final : public Answering<Alarm> {
 public:
  StoredAlarm(const SimulatedClasses& classes, std::string title)
      : Answering(classes, alarmClassName), title_(std::move(title)) {}

  std::string description() const override { return "<Alarm \"" + title_ + "\">"; }

  std::string title() const override { return answered("title"); }
  std::string rawTitle() const override { return answered("rawTitle"); }
  std::string uiTitle() const override { return answered("uiTitle"); }
  const std::string& storedTitle() const { return title_; }

 private:
  const std::string& answered(std::string_view selector) const {
    require(selector);
    return title_;
  }

  std::string title_;
};

class SimulatedAlarms::Manager final : public Answering<AlarmManager> {
 public:
  explicit Manager(SimulatedAlarms& alarms) : Answering(alarms.classes_, className), alarms_(alarms) {}

  void loadAlarms() override {
    require("loadAlarms");
    alarms_.record_.effect("loadAlarms");
    alarms_.loaded_.clear();
    for (const std::string& title : alarms_.stored_) {
      alarms_.loaded_.push_back(std::make_shared<StoredAlarm>(alarms_.classes_, title));
    }
  }
  std::vector<std::shared_ptr<Alarm>> alarms() const override {
    require("alarms");
    return alarms_.loaded_;
  }
  void removeAlarm(const std::shared_ptr<Alarm>& alarm) override {
    require("removeAlarm");
    const auto own = std::dynamic_pointer_cast<StoredAlarm>(alarm);
    const auto loaded = std::find(alarms_.loaded_.begin(), alarms_.loaded_.end(), alarm);
    const bool ok = own && loaded != alarms_.loaded_.end();
    alarms_.record_.effect("removeAlarm", {{"title", own ? own->storedTitle() : std::string()}, {"ok", ok}});
    if (!ok) return;
    alarms_.loaded_.erase(loaded);
    auto& stored = alarms_.stored_;
    if (const auto place = std::find(stored.begin(), stored.end(), own->storedTitle()); place != stored.end()) {
      stored.erase(place);
    }
  }

 private:
  SimulatedAlarms& alarms_;
};

class SimulatedAlarms::ManagerClass final : public Answering<AlarmManager::Class> {
 public:
  explicit ManagerClass(SimulatedAlarms& alarms)
      : Answering(alarms.classes_, AlarmManager::className), manager_(std::make_shared<Manager>(alarms)) {}

  std::shared_ptr<AlarmManager> sharedManager() override {
    require("sharedManager");
    return manager_;
  }

 private:
  std::shared_ptr<AlarmManager> manager_;
};

SimulatedAlarms::SimulatedAlarms(Record& record, SimulatedClasses& classes) : record_(record), classes_(classes) {
  classes.add(AlarmManager::className, std::make_unique<ManagerClass>(*this));
}

}  // namespace hushmode::devices
