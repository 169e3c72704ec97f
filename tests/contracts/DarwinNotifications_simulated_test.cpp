// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/DarwinNotificationsContract.h"

namespace hushmode::contracts {

namespace {

class SimulatedWorld {
 public:
  void observe(std::function<void(std::string_view)> handler) {
    phone_.foundation().darwinCenter().observe(std::move(handler));
  }
  void post(std::string_view name) { phone_.coreFoundation().postDarwinNotification(name); }
  void postFromAnotherProcess(std::string_view name) { phone_.foundation().darwinCenter().postFromOutside(name); }
  void settle() { phone_.time().runFor(0); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1715673600)};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(SimulatedPhone, DarwinNotificationsContract, SimulatedWorld);

}  // namespace hushmode::contracts
