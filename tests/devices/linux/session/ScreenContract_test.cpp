// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/ScreenContract.h"

#include "devices/linux/session/Screen.h"
#include "tests/devices/linux/session/MockedLogind.h"
#include "tests/devices/linux/session/MockedScreens.h"

namespace hushmode::contracts {
namespace {

/// GNOME, or Phosh: the lock is logind's, the light Mutter's.
class MutterWorld final : public ScreenWorld {
 public:
  MutterWorld() {
    settle([&] { return services_.isAvailable("screen") && login_.isLocked().has_value(); });
  }

  platform::SpringBoard::Class* springBoardClass() override { return &screen_.springBoardClass(); }
  platform::SBBacklightController::Class* backlightClass() override { return &screen_.backlightClass(); }
  void lock() override { setLocked(true); }
  void unlock() override { setLocked(false); }
  void setLit(bool isLit) override {
    mutter_.setPower(isLit ? 0 : 3);
    settle([&] { return screen_.backlightClass().sharedInstance()->screenIsOn() == isLit; });
  }
  bool isLit() override {
    const bool asAnswered = screen_.backlightClass().sharedInstance()->screenIsOn();
    settle([&] { return (mutter_.power() == 0) == asAnswered; });
    return mutter_.power() == 0;
  }

 private:
  void setLocked(bool isLocked) {
    logind_.setLocked(isLocked);
    settle([&] { return login_.isLocked() == isLocked; });
  }
  static void settle(const std::function<bool()>& condition) {
    if (!runUntil(condition)) throw std::runtime_error("the phone never settled");
  }

  MockedLogind logind_;
  MockedMutter mutter_;
  devices::Services services_;
  devices::Logind login_{connectTo("system"), services_, "1", {}};
  devices::Screen screen_{connectTo("session"), login_, services_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mutter, ScreenContract, MutterWorld);

}  // namespace
}  // namespace hushmode::contracts
