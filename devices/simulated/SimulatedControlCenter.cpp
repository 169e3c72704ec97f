// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedControlCenter.h"

#include "devices/simulated/ModularControls.h"
#include "devices/simulated/PagedControls.h"

#include <charconv>

namespace hushmode::devices {

SimulatedControlCenter::SimulatedControlCenter(Record& record, SimulatedClasses& classes, const SimulatedUIKit& uiKit)
    : record_(record), classes_(classes), uiKit_(uiKit) {
  PagedControls::addClasses(*this);
  ModularControls::addClasses(*this);
}

int SimulatedControlCenter::majorVersion() const {
  const std::string version = uiKit_.systemVersion();
  int major = 0;
  std::from_chars(version.data(), version.data() + version.size(), major);
  return major;
}

void SimulatedControlCenter::operate(std::string_view operation,
                                     std::initializer_list<platform::DictionaryEntry> arguments, bool on) {
  record_.effect(operation, arguments);
  doNotDisturb_ = on;
}

void SimulatedControlCenter::switchDoNotDisturb(bool on) {
  record_.step("do not disturb", {{"on", on}});
  doNotDisturb_ = on;
}

}  // namespace hushmode::devices
