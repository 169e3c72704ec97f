// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/WakeTimerContract.h"

namespace hushmode::contracts {
namespace {

class SimulatedWakeTimerWorld final : public WakeTimerWorld {
 public:
  SimulatedWakeTimerWorld() { phone_.wakeTimers().setLatency(0.0001); }

  platform::PCSimpleTimer::Class& timers() override {
    return dynamic_cast<platform::PCSimpleTimer::Class&>(*phone_.classNamed(platform::PCSimpleTimer::className));
  }
  platform::RunLoop& loop() override { return phone_.runLoop(); }
  platform::Date now() override { return phone_.time().now(); }
  void runUntil(const std::function<bool()>& condition) override {
    for (int step = 0; !condition(); ++step) {
      if (step == 10'000) throw std::runtime_error("the condition never held");
      phone_.time().runFor(0.001);
    }
  }
  void endProcess() override { phone_.processEnded(); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1'715'673'600)};
};

INSTANTIATE_TEST_SUITE_P(Simulated, WakeTimerContract, ::testing::Values([]() -> std::unique_ptr<WakeTimerWorld> {
                           return std::make_unique<SimulatedWakeTimerWorld>();
                         }));

}  // namespace
}  // namespace hushmode::contracts
