// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/VirtualTime.h"
#include "platform/UIKit.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The application, the alerts, the version and the appearance of a simulated phone.
class SimulatedUIKit final : public platform::UIKit {
 public:
  SimulatedUIKit(VirtualTime& time, Record& record);

  std::shared_ptr<platform::UIApplication> sharedApplication() override { return application_; }
  std::shared_ptr<platform::UIAlertView> makeAlertView(platform::UIAlertDescription description) override;
  std::string systemVersion() const override { return systemVersion_; }
  std::optional<int> userInterfaceStyle() const override { return userInterfaceStyle_; }
  /// Draws with cairo, on pictures that are CairoImages.
  std::unique_ptr<platform::UIGraphicsImageContext> beginImageContext(platform::CGSize size, bool opaque,
                                                                      double scale) override;

  /// "13.1" at first. The Control Center is the one of this version.
  void setSystemVersion(std::string version) { systemVersion_ = std::move(version); }
  /// None at first.
  void setUserInterfaceStyle(std::optional<int> style) { userInterfaceStyle_ = style; }
  bool isVolumeHUDEnabled() const { return volumeHUDEnabled_; }

  struct ShownAlert {
    int tag;
    std::string title, message;
    std::vector<std::string> buttons;  ///< By index: the cancel button first, if there is one.
  };
  /// The alerts on the screen, the oldest first.
  std::vector<ShownAlert> shownAlerts() const;
  /// The user taps a button of one of them: the alert goes away, and its delegate is told on the main queue. Throws
  /// std::out_of_range when there is no such alert or button.
  void answerAlert(int buttonIndex, std::size_t alert = 0);

  /// Alerts go with their process, unanswered.
  void processEnded() { shown_.clear(); }

 private:
  class Application;
  class AlertView;

  VirtualTime& time_;
  Record& record_;
  std::shared_ptr<platform::UIApplication> application_;
  std::vector<std::shared_ptr<AlertView>> shown_;
  std::string systemVersion_ = "13.1";
  std::optional<int> userInterfaceStyle_;
  bool volumeHUDEnabled_ = true;
};

}  // namespace hushmode::devices
