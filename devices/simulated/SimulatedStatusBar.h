// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"
#include "devices/simulated/SimulatedFoundation.h"

#include <string>

namespace hushmode::devices {

/// The status bar of a simulated phone, with room for one icon. The class "LSStatusBarItem" exists only after its
/// library was loaded, which succeeds unless SimulatedFoundation::setLoads says otherwise.
class SimulatedStatusBar {
 public:
  static constexpr std::string_view libraryPath = "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";

  SimulatedStatusBar(Record& record, SimulatedClasses& classes, SimulatedFoundation& foundation);

  struct Icon {
    std::string identifier;
    int alignment = 0;
    std::string image;
    bool visible = true;
  };
  /// The icon that the process made last; none when it made none.
  const std::optional<Icon>& icon() const { return icon_; }
  bool isIconVisible() const { return icon_ && icon_->visible; }
  /// Icons go with their process.
  void processEnded() { icon_.reset(); }

 private:
  class Item;
  class ItemClass;

  Record& record_;
  SimulatedClasses& classes_;
  std::optional<Icon> icon_;
};

}  // namespace hushmode::devices
