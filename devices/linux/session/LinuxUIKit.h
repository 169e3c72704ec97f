// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/session/Appearance.h"
#include "devices/linux/session/NotificationAlerts.h"
#include "platform/UIKit.h"

#include <memory>
#include <string>

namespace hushmode::devices {

/// UIKit on a Linux phone: questions as notifications, the desktop's appearance, pictures drawn with cairo.
class LinuxUIKit final : public platform::UIKit {
 public:
  /// The alerts and the appearance must outlive it. `systemVersion` is the one that the library is to find: it selects
  /// the ways in which it looks for Do Not Disturb, the tone and the screen.
  LinuxUIKit(NotificationAlerts& alerts, const Appearance& appearance, std::string systemVersion = "13.0");

  /// An application without an indicator of volume to switch: on Linux the desktop shows one where its own keys change
  /// the volume, and none for a change by a program.
  std::shared_ptr<platform::UIApplication> sharedApplication() override { return application_; }
  std::shared_ptr<platform::UIAlertView> makeAlertView(platform::UIAlertDescription description) override;
  std::string systemVersion() const override { return systemVersion_; }
  std::optional<int> userInterfaceStyle() const override;
  std::unique_ptr<platform::UIGraphicsImageContext> beginImageContext(platform::CGSize size, bool opaque,
                                                                      double scale) override;

 private:
  NotificationAlerts& alerts_;
  const Appearance& appearance_;
  std::string systemVersion_;
  std::shared_ptr<platform::UIApplication> application_;
};

}  // namespace hushmode::devices
