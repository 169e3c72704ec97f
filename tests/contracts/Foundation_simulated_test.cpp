// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/FoundationContract.h"

namespace hushmode::contracts {
namespace {

class SimulatedFoundationWorld final : public FoundationWorld {
 public:
  platform::Foundation& foundation() override { return phone_.foundation(); }
  void restartProcess() override { phone_.processEnded(); }
  void makeWritesFail(std::string_view path) override { phone_.files().setWritesFail(path, true); }
  void putGarbage(std::string_view path) override { phone_.files().memory().set(path, platform::Data(10)); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1'715'673'600)};
};

INSTANTIATE_TEST_SUITE_P(Simulated, FoundationContract, ::testing::Values([]() -> std::unique_ptr<FoundationWorld> {
                           return std::make_unique<SimulatedFoundationWorld>();
                         }));

}  // namespace
}  // namespace hushmode::contracts
