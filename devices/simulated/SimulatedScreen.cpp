// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedScreen.h"

#include "platform/SpringBoard.h"

namespace hushmode::devices {

using platform::SBBacklightController;
using platform::SpringBoard;

class SimulatedScreen::Application final : public Answering<SpringBoard> {
 public:
  explicit Application(SimulatedScreen& screen) : Answering(screen.classes_, className), screen_(screen) {}

  bool isLocked() const override {
    require("isLocked");
    return screen_.locked_;
  }

 private:
  SimulatedScreen& screen_;
};

class SimulatedScreen::ApplicationClass final : public Answering<SpringBoard::Class> {
 public:
  explicit ApplicationClass(SimulatedScreen& screen)
      : Answering(screen.classes_, SpringBoard::className), application_(std::make_shared<Application>(screen)) {}

  std::shared_ptr<SpringBoard> sharedApplication() override {
    require("sharedApplication");
    return application_;
  }

 private:
  std::shared_ptr<SpringBoard> application_;
};

class SimulatedScreen::Backlight final : public Answering<SBBacklightController> {
 public:
  explicit Backlight(SimulatedScreen& screen) : Answering(screen.classes_, className), screen_(screen) {}

  bool screenIsOn() const override {
    require("screenIsOn");
    return screen_.on_;
  }
  void turnOnScreenFullyWithBacklightSource(int source) override {
    change("turnOnScreenFullyWithBacklightSource", true, {{"source", source}});
  }
  void setBacklightFactor(double factor, int source) override {
    change("setBacklightFactor", factor > 0, {{"factor", factor}, {"source", source}});
  }
  void _setBacklightFactorToZeroForProx() override { change("_setBacklightFactorToZeroForProx", false, {}); }
  void _startFadeOutAnimationFromLockSource(int source) override {
    change("_startFadeOutAnimationFromLockSource", false, {{"source", source}});
  }
  void _undimFromSource(int source) override { change("_undimFromSource", true, {{"source", source}}); }
  void _lockScreenDimTimerFired() override { change("_lockScreenDimTimerFired", false, {}); }

 private:
  void change(std::string_view operation, bool on, std::initializer_list<platform::DictionaryEntry> arguments) {
    require(operation);
    screen_.record_.effect(operation, arguments);
    screen_.on_ = on;
  }

  SimulatedScreen& screen_;
};

class SimulatedScreen::BacklightClass final : public Answering<SBBacklightController::Class> {
 public:
  explicit BacklightClass(SimulatedScreen& screen)
      : Answering(screen.classes_, SBBacklightController::className), backlight_(std::make_shared<Backlight>(screen)) {}

  std::shared_ptr<SBBacklightController> sharedInstance() override {
    require("sharedInstance");
    return backlight_;
  }

 private:
  std::shared_ptr<SBBacklightController> backlight_;
};

SimulatedScreen::SimulatedScreen(Record& record, SimulatedClasses& classes) : record_(record), classes_(classes) {
  classes.add(SpringBoard::className, std::make_unique<ApplicationClass>(*this));
  classes.add(SBBacklightController::className, std::make_unique<BacklightClass>(*this));
}

void SimulatedScreen::lock() {
  record_.step("lock");
  locked_ = true;
}

void SimulatedScreen::unlock() {
  record_.step("unlock");
  locked_ = false;
}

}  // namespace hushmode::devices
