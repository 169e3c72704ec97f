// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/SimulatedPhone.h"

namespace hushmode {

/// A simulated phone with some parts replaced by others. Absent ones are the simulated phone's.
class PartlyReal final : public platform::Device {
 public:
  explicit PartlyReal(devices::SimulatedPhone& rest) : rest_(rest) {}

  platform::MobileWiFi* ownWiFi = nullptr;
  platform::UIKit* ownUIKit = nullptr;
  std::function<platform::Class*(std::string_view name)> ownClasses;

  platform::Foundation& foundation() override { return rest_.foundation(); }
  platform::CoreFoundation& coreFoundation() override { return rest_.coreFoundation(); }
  platform::EventKit& eventKit() override { return rest_.eventKit(); }
  platform::MobileWiFi& mobileWiFi() override { return ownWiFi ? *ownWiFi : rest_.mobileWiFi(); }
  platform::Celestial& celestial() override { return rest_.celestial(); }
  platform::AudioToolbox& audioToolbox() override { return rest_.audioToolbox(); }
  platform::UIKit& uiKit() override {
    if (ownUIKit) return *ownUIKit;
    return rest_.uiKit();
  }
  platform::Class* classNamed(std::string_view name) override {
    return ownClasses ? ownClasses(name) : rest_.classNamed(name);
  }
  void processEnded() override { rest_.processEnded(); }

 private:
  devices::SimulatedPhone& rest_;
};

}  // namespace hushmode
