// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

namespace hushmode::devices {

class SimulatedControlCenter;

/// The Control Center from system 11 on: a manager of module instances, each with a toggle and its view.
class ModularControls {
 public:
  static void addClasses(SimulatedControlCenter& center);

 private:
  class DoNotDisturbModule;
  class Manager;
  class ManagerClass;
};

}  // namespace hushmode::devices
