// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

namespace hushmode::devices {

class SimulatedControlCenter;

/// The Control Center up to system 10: a controller, its view controller, sections (on 10 in pages), buttons.
class PagedControls {
 public:
  static void addClasses(SimulatedControlCenter& center);

 private:
  class ControllerClass;
  template <class Interface>
  class Button;
};

}  // namespace hushmode::devices
