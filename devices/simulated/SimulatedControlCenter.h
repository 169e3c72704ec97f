// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"
#include "devices/simulated/SimulatedUIKit.h"
#include "platform/ControlCenter.h"

#include <memory>
#include <string>

namespace hushmode::devices {

/// The Control Center of a simulated phone with its Do Not Disturb switch, built as the phone's system version has it:
/// up to 9 one page of controls, on 10 several pages, from 11 on modules, whose buttons are views. Each version has
/// only its own classes.
class SimulatedControlCenter {
 public:
  SimulatedControlCenter(Record& record, SimulatedClasses& classes, const SimulatedUIKit& uiKit);

  bool isDoNotDisturbOn() const { return doNotDisturb_; }
  void setDoNotDisturb(bool on) { doNotDisturb_ = on; }
  /// The user switches Do Not Disturb.
  void switchDoNotDisturb(bool on);

  /// What of the tree is there; all of it at first.
  struct Parts {
    bool controller = true;          ///< Up to 10: the shared controller.
    bool viewController = true;      ///< Up to 10: its "_viewController".
    bool sectionList = true;         ///< Up to 9 the "_sectionList"; on 10 the page that has it.
    bool settingsSection = true;     ///< Up to 10.
    bool doNotDisturbButton = true;  ///< Up to 10 the button; from 11 on the module.
    bool buttonView = true;          ///< From 11 on: the button view inside the module's view.
  };
  /// Holds for whoever walks the tree from its root from now on.
  Parts& parts() { return parts_; }

  /// What the button up to 10, and the module from 11 on, call themselves.
  void setButtonIdentifier(std::string identifier) { buttonIdentifier_ = std::move(identifier); }
  void setModuleIdentifier(std::string identifier) { moduleIdentifier_ = std::move(identifier); }

 private:
  friend class PagedControls;    // Up to 10.
  friend class ModularControls;  // From 11 on.

  int majorVersion() const;
  /// Does what an operation asks for, and records it under its name.
  void operate(std::string_view operation, std::initializer_list<platform::DictionaryEntry> arguments, bool on);

  Record& record_;
  SimulatedClasses& classes_;
  const SimulatedUIKit& uiKit_;
  bool doNotDisturb_ = false;
  Parts parts_;
  std::string buttonIdentifier_ = "donotdisturb";
  std::string moduleIdentifier_ = "com.apple.control-center.DoNotDisturbModule";
};

}  // namespace hushmode::devices
