// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ControlCenter.h"

#include <memory>

namespace hushmode::devices {

class DoNotDisturb;

/// The Control Center around the Do Not Disturb switch: a manager with one module instance, a toggle, and its view with
/// the button that a finger would touch.
class DoNotDisturbModule {
 public:
  /// The toggle operates `doNotDisturb`, which must outlive the class and all that is reached from it.
  static std::unique_ptr<platform::Class> makeManagerClass(DoNotDisturb& doNotDisturb);
  static std::unique_ptr<platform::Class> makeButtonViewClass();
};

}  // namespace hushmode::devices
