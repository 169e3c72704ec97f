// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/WiFiContract.h"

namespace hushmode::contracts {
namespace {

class SimulatedWiFiWorld final : public WiFiWorld {
 public:
  platform::MobileWiFi& wiFi() override { return phone_.wifi(); }
  void remember(const std::string& ssid) override { phone_.wifi().remember({ssid, {}, {}}); }
  void join(const std::string& ssid, platform::Date date) override {
    phone_.jumpClockTo(date);
    phone_.wifi().join(ssid, devices::SimulatedWiFi::Join::Automatic);
  }
  void leave() override { phone_.wifi().leave(); }
  void forget(const std::string& ssid) override { phone_.wifi().forget(ssid); }

 private:
  devices::SimulatedPhone phone_{eight};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, WiFiContract, SimulatedWiFiWorld);

}  // namespace
}  // namespace hushmode::contracts
