// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/ScreenContract.h"

namespace hushmode::contracts {
namespace {

class SimulatedScreenWorld final : public ScreenWorld {
 public:
  platform::SpringBoard::Class* springBoardClass() override { return named<platform::SpringBoard>(); }
  platform::SBBacklightController::Class* backlightClass() override { return named<platform::SBBacklightController>(); }
  void lock() override { phone_.screen().lock(); }
  void unlock() override { phone_.screen().unlock(); }
  void setLit(bool isLit) override { phone_.screen().setOn(isLit); }
  bool isLit() override { return phone_.screen().isOn(); }

 private:
  template <class T>
  typename T::Class* named() {
    return dynamic_cast<typename T::Class*>(phone_.classNamed(T::className));
  }

  devices::SimulatedPhone phone_{platform::Date(1'715'673'600)};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, ScreenContract, SimulatedScreenWorld);

}  // namespace
}  // namespace hushmode::contracts
