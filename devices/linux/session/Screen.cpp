// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/Screen.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace hushmode::devices {

using platform::SBBacklightController;
using platform::SpringBoard;

class Screen::Application final : public SpringBoard {
 public:
  explicit Application(const Screen& screen) : screen_(screen) {}
  bool isLocked() const override { return screen_.isLocked(); }

 private:
  const Screen& screen_;
};

class Screen::ApplicationClass final : public SpringBoard::Class {
 public:
  explicit ApplicationClass(const Screen& screen) : application_(std::make_shared<Application>(screen)) {}
  std::shared_ptr<SpringBoard> sharedApplication() override { return application_; }

 private:
  std::shared_ptr<SpringBoard> application_;
};

class Screen::Backlight final : public SBBacklightController {
 public:
  explicit Backlight(Screen& screen) : screen_(screen) {}

  bool respondsTo(std::string_view selector) const override {
    const std::string_view keyword = selector.substr(0, selector.find(':'));
    const auto isOneOf = [&](std::initializer_list<std::string_view> names) {
      return std::find(names.begin(), names.end(), keyword) != names.end();
    };
    const bool canPutOut = screen_.hasMutter();
    if (isOneOf({"_startFadeOutAnimationFromLockSource", "_lockScreenDimTimerFired"})) return canPutOut;
    const bool canLight = canPutOut || screen_.saver_->isThere();
    return canLight &&
           isOneOf({"screenIsOn", "turnOnScreenFullyWithBacklightSource", "setBacklightFactor", "_undimFromSource"});
  }

  bool screenIsOn() const override { return screen_.isOn(); }
  void turnOnScreenFullyWithBacklightSource(int) override { screen_.light(); }
  void setBacklightFactor(double factor, int) override { factor > 0 ? screen_.light() : screen_.putOut(); }
  void _setBacklightFactorToZeroForProx() override {}  // There is no sensor's darkness here, and none answers to it.
  void _startFadeOutAnimationFromLockSource(int) override { screen_.putOut(); }
  void _undimFromSource(int) override { screen_.light(); }
  void _lockScreenDimTimerFired() override { screen_.putOut(); }

 private:
  Screen& screen_;
};

class Screen::BacklightClass final : public SBBacklightController::Class {
 public:
  explicit BacklightClass(Screen& screen) : backlight_(std::make_shared<Backlight>(screen)) {}
  std::shared_ptr<SBBacklightController> sharedInstance() override { return backlight_; }

 private:
  std::shared_ptr<SBBacklightController> backlight_;
};

Screen::Screen(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, const Logind& logind, Services& services,
               std::chrono::milliseconds limit)
    : logind_(logind),
      services_(services),
      applicationClass_(std::make_unique<ApplicationClass>(*this)),
      backlightClass_(std::make_unique<BacklightClass>(*this)) {
  mutter_ = std::make_unique<MutterDisplay>(
      sessionBus,
      [this] {
        powerBefore_.reset();  // Whoever changed the power has the last word on it.
        report();
      },
      limit);
  saver_ = std::make_unique<ScreenSaver>(
      sessionBus,
      [this] {
        isLitBySaver_ = false;
        report();
      },
      limit);
  report();
}

Screen::~Screen() = default;

SpringBoard::Class& Screen::springBoardClass() { return *applicationClass_; }
SBBacklightController::Class& Screen::backlightClass() { return *backlightClass_; }

bool Screen::isLocked() const { return logind_.isLocked().value_or(saver_->isActive().value_or(false)); }

bool Screen::isOn() const {
  if (const auto power = mutter_->power()) return *power == MutterDisplay::On;
  return saver_->isThere() && (isLitBySaver_ || !saver_->isActive().value_or(false));
}

void Screen::light() {
  if (const auto power = mutter_->power()) {
    if (*power == MutterDisplay::On) return;
    powerBefore_ = power;
    wasLocked_ = isLocked();
    mutter_->setPower(MutterDisplay::On);
  } else if (saver_->isThere()) {
    isLitBySaver_ = true;
    saver_->simulateUserActivity();
  }
}

void Screen::putOut() {
  const std::optional<int> before = std::exchange(powerBefore_, std::nullopt);
  const bool wasUnlocked = wasLocked_ && !isLocked();  // Somebody is using it.
  if (before && !wasUnlocked) mutter_->setPower(*before);
}

void Screen::report() {
  if (!mutter_ || !saver_ || !mutter_->isRead() || !saver_->isRead()) return;
  if (hasMutter()) {
    services_.report("screen", {true, "Mutter"});
  } else if (saver_->isThere()) {
    services_.report("screen", {true, "org.freedesktop.ScreenSaver"});
  } else {
    services_.report("screen", {false, tr("neither Mutter nor a screen saver lights it")});
  }
}

}  // namespace hushmode::devices
