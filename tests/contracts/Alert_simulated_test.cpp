// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/AlertContract.h"

namespace hushmode::contracts {
namespace {

class SimulatedAlertWorld final : public AlertWorld {
 public:
  platform::UIKit& uiKit() override { return phone_.uiKit(); }
  std::vector<SeenAlert> seen() override {
    std::vector<SeenAlert> alerts;
    for (const auto& shown : phone_.uiKit().shownAlerts())
      alerts.push_back({shown.title, shown.message, shown.buttons});
    return alerts;
  }
  void tap(std::size_t alert, int button) override {
    phone_.uiKit().answerAlert(button, alert);
    phone_.time().runFor(0);
  }
  void endProcess() override { phone_.processEnded(); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1'715'673'600)};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, AlertContract, SimulatedAlertWorld);

}  // namespace
}  // namespace hushmode::contracts
