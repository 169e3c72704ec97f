// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/StatusIconContract.h"

namespace hushmode::contracts {

namespace {

class SimulatedWorld {
 public:
  SimulatedWorld() { phone_.coreFoundation().dlopen(devices::SimulatedStatusBar::libraryPath, 2); }
  platform::Class* classNamed(std::string_view name) { return phone_.classNamed(name); }
  bool isIconVisible() { return phone_.statusBar().isIconVisible(); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1715673600)};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(SimulatedPhone, StatusIconContract, SimulatedWorld);

}  // namespace hushmode::contracts
