#pragma once

#include "devices/shared/CairoImages.h"
#include "platform/UIKit.h"

namespace hushmode::devices {

/// UIKit on a phone where nobody can be asked: alerts are never shown.
class RestingUIKit final : public platform::UIKit {
 public:
  std::shared_ptr<platform::UIApplication> sharedApplication() override { return application_; }
  std::shared_ptr<platform::UIAlertView> makeAlertView(platform::UIAlertDescription) override {
    return std::make_shared<Alert>();
  }
  std::string systemVersion() const override { return "13.0"; }
  std::optional<int> userInterfaceStyle() const override { return std::nullopt; }
  std::unique_ptr<platform::UIGraphicsImageContext> beginImageContext(platform::CGSize size, bool opaque,
                                                                      double scale) override {
    return makeCairoImageContext(size, opaque, scale);
  }

 private:
  class Application final : public platform::UIApplication {
    void setSystemVolumeHUDEnabled(bool) override {}
  };
  class Alert final : public platform::UIAlertView {
    void setTag(int tag) override { tag_ = tag; }
    int tag() const override { return tag_; }
    void show() override {}
    int tag_ = 0;
  };

  std::shared_ptr<Application> application_ = std::make_shared<Application>();
};

}  // namespace hushmode::devices
