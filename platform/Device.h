// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AudioToolbox.h"
#include "platform/Celestial.h"
#include "platform/CoreFoundation.h"
#include "platform/EventKit.h"
#include "platform/Foundation.h"
#include "platform/MobileWiFi.h"
#include "platform/UIKit.h"

#include <string_view>

namespace hushmode::platform {

/// A phone: the implementations of the platform's operations, and the classes that can be looked up by name.
class HUSHMODE_API Device {
 public:
  virtual ~Device();
  virtual Foundation& foundation() = 0;
  virtual CoreFoundation& coreFoundation() = 0;
  virtual EventKit& eventKit() = 0;
  virtual MobileWiFi& mobileWiFi() = 0;
  virtual Celestial& celestial() = 0;
  virtual AudioToolbox& audioToolbox() = 0;
  virtual UIKit& uiKit() = 0;

  /// The class of that name, or null when there is none. The device keeps it alive.
  virtual Class* classNamed(std::string_view name) = 0;

  /// Told by a process that ends: everything that belonged to it (queued work, timers, observers, alerts) is gone; what
  /// it did to the phone stays.
  virtual void processEnded() = 0;
};

}  // namespace hushmode::platform
