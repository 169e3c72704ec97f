// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/RunLoopContract.h"

namespace hushmode::contracts {
namespace {

class SimulatedRunLoopWorld final : public RunLoopWorld {
 public:
  platform::RunLoop& loop() override { return phone_.runLoop(); }
  std::shared_ptr<platform::NSTimer> makeTimer(
      double seconds, std::function<void(const std::shared_ptr<platform::NSTimer>&)> action) override {
    return phone_.foundation().timerWithTimeInterval(seconds, std::move(action));
  }
  void runUntil(const std::function<bool()>& condition) override {
    for (int step = 0; !condition(); ++step) {
      if (step == 10'000) throw std::runtime_error("the condition never held");
      phone_.time().runFor(0.001);
    }
  }
  double uptime() override { return phone_.time().uptime(); }
  void endProcess() override { phone_.processEnded(); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1'715'673'600)};
};

INSTANTIATE_TEST_SUITE_P(Simulated, RunLoopContract, ::testing::Values([]() -> std::unique_ptr<RunLoopWorld> {
                           return std::make_unique<SimulatedRunLoopWorld>();
                         }));

}  // namespace
}  // namespace hushmode::contracts
