// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/AlarmsContract.h"

namespace hushmode::contracts {

namespace {

class SimulatedWorld {
 public:
  platform::Class* classNamed(std::string_view name) { return phone_.classNamed(name); }
  void userSetsAlarms(std::vector<std::string> titles) { phone_.alarms().setStored(std::move(titles)); }
  std::vector<std::string> titles() { return phone_.alarms().stored(); }

 private:
  devices::SimulatedPhone phone_{platform::Date(1715673600)};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(SimulatedPhone, AlarmsContract, SimulatedWorld);

}  // namespace hushmode::contracts
