// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/LinuxUIKit.h"

#include "devices/shared/CairoImages.h"

#include <utility>

namespace hushmode::devices {

namespace {

constexpr int light = 1, dark = 2;

class Application final : public platform::UIApplication {
 public:
  void setSystemVolumeHUDEnabled(bool) override {}
};

}  // namespace

LinuxUIKit::LinuxUIKit(NotificationAlerts& alerts, const Appearance& appearance, std::string systemVersion)
    : alerts_(alerts),
      appearance_(appearance),
      systemVersion_(std::move(systemVersion)),
      application_(std::make_shared<Application>()) {}

std::shared_ptr<platform::UIAlertView> LinuxUIKit::makeAlertView(platform::UIAlertDescription description) {
  return alerts_.makeAlertView(std::move(description));
}

std::optional<int> LinuxUIKit::userInterfaceStyle() const {
  const auto isDark = appearance_.isDark();
  return isDark ? std::optional(*isDark ? dark : light) : std::nullopt;
}

std::unique_ptr<platform::UIGraphicsImageContext> LinuxUIKit::beginImageContext(platform::CGSize size, bool opaque,
                                                                                double scale) {
  return makeCairoImageContext(size, opaque, scale);
}

}  // namespace hushmode::devices
