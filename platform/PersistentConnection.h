// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/CoreFoundation.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// PersistentConnection: the power-aware timer.
namespace hushmode::platform {

/// A one-shot timer that wakes the sleeping device at a wall-clock date. Looked up by name.
///
/// An armed timer belongs to the run loop until it fires or is invalidated, whoever else lets go of it, and it stays
/// alive while its own callback runs. It never fires early. One that has fired or was invalidated never fires again;
/// arming an armed one changes nothing.
class HUSHMODE_API PCSimpleTimer : public Object {
 public:
  static constexpr std::string_view className = "PCSimpleTimer";

  /// Called on the main run loop with the timer itself.
  using Action = std::function<void(const std::shared_ptr<PCSimpleTimer>&)>;

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    /// An unarmed timer. `serviceIdentifier` names whom the device is woken for.
    virtual std::shared_ptr<PCSimpleTimer> initWithFireDate(Date fireDate, std::string_view serviceIdentifier,
                                                            Action action, Dictionary userInfo) = 0;
  };

  ~PCSimpleTimer() override;
  /// Arms it.
  virtual void scheduleInRunLoop(RunLoop& runLoop) = 0;
  /// Disarms it for good.
  virtual void invalidate() = 0;
  virtual const Dictionary& userInfo() const = 0;
};

}  // namespace hushmode::platform
