// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedPhone.h"
#include "tests/contracts/DoNotDisturbContract.h"

namespace hushmode::contracts {

namespace {

struct SimulatedWorld {
  platform::Class* classNamed(std::string_view name) { return phone.classNamed(name); }
  void userSwitches(bool on) { phone.controlCenter().switchDoNotDisturb(on); }
  bool isPhoneQuiet() { return phone.controlCenter().isDoNotDisturbOn(); }

  devices::SimulatedPhone phone{platform::Date(1715673600)};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(SimulatedPhone, DoNotDisturbContract, SimulatedWorld);

}  // namespace hushmode::contracts
